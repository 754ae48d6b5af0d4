#pragma once

#include "names/cmd_line.h"
#include "platform/export.h"
#include "textproc/form_proc.h"

// The command line of a processor's program: the preference "Program File" of the processor's section when
// that names an existing file, else the open command of its documents' class when the program exists, else
// empty, as for FP_TEXT always. Any thread. Nothing here throws: without memory the line is empty.
QL_API QLCmdLine GetFormProcPath(FormProc processor);

// The program and its switches of an open command as installers register it: one ending that stands for the
// document (%1, "%1" or /ddeex) is dropped, and a program ends where its path does, blanks or not.
//     C:\Program Files\Word\winword.exe /n "%1"  ->  C:\Program Files\Word\winword.exe and /n
QL_API QLCmdLine FormalizeFormProcCmdLine(const wchar_t* text);
