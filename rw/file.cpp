#include "rw/file.h"

#include <string>
#include <utility>

#include "platform/failure.h"
#include "platform/win32.h"

namespace {

std::FILE* OpenBinary(const wchar_t* path, const wchar_t* mode) {
    if (!path || !mode) return nullptr;
    std::wstring binary = mode;
    std::erase(binary, L't');
    if (binary.find(L'b') == std::wstring::npos) binary += L'b';
    return ::_wfopen(path, binary.c_str());
}

}  // namespace

RWFile::RWFile(const wchar_t* path, const wchar_t* mode)
    : file_(ql::FailureIfThrown(nullptr, [=] { return OpenBinary(path, mode); })) {}

// The C library wants the position set between a read and a write.
bool RWFile::TurnTo(Direction direction) {
    if (!file_) return false;
    const Direction last = std::exchange(last_, direction);
    return last == Direction::None || last == direction || std::fseek(file_.get(), 0, SEEK_CUR) == 0;
}

bool RWFile::Read(void* bytes, std::size_t count) {
    return TurnTo(Direction::Read) && std::fread(bytes, 1, count, file_.get()) == count;
}

bool RWFile::Write(const void* bytes, std::size_t count) {
    return TurnTo(Direction::Write) && std::fwrite(bytes, 1, count, file_.get()) == count;
}

// The error of an earlier write stays with the file.
bool RWFile::Flush() {
    return file_ && (last_ != Direction::Write || std::fflush(file_.get()) == 0) && !std::ferror(file_.get());
}

bool RWFile::SeekTo(long offset) {
    return file_ && std::fseek(file_.get(), offset, SEEK_SET) == 0;
}
