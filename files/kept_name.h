#pragma once

#include "names/file_name.h"

namespace ql {

// Keeps the name of a file that was opened: through its text, as names are assigned, or as it is where its
// text does not say it, as that of a walked "rep.doc#1".
inline void KeepName(QLFileName& kept, const QLFileName& name) {
    kept = name;
    if (kept.GetPathAndFileName() == name.GetPathAndFileName()) return;
    kept.SetEntry(name, name.GetFileName().data());
}

}  // namespace ql
