#include "files/file.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <utility>

#include "files/kept_name.h"
#include "files/open_flags.h"
#include "platform/win32.h"

QLFile::QLFile(const QLFile& other)
    : handle_(other.IsOpen() ? ::_dup(other.handle_) : kClosed), fileName_(other.fileName_) {}

QLFile& QLFile::operator=(const QLFile& other) {
    QLFile copy(other);
    std::swap(handle_, copy.handle_);
    ql::KeepName(fileName_, copy.fileName_);
    return *this;
}

QLFile::~QLFile() {
    Close();
}

int QLFile::Open(unsigned short flags, const QLFileName& name) {
    return OpenWith(0, flags, name);
}

int QLFile::Create(unsigned short flags, const QLFileName& name) {
    return OpenWith(_O_CREAT, flags, name);
}

int QLFile::OpenWith(int creation, unsigned short flags, const QLFileName& name) {
    Close();
    handle_ = ql::OpenFile(name.GetPathAndFileName().data(), ql::AccessMode(flags) | creation,
                           ql::SharingMode(flags), ql::PermissionMode(flags));
    if (name != fileName_) ql::KeepName(fileName_, name);
    return IsOpen();
}

int QLFile::Read(unsigned char* buffer, int count, int* got) {
    if (!IsOpen() || !buffer || !got || count < 0) return 0;
    const int read = ::_read(handle_, buffer, static_cast<unsigned>(count));
    if (read < 0) return 0;
    *got = read;
    return 1;
}

int QLFile::Write(unsigned char* buffer, int count, int* done) {
    if (!IsOpen() || !buffer || !done || count < 0) return 0;
    const int written = ::_write(handle_, buffer, static_cast<unsigned>(count));
    if (written < 0) return 0;
    *done = written;
    return 1;
}

// A device has no disk below it. A file that is open for reading alone has nothing to commit, which the
// system tells as a refusal.
int QLFile::Flush() {
    if (!IsOpen()) return 0;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the run time's way of handing it
    const auto file = reinterpret_cast<HANDLE>(::_get_osfhandle(handle_));
    return ::GetFileType(file) != FILE_TYPE_DISK || ::FlushFileBuffers(file) ||
           ::GetLastError() == ERROR_ACCESS_DENIED;
}

int QLFile::Close() {
    const int open = std::exchange(handle_, kClosed);
    return open != kClosed && ::_close(open) == 0;
}

int QLFile::Delete() {
    Close();
    return ::_wremove(fileName_.GetPathAndFileName().data()) == 0;
}

int QLFile::Rename(const QLFileName& newName, int adoptName) {
    const RWWString from = fileName_.GetPathAndFileName();
    if (::_wrename(from.data(), newName.GetPathAndFileName().data()) != 0) return 0;
    if (adoptName) ql::KeepName(fileName_, newName);
    return 1;
}
