#include <shlobj.h>

#include <algorithm>
#include <cwchar>
#include <string_view>

#include "tests/native/fake_paths.h"

namespace {

struct Folder {
    int id;
    std::wstring_view path;
};

constexpr Folder kFolders[] = {
    {CSIDL_PERSONAL, L"C:\\users\\someone\\Documents"},
    {CSIDL_COMMON_DOCUMENTS, L"C:\\users\\Public\\Documents"},
};

}  // namespace

HRESULT SHGetFolderPathW(HWND, int folder, HANDLE, DWORD, wchar_t* path) {
    for (const Folder& known : kFolders) {
        if (known.id != (folder & ~CSIDL_FLAG_CREATE)) continue;
        *std::copy(known.path.begin(), known.path.end(), path) = L'\0';
        return S_OK;
    }
    return E_INVALIDARG;
}

int MessageBoxW(HWND, const wchar_t* text, const wchar_t* title, UINT) {
    std::fprintf(stderr, "%s: %s\n", fake::ToUtf8(title).c_str(), fake::ToUtf8(text).c_str());
    return IDOK;
}
