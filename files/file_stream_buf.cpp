#include "files/file_stream_buf.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include <utility>

#include "files/kept_name.h"
#include "files/open_flags.h"
#include "platform/failure.h"

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
    ql::OpenAndClose(path, _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY, _SH_DENYRD, ql::PermissionMode(flags));
}

}  // namespace

CFileStreamBuf::~CFileStreamBuf() {
    Close();
}

bool CFileStreamBuf::Open(const QLFileName& name, unsigned short flags) {
    if (is_open()) Close();
    const std::optional<long> size = std::exchange(size_, std::nullopt);
    const RWWString path = name.GetPathAndFileName();
    if (::_waccess(path.data(), 0) != 0) {
        if ((flags & OPEN_CREATE_MISSING) == 0) return false;
        CreateMissing(path.data(), flags);
    }
    const int truncation = IsForWritingAlone(flags) ? _O_TRUNC : 0;
    const int descriptor =
        ql::OpenFile(path.data(), ql::AccessMode(flags) | truncation, ql::SharingMode(flags), 0);
    ql::KeepName(fileName_, name);
    if (descriptor < 0 || !Attach(descriptor, StreamMode(flags))) return false;
    lostBytes_ = false;
    size_ = size;
    return true;
}

// Takes the descriptor over, or closes it. A standard buffer without memory for its bytes throws, and has
// closed it by then.
bool CFileStreamBuf::Attach(int descriptor, std::ios_base::openmode mode) {
    return ql::FailureIfThrown(false, [&] {
        static_cast<StandardBuffer&>(*this) = StandardBuffer(descriptor, mode);
        if (!is_open()) ::_close(descriptor);
        return is_open();
    });
}

bool CFileStreamBuf::Close() {
    if (!is_open()) return true;
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

bool CFileStreamBuf::Flush() {
    const bool isWritten = pubsync() == 0;
    return !std::exchange(lostBytes_, false) && isWritten;
}

long CFileStreamBuf::GetFilePos() {
    const long long position = GetFilePos64();
    return std::in_range<long>(position) ? static_cast<long>(position) : -1;
}

long long CFileStreamBuf::GetFilePos64() {
    return pubseekoff(0, std::ios_base::cur);
}

CFileStreamBuf::int_type CFileStreamBuf::overflow(int_type unit) {
    const int_type result = StandardBuffer::overflow(unit);
    if (traits_type::eq_int_type(result, traits_type::eof())) lostBytes_ = true;
    return result;
}

std::streamsize CFileStreamBuf::xsputn(const char* bytes, std::streamsize count) {
    const std::streamsize written = StandardBuffer::xsputn(bytes, count);
    if (written < count) lostBytes_ = true;
    return written;
}
