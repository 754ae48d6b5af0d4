#include "files/file_copy.h"

#include <algorithm>
#include <limits>
#include <memory>

#include "files/same_file.h"
#include "platform/failure.h"
#include "platform/file_position.h"
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

// Devices and pipes have neither a size nor a position.
bool HasSize(const File& file) {
    return ::GetFileType(file.get()) == FILE_TYPE_DISK;
}

long long SizeOf(const File& file) {
    LARGE_INTEGER size;
    return ::GetFileSizeEx(file.get(), &size) ? size.QuadPart : 0;
}

bool Fails(DWORD error) {
    ::SetLastError(error);
    return false;
}

// Copies bytes from where two files stand.
class Pump {
  public:
    // Until the source ends or so many bytes are moved.
    bool Move(const File& from, const File& to, long long most) {
        moved_ = 0;
        while (moved_ < most) {
            DWORD count = 0, written = 0;
            const auto wanted = static_cast<DWORD>(std::min<long long>(kCapacity, most - moved_));
            if (!::ReadFile(from.get(), block_.get(), wanted, &count, nullptr)) return false;
            if (count == 0) return true;
            if (!::WriteFile(to.get(), block_.get(), count, &written, nullptr)) return false;
            moved_ += written;
            if (written < count) return Fails(ERROR_DISK_FULL);
        }
        return true;
    }
    long long moved() const noexcept { return moved_; }  // by the last Move

  private:
    static constexpr DWORD kCapacity = 1 << 16;
    std::unique_ptr<char[]> block_ = std::make_unique_for_overwrite<char[]>(kCapacity);
    long long moved_ = 0;
};

constexpr long long kAll = std::numeric_limits<long long>::max();

// What lies behind the destination's present end comes first: that alone asks the disk for room, and where
// there is none, nothing is lost yet. A source that tells less than it holds, as the files do in which a
// system shows its state, has its end where reading finds it.
bool Replace(const File& from, const File& to, Pump& pump) {
    const long long held = SizeOf(to);
    const bool isLonger = SizeOf(from) > held;
    if (isLonger) {
        if (!ql::MoveTo(from.get(), held) || !ql::MoveTo(to.get(), held)) return false;
        if (!pump.Move(from, to, kAll)) {
            const DWORD error = ::GetLastError();
            ql::EndAt(to.get(), held);
            return Fails(error);
        }
    }
    if (!ql::MoveTo(from.get(), 0) || !ql::MoveTo(to.get(), 0)) return false;
    const bool done = pump.Move(from, to, isLonger ? held : kAll);
    const DWORD error = ::GetLastError();
    const bool isUntouched = !done && pump.moved() == 0;
    const bool endsRight =
        (done && pump.moved() >= held) || ql::EndAt(to.get(), isUntouched ? held : pump.moved());
    return done ? endsRight : Fails(error);
}

bool Copy(const File& from, const File& to, Pump& pump) {
    if (!HasSize(to)) return pump.Move(from, to, kAll);
    if (!HasSize(from)) return pump.Move(from, to, kAll) && ::SetEndOfFile(to.get());
    if (ql::AreOneFile(from.get(), to.get())) return Fails(ERROR_INVALID_PARAMETER);
    return Replace(from, to, pump);
}

bool CopyContents(const wchar_t* destination, const wchar_t* source) {
    Pump pump;
    const File from = OpenSource(source, kShareAll);
    if (!from) return false;
    File to(::CreateFileW(destination, GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                          nullptr));
    if (!to) return false;
    const bool isNew = ::GetLastError() != ERROR_ALREADY_EXISTS && HasSize(to);
    if (Copy(from, to, pump)) return true;
    const DWORD error = ::GetLastError();
    to.reset();
    if (isNew) ::DeleteFileW(destination);
    return Fails(error);
}

}  // namespace

int MakeFileCopy(const wchar_t* destination, const wchar_t* source, int keepTimes, unsigned long& error) {
    if (!destination || !source) return Fails(ERROR_INVALID_PARAMETER);
    Times times;
    if (keepTimes && !ReadTimes(source, times)) {
        error = ::GetLastError();
        return 0;
    }
    if (!ql::FailureIfThrown(false, [&] { return CopyContents(destination, source); })) return 0;
    if (keepTimes && !SetTimes(destination, times)) {
        error = ::GetLastError();
        return 0;
    }
    return 1;
}
