// files_child hold EVENT SHARING PATH   holds a file until it is ended, from the event on; SHARING is the sum
//                                       of FILE_SHARE_... values
// files_child ANYTHING                  writes its show state, as a character, and its command line into the
//                                       file that QL_CHILD_LINE names
// A program with windows, if it shows none: others can wait until it is ready for input.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "platform/unique_handle.h"

namespace {

int Hold(const wchar_t* event, const std::wstring& sharing, const wchar_t* path) {
    const ql::UniqueFileHandle file(
        ::CreateFileW(path, GENERIC_READ, std::stoul(sharing), nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) return 1;
    const ql::UniqueKernelHandle held(::CreateEventW(nullptr, TRUE, FALSE, event));
    ::SetEvent(held.get());
    ::Sleep(60'000);
    return 1;
}

int WriteLine(const std::filesystem::path& path, const std::wstring& line) {
    STARTUPINFOW startup = {};
    ::GetStartupInfoW(&startup);
    const std::wstring text = static_cast<wchar_t>(startup.wShowWindow) + line;
    ::Sleep(100);  // for a launch that did not wait
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(text.data()),
               static_cast<std::streamsize>(text.size() * sizeof(wchar_t)));
    return 0;
}

}  // namespace

int wmain(int count, wchar_t** words) {
    return count == 5 && words[1] == std::wstring(L"hold")
               ? Hold(words[2], words[3], words[4])
               : WriteLine(::_wgetenv(L"QL_CHILD_LINE"), ::GetCommandLineW());
}
