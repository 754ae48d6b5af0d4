#pragma once

#include <windows.h>

#include <string_view>

namespace fake {

// Orders names as the system does for registry and environment: ignoring case.
struct NameLess {
    bool operator()(std::wstring_view a, std::wstring_view b) const {
        return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                    static_cast<int>(b.size()), TRUE) < CSTR_EQUAL;
    }
};

}  // namespace fake
