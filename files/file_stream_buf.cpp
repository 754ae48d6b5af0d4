#include "files/file_stream_buf.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <utility>

#include "files/open_flags.h"

namespace {

using StandardBuffer = __gnu_cxx::stdio_filebuf<char>;

std::ios_base::openmode StreamMode(unsigned short flags) {
    if ((flags & OPEN_WRITE) == 0) return std::ios_base::in | std::ios_base::binary;
    if ((flags & OPEN_READ) == 0) return std::ios_base::out | std::ios_base::binary;
    return std::ios_base::in | std::ios_base::out | std::ios_base::binary;
}

bool IsForWritingAlone(unsigned short flags) {
    return (flags & (OPEN_READ | OPEN_WRITE)) == OPEN_WRITE;
}

bool CreateMissing(const wchar_t* path, unsigned short flags) {
    const int descriptor =
        ql::OpenFile(path, _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY, _SH_DENYRD, ql::PermissionMode(flags));
    return descriptor >= 0 && ::_close(descriptor) == 0;
}

}  // namespace

CFileStreamBuf::~CFileStreamBuf() {
    Close();
}

bool CFileStreamBuf::Open(const QLFileName& name, unsigned short flags) {
    Close();
    const RWWString path = name.GetPathAndFileName();
    if (::_waccess(path.data(), 0) != 0) {
        if ((flags & OPEN_CREATE_MISSING) == 0 || !CreateMissing(path.data(), flags)) return false;
    }
    const int truncation = IsForWritingAlone(flags) ? _O_TRUNC : 0;
    const int descriptor =
        ql::OpenFile(path.data(), ql::AccessMode(flags) | truncation, ql::SharingMode(flags), 0);
    fileName_ = name;
    if (descriptor < 0) return false;
    static_cast<StandardBuffer&>(*this) = StandardBuffer(descriptor, StreamMode(flags));
    return is_open();
}

bool CFileStreamBuf::Close() {
    close();
    return !size_ || ApplySize();
}

bool CFileStreamBuf::ApplySize() {
    const long size = *std::exchange(size_, std::nullopt);
    const int descriptor =
        ql::OpenFile(fileName_.GetPathAndFileName().data(), _O_RDWR | _O_BINARY, _SH_DENYRD, 0);
    if (descriptor < 0) return false;
    ::_chsize_s(descriptor, size);
    ::_close(descriptor);
    return true;
}

long CFileStreamBuf::GetFilePos() {
    return static_cast<long>(pubseekoff(0, std::ios_base::cur));
}
