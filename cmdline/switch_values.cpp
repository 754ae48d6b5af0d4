#include "cmdline/switch_values.h"

#include <cwchar>
#include <string_view>

#include "files/full_path.h"
#include "platform/current_directory.h"

namespace ql {

QLFileName FullName(const QLFileName& name, RWWString (*directory)()) {
    if (name.IsODMADocId() || name.HasRoot()) return name;
    return MakeFullPath(name, directory().data(), nullptr);
}

QLFileName FullNameHere(const QLFileName& name) {
    return FullName(name, [] { return RWWString(CurrentDirectory()); });
}

RWWString UpToBlank(const wchar_t* value) {
    const std::wstring_view text(value);
    return RWWString(text.substr(0, text.find(L' ')));
}

long LeadingNumber(const wchar_t* value) {
    const bool startsWithDigit = *value >= L'0' && *value <= L'9';
    return startsWithDigit ? std::wcstol(value, nullptr, 10) : 0;
}

}  // namespace ql
