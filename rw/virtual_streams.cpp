#include "rw/virtual_streams.h"

#include "platform/failure.h"
#include "rw/file.h"

RWvostream::~RWvostream() = default;
RWvistream::~RWvistream() = default;

RWvostream& RWvostream::put(const void* bytes, std::size_t count) {
    good_ = good_ && DoPut(bytes, count);
    return *this;
}

RWvostream& RWvostream::flush() {
    good_ = good_ && DoFlush();
    return *this;
}

bool RWvostream::DoFlush() {
    return true;
}

RWvistream& RWvistream::get(void* bytes, std::size_t count) {
    good_ = good_ && DoGet(bytes, count);
    return *this;
}

bool RWBufferOstream::DoPut(const void* bytes, std::size_t count) {
    const auto wanted = static_cast<std::streamsize>(count);
    return ql::FailureIfThrown(
        false, [&] { return buffer_.sputn(static_cast<const char*>(bytes), wanted) == wanted; });
}

bool RWBufferOstream::DoFlush() {
    return ql::FailureIfThrown(false, [this] { return buffer_.pubsync() == 0; });
}

bool RWBufferIstream::DoGet(void* bytes, std::size_t count) {
    const auto wanted = static_cast<std::streamsize>(count);
    return ql::FailureIfThrown(false,
                               [&] { return buffer_.sgetn(static_cast<char*>(bytes), wanted) == wanted; });
}

bool RWFileOstream::DoPut(const void* bytes, std::size_t count) {
    return file_.Write(bytes, count);
}

bool RWFileOstream::DoFlush() {
    return file_.Flush();
}

bool RWFileIstream::DoGet(void* bytes, std::size_t count) {
    return file_.Read(bytes, count);
}
