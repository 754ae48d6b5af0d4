#pragma once

#include <string>
#include <string_view>

#include "names/cmd_line.h"

namespace ql {

// The library's own way to names: what the public members answer and do, but throwing when memory ends, so
// that the caller's own failure is answered, and nothing is done with half a name.
struct NameAccess {
    static std::wstring Path(const QLFileName& name) { return name.Path(); }
    static std::wstring PathAndFileName(const QLFileName& name) { return name.PathAndFileName(); }
    static const RWWString& Switches(const QLCmdLine& line) noexcept { return line.switches_; }

    // Without its dot; empty when there is none. Belongs to the name.
    static std::wstring_view Extension(const QLFileName& name) noexcept {
        return name.Part(QLFileName::kExtension);
    }

    static void SetPath(QLFileName& name, std::wstring_view path) { name.ParsePath(path); }
    static void PrependPath(QLFileName& name, std::wstring_view prefix) { name.Prepend(prefix); }
    static void SetExtension(QLFileName& name, std::wstring_view ext) { name.StoreExtension(ext); }
};

}  // namespace ql
