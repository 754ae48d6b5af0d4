#pragma once

#include "textproc/form_proc.h"

namespace ql {

// GetDefaultTextFormProc, GetFormProcType and GetFormProcTmplDir, but throwing when memory ends.
FormProc DefaultTextProcessor();
FormProc ProcessorOf(FileType kind);
RWWString TemplateDirectoryOf(FormProc processor);

}  // namespace ql
