#include "files/open_flags.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>

#include "files/file.h"

namespace ql {

int AccessMode(unsigned short flags) noexcept {
    if ((flags & OPEN_WRITE) == 0) return _O_BINARY | _O_RDONLY;
    return _O_BINARY | ((flags & OPEN_READ) != 0 ? _O_RDWR : _O_WRONLY);
}

int SharingMode(unsigned short flags) noexcept {
    switch (flags & (OPEN_NO_SHARE_READ | OPEN_NO_SHARE_WRITE)) {
        case OPEN_NO_SHARE_READ: return _SH_DENYRD;
        case OPEN_NO_SHARE_WRITE: return _SH_DENYWR;
        case OPEN_NO_SHARE_READ | OPEN_NO_SHARE_WRITE: return _SH_DENYRW;
        default: return _SH_DENYNO;
    }
}

int PermissionMode(unsigned short flags) noexcept {
    return (flags & CREATE_READ_ONLY) != 0 ? _S_IREAD : _S_IREAD | _S_IWRITE;
}

int OpenFile(const wchar_t* path, int access, int sharing, int permission) noexcept {
    int descriptor = -1;
    return ::_wsopen_s(&descriptor, path, access, sharing, permission) == 0 ? descriptor : -1;
}

bool OpenAndClose(const wchar_t* path, int access, int sharing, int permission) noexcept {
    const int descriptor = OpenFile(path, access, sharing, permission);
    return descriptor != -1 && ::_close(descriptor) == 0;
}

bool CreateNewFile(const wchar_t* path) noexcept {
    return OpenAndClose(path, _O_CREAT | _O_EXCL | _O_RDWR | _O_BINARY, _SH_DENYRW, _S_IREAD | _S_IWRITE);
}

}  // namespace ql
