#pragma once

#include <new>

#include "names/file_name.h"

namespace ql {

// Keeps the name of a file that was opened: through its text, as names are assigned, or as it is where its
// text does not say it, as that of a walked "rep.doc#1". Null when memory ends: never the folder's name.
inline void KeepName(QLFileName& kept, const QLFileName& name) {
    kept = name;
    if (kept == name) return;
    const RWWString fileName = name.GetFileName();
    kept.Reset();  // a tail that the text seemed to have
    if (!fileName.isNull()) kept.SetEntry(name, fileName);
}

// A copy for which there was no memory is null, and would stand for the current directory.
inline void RequireWhole(const QLFileName& copy, const QLFileName& name) {
    if (copy != name) throw std::bad_alloc();
}

}  // namespace ql
