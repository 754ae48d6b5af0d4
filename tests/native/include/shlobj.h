#pragma once

#include <windows.h>

#define CSIDL_PERSONAL 0x5
#define CSIDL_COMMON_DOCUMENTS 0x2e
#define CSIDL_FLAG_CREATE 0x8000
#define SHGFP_TYPE_CURRENT 0
#define S_OK 0

// The path takes MAX_PATH characters. The folders have names, but no file system is behind them.
HRESULT SHGetFolderPathW(HWND owner, int folder, HANDLE token, DWORD flags, wchar_t* path);
