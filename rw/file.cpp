#include "rw/file.h"

#include "platform/win32.h"

RWFile::RWFile(const wchar_t* path, const wchar_t* mode) : file_(::_wfopen(path, mode)) {}

bool RWFile::Read(void* bytes, std::size_t count) {
    return file_ && std::fread(bytes, 1, count, file_.get()) == count;
}

bool RWFile::Write(const void* bytes, std::size_t count) {
    return file_ && std::fwrite(bytes, 1, count, file_.get()) == count;
}

bool RWFile::Flush() {
    return file_ && std::fflush(file_.get()) == 0;
}

bool RWFile::SeekTo(long offset) {
    return file_ && std::fseek(file_.get(), offset, SEEK_SET) == 0;
}
