#include "cmdline/switch_values.h"

#include <cwchar>
#include <string_view>

#include "files/full_path.h"

namespace ql {

QLFileName FullName(const QLFileName& name, const RWWString& directory) {
    return name.IsODMADocId() ? name : QLFileName(MakeFullPath(name, directory.data(), nullptr));
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
