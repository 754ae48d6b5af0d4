// Writes its show state, as a character, and its command line into the file that QL_CHILD_LINE names. A
// program with windows, if it shows none: others can wait until it is ready for input.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/win32.h"

int wmain() {
    STARTUPINFOW startup = {};
    ::GetStartupInfoW(&startup);
    const std::wstring text = static_cast<wchar_t>(startup.wShowWindow) + std::wstring(::GetCommandLineW());
    ::Sleep(100);  // for a launch that did not wait
    std::ofstream(std::filesystem::path(::_wgetenv(L"QL_CHILD_LINE")), std::ios::binary)
        .write(reinterpret_cast<const char*>(text.data()),
               static_cast<std::streamsize>(text.size() * sizeof(wchar_t)));
    return 0;
}
