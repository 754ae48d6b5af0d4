#pragma once

#include <windows.h>

constexpr int CSIDL_PERSONAL = 0x5, CSIDL_COMMON_DOCUMENTS = 0x2e, CSIDL_FLAG_CREATE = 0x8000;
constexpr DWORD SHGFP_TYPE_CURRENT = 0;
constexpr HRESULT S_OK = 0;

// The path takes MAX_PATH characters. The folders have names, but no file system is behind them.
HRESULT SHGetFolderPathW(HWND owner, int folder, HANDLE token, DWORD flags, wchar_t* path);
