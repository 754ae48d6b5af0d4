#include "files/file_copy.h"

#include <memory>

#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace {

using File = ql::UniqueFileHandle;

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;

File OpenSource(const wchar_t* path, DWORD sharing) {
    return File(::CreateFileW(path, GENERIC_READ, sharing, nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN,
                              nullptr));
}

struct Times {
    FILETIME creation, lastAccess, lastWrite;
};

bool ReadTimes(const wchar_t* path, Times& times) {
    const File file = OpenSource(path, FILE_SHARE_READ);
    return file && ::GetFileTime(file.get(), &times.creation, &times.lastAccess, &times.lastWrite);
}

bool SetTimes(const wchar_t* path, const Times& times) {
    const File file(::CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    return file && ::SetFileTime(file.get(), &times.creation, &times.lastAccess, &times.lastWrite);
}

bool IsSameFile(const File& a, const File& b) {
    BY_HANDLE_FILE_INFORMATION first, second;
    return ::GetFileInformationByHandle(a.get(), &first) && ::GetFileInformationByHandle(b.get(), &second) &&
           first.dwVolumeSerialNumber == second.dwVolumeSerialNumber &&
           first.nFileIndexHigh == second.nFileIndexHigh && first.nFileIndexLow == second.nFileIndexLow;
}

bool CopyBytes(const File& source, const File& destination) {
    constexpr DWORD kBlock = 1 << 20;
    const auto block = std::make_unique<char[]>(kBlock);
    for (;;) {
        DWORD read = 0, written = 0;
        if (!::ReadFile(source.get(), block.get(), kBlock, &read, nullptr)) return false;
        if (read == 0) return true;
        if (!::WriteFile(destination.get(), block.get(), read, &written, nullptr) || written != read)
            return false;
    }
}

// What stood in the destination goes only when both files are open and known to be two.
bool CopyContents(const wchar_t* destination, const wchar_t* source) {
    const File from = OpenSource(source, kShareAll);
    if (!from) return false;
    const File to(::CreateFileW(destination, GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    return to && !IsSameFile(from, to) && ::SetEndOfFile(to.get()) && CopyBytes(from, to);
}

}  // namespace

int MakeFileCopy(const wchar_t* destination, const wchar_t* source, int keepTimes, unsigned long& error) {
    if (!destination || !source) return 0;
    Times times;
    if (keepTimes && !ReadTimes(source, times)) {
        error = ::GetLastError();
        return 0;
    }
    if (!CopyContents(destination, source)) return 0;
    if (keepTimes && !SetTimes(destination, times)) {
        error = ::GetLastError();
        return 0;
    }
    return 1;
}
