#pragma once

#include <string>

#include "tests/support/start_process.h"

// Runs a command of the shell of the system below Wine in a folder: for links, which Wine does not make, and
// for thousands of files, which take it minutes. False on Windows, which needs none of that.
inline bool RunInHostShell(const std::wstring& folder, const std::wstring& command) {
    using UnixName = char*(CDECL*)(const wchar_t*);
    const auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32"), "wine_get_unix_file_name")));
    if (!unixName) return false;
    const std::string place = unixName(folder.c_str());
    const std::wstring done = folder + L"\\host is done";
    // No handle comes back: the shell is no process of Wine's.
    StartProcess(L"\"Z:\\bin\\sh\" -c \"cd '" + std::wstring(place.begin(), place.end()) + L"' && " +
                 command + L"; touch 'host is done'\"");
    for (int tries = 0; tries < 3000; ++tries, ::Sleep(10))
        if (::DeleteFileW(done.c_str())) return true;
    return false;
}
