#include "files/file_copy.h"

#include <memory>
#include <new>

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

struct Block {
    static constexpr DWORD kCapacity = 1 << 16;
    std::unique_ptr<char[]> bytes{new (std::nothrow) char[kCapacity]};
    DWORD count = 0;

    bool Read(const File& file) {
        return bytes && ::ReadFile(file.get(), bytes.get(), kCapacity, &count, nullptr) != FALSE;
    }
    bool Write(const File& file) const {
        DWORD written = 0;
        return ::WriteFile(file.get(), bytes.get(), count, &written, nullptr) && written == count;
    }
};

// Makes room for the whole copy while what the file holds is still there.
bool Reserve(const File& file, const File& source) {
    LARGE_INTEGER size, wanted;
    if (!::GetFileSizeEx(file.get(), &size) || !::GetFileSizeEx(source.get(), &wanted)) return false;
    return wanted.QuadPart <= size.QuadPart ||
           (::SetFilePointerEx(file.get(), wanted, nullptr, FILE_BEGIN) && ::SetEndOfFile(file.get()) &&
            ::SetFilePointerEx(file.get(), {}, nullptr, FILE_BEGIN));
}

// What stood in the destination goes only when both files are open and known to be two, the source can be read and
// the disk has room.
bool CopyContents(const wchar_t* destination, const wchar_t* source) {
    const File from = OpenSource(source, kShareAll);
    if (!from) return false;
    const File to(::CreateFileW(destination, GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                                FILE_ATTRIBUTE_NORMAL, nullptr));
    Block block;
    if (!to || IsSameFile(from, to) || !block.Read(from) || !Reserve(to, from)) return false;
    bool copied = true;
    while (copied && block.count > 0) copied = block.Write(to) && block.Read(from);
    return ::SetEndOfFile(to.get()) && copied;
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
