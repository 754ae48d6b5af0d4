#include "cmdline/switch_values.h"

#include <cstdint>
#include <cwchar>
#include <string_view>

#include "files/full_path.h"
#include "platform/message_box.h"
#include "platform/win32.h"

namespace ql {

QLFileName FullName(const QLFileName& name, const RWWString& directory) {
    return name.IsODMADocId() ? name : QLFileName(MakeFullPath(name, directory.data(), nullptr));
}

RWWString CurrentDirectory() {
    std::wstring directory(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetCurrentDirectoryW(static_cast<DWORD>(directory.size()), directory.data());
        const bool fits = length < directory.size();
        directory.resize(length);
        if (fits) return directory;
    }
}

RWWString UpToBlank(const wchar_t* value) {
    const std::wstring_view text(value);
    return RWWString(text.substr(0, text.find(L' ')));
}

long LeadingNumber(const wchar_t* value) {
    const bool startsWithDigit = *value >= L'0' && *value <= L'9';
    return startsWithDigit ? std::wcstol(value, nullptr, 10) : 0;
}

void CheckObject(const void* object, unsigned long expected) {
    if (reinterpret_cast<std::uintptr_t>(object) == expected) return;
    ShowErrorBox(
        L"Bad Mojo",
        L"this pointer is corrupt\nThis is a serious medical condition.\nPlease report this to Orrin.");
}

}  // namespace ql
