#include "files/file.h"

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <utility>

#include "files/open_flags.h"

QLFile::QLFile(const QLFile& other)
    : handle_(other.IsOpen() ? ::_dup(other.handle_) : kClosed), fileName_(other.fileName_) {}

QLFile& QLFile::operator=(const QLFile& other) {
    QLFile copy(other);
    std::swap(handle_, copy.handle_);
    fileName_ = copy.fileName_;
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
    if (name != fileName_) fileName_ = name;
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

// Closing a duplicate is what makes the C run time commit the data and the directory entry.
int QLFile::Flush() {
    if (!IsOpen()) return 0;
    const int duplicate = ::_dup(handle_);
    return duplicate != kClosed && ::_close(duplicate) == 0;
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
    if (adoptName) fileName_ = newName;
    return 1;
}
