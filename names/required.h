#pragma once

#include <new>

#include "names/file_name.h"

// When memory ends a copied name is null and a name's text empty: both would stand for the current directory.
// Where files are written or removed by them, these throw std::bad_alloc instead.
namespace ql {

inline void RequireWhole(const QLFileName& copy, const QLFileName& name) {
    if (copy != name) throw std::bad_alloc();
}

// Of a text that cannot be empty otherwise.
inline RWWString Required(RWWString text) {
    if (text.isNull()) throw std::bad_alloc();
    return text;
}

}  // namespace ql
