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

void CreateMissing(const wchar_t* path, unsigned short flags) {
    const int descriptor =
        ql::OpenFile(path, _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY, _SH_DENYRD, ql::PermissionMode(flags));
    if (descriptor >= 0) ::_close(descriptor);
}

}  // namespace

CFileStreamBuf::~CFileStreamBuf() {
    Close();
}

bool CFileStreamBuf::Open(const QLFileName& name, unsigned short flags) {
    if (is_open()) Close();  // a size that is recorded before the first opening waits for the file
    const RWWString path = name.GetPathAndFileName();
    if (::_waccess(path.data(), 0) != 0) {
        if ((flags & OPEN_CREATE_MISSING) == 0) return false;
        CreateMissing(path.data(), flags);
    }
    const int truncation = IsForWritingAlone(flags) ? _O_TRUNC : 0;
    const int descriptor =
        ql::OpenFile(path.data(), ql::AccessMode(flags) | truncation, ql::SharingMode(flags), 0);
    fileName_ = name;
    if (descriptor < 0) return false;
    static_cast<StandardBuffer&>(*this) = StandardBuffer(descriptor, StreamMode(flags));
    if (!is_open()) ::_close(descriptor);
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
    if (size >= 0) ::_chsize_s(descriptor, size);
    ::_close(descriptor);
    return true;
}

long CFileStreamBuf::GetFilePos() {
    return static_cast<long>(pubseekoff(0, std::ios_base::cur));
}
