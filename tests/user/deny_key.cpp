// deny_key deny|allow KEY: makes a key of the user that nobody may write to, or opens it again.
#include "platform/win32.h"

// Needs the former.
#include <sddl.h>

#include <string_view>

namespace {

constexpr const wchar_t* kDenied = L"D:(D;;0x00000006;;;WD)(A;;KA;;;WD)";  // set values, create keys
constexpr const wchar_t* kAllowed = L"D:(A;;KA;;;WD)";

}  // namespace

int wmain(int count, wchar_t** words) {
    if (count != 3) return 2;
    const bool deny = words[1] == std::wstring_view(L"deny");
    HKEY key = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (deny) {
        ::RegCreateKeyExW(HKEY_CURRENT_USER, words[2], 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    } else {
        ::RegOpenKeyExW(HKEY_CURRENT_USER, words[2], 0, WRITE_DAC, &key);
    }
    ::ConvertStringSecurityDescriptorToSecurityDescriptorW(deny ? kDenied : kAllowed, SDDL_REVISION_1,
                                                           &descriptor, nullptr);
    const LSTATUS status = ::RegSetKeySecurity(key, DACL_SECURITY_INFORMATION, descriptor);
    ::LocalFree(descriptor);
    ::RegCloseKey(key);
    return status == ERROR_SUCCESS ? 0 : 1;
}
