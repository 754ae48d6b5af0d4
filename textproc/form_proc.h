#pragma once

#include "names/file_name.h"
#include "names/file_type.h"
#include "platform/export.h"
#include "rw/wide_string.h"

// The programs that open, fill and produce documents: their fixed facts, which of them are installed, and
// which is chosen for a kind of file. A processor is installed when its template directory is set.
//
// Kept on purpose: the Filler answers the Automator's registry class.
//
// Safe on any thread; preferences are read as settings/preferences.h tells. Nothing throws: when memory ends,
// a text that was asked for is empty, and a processor FP_NONE.

// The numbers are stored and passed between programs; any other number behaves like FP_NONE.
enum FormProc : int {
    FP_NONE = 0,
    FP_WP13 = 6,
    FP_WP14 = 7,
    FP_WP15 = 8,
    FP_WP16 = 9,
    FP_WP17 = 10,
    FP_WORD2003 = 23,
    FP_WORD2007 = 24,
    FP_WORD2010 = 25,
    FP_WORD2013 = 26,
    FP_AUTOMATOR = 40,
    FP_FILLER = 50,
    FP_TEXT = 200,  // no program of its own
};

// Fixed facts: texts that live as long as the library, null when there is none.
QL_API const wchar_t* GetFormProcName(FormProc processor) noexcept;     // for display; empty for FP_TEXT
QL_API const wchar_t* GetFormProcExe(FormProc processor) noexcept;      // the program's file name
QL_API const wchar_t* GetFormProcClass(FormProc processor) noexcept;    // the main window's class
QL_API const wchar_t* GetFormProcService(FormProc processor) noexcept;  // DDE
QL_API const wchar_t* GetFormProcTopic(FormProc processor) noexcept;    // DDE
QL_API const wchar_t* GetFormProcRegKey(
    FormProc processor) noexcept;  // the documents' class below HKEY_CLASSES_ROOT

// The section of the processor's preferences: "Word Proc\" and its name.
QL_API RWWString GetFormProcRegName(FormProc processor);

// The kind of template that the processor writes; FT_NONE when none.
QL_API FileType GetTextFileType(FormProc processor) noexcept;

// The processor's directories, with a backslash at the end; empty when not set. The Automator and the Filler
// use the product's own, and every processor's document directory falls back to the personal documents.
QL_API RWWString GetFormProcTmplDir(FormProc processor);
QL_API RWWString GetFormProcDocDir(FormProc processor);

// The newest installed version; FP_NONE when there is none. The last prefers Word.
QL_API FormProc GetMSWordVersion();
QL_API FormProc GetWordPerfectVersion();
QL_API FormProc GetInstalledTextFormProc();

// The processor that the preference "Default" of "Word Proc" names, if it is installed, and what it writes.
QL_API FormProc GetDefaultTextFormProc();
QL_API FileType GetDefaultTextFileType();

// Whether Word 2007, 2010 or 2013 is installed.
QL_API bool CanSaveInWord2007Format();

// The Word of a version text: "14.0" -> FP_WORD2010. There is no 13.
QL_API FormProc GetFormProcFromVerStr(const wchar_t* version);

// The processor for a kind of template: the Automator for forms, else the default one if it handles the kind,
// else the newest installed that does, Word before WordPerfect; FP_TEXT for a text template that none
// handles.
QL_API FormProc GetFormProcType(FileType kind);

// The processor that a document is sent to: by its kind when the preference "Send to Default" says so, else
// the default one, else the newest installed.
QL_API FormProc GetSendDocToTextFormProc(const QLFileName& name);
