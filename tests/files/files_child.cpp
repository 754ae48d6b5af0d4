// files_child hold NAME SHARING PATH   holds a file from the event NAME_held to the event NAME_done; SHARING is the sum
//                                      of FILE_SHARE_... values
// files_child ANYTHING                 writes the command line into the file that QL_CHILD_LINE names
#include <string>

#include "platform/unique_handle.h"

namespace {

int Hold(const std::wstring& name, const std::wstring& sharing, const wchar_t* path) {
    const DWORD share = std::stoul(sharing);
    const ql::UniqueFileHandle file(
        ::CreateFileW(path, GENERIC_READ, share, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) return 1;
    const ql::UniqueKernelHandle held(::CreateEventW(nullptr, TRUE, FALSE, (name + L"_held").c_str()));
    const ql::UniqueKernelHandle done(::CreateEventW(nullptr, TRUE, FALSE, (name + L"_done").c_str()));
    ::SetEvent(held.get());
    return ::WaitForSingleObject(done.get(), 60'000) == WAIT_OBJECT_0 ? 0 : 1;
}

int WriteLine() {
    wchar_t path[1024];
    if (::GetEnvironmentVariableW(L"QL_CHILD_LINE", path, 1024) == 0) return 1;
    const std::wstring line = ::GetCommandLineW(), unfinished = std::wstring(path) + L".part";
    {
        const ql::UniqueFileHandle file(
            ::CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD written;
        ::WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size() * sizeof(wchar_t)), &written,
                    nullptr);
    }
    return ::MoveFileExW(unfinished.c_str(), path, MOVEFILE_REPLACE_EXISTING) ? 0 : 1;
}

}  // namespace

int wmain(int count, wchar_t** words) {
    return count == 5 && words[1] == std::wstring(L"hold") ? Hold(words[2], words[3], words[4]) : WriteLine();
}
