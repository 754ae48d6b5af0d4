#pragma once

#include <utility>

#include "platform/last_error.h"
#include "platform/win32.h"

namespace ql {

// Owns one system handle and closes it once. Traits names the handle type, the value that means "none" (the
// system uses both null and INVALID_HANDLE_VALUE) and how to close it.
template <class Traits>
class UniqueHandle {
  public:
    using Handle = typename Traits::Handle;

    UniqueHandle() noexcept = default;
    explicit UniqueHandle(Handle handle) noexcept : handle_(handle) {}
    UniqueHandle(UniqueHandle&& other) noexcept : handle_(other.release()) {}
    UniqueHandle& operator=(UniqueHandle&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~UniqueHandle() { reset(); }

    Handle get() const noexcept { return handle_; }
    explicit operator bool() const noexcept { return handle_ != Traits::Invalid(); }
    Handle release() noexcept { return std::exchange(handle_, Traits::Invalid()); }

    // Closing must not hide the error of the call that the caller is about to report.
    void reset(Handle handle = Traits::Invalid()) noexcept {
        Handle old = std::exchange(handle_, handle);
        if (old == Traits::Invalid() || old == handle) return;
        const LastErrorKept lastError;
        Traits::Close(old);
    }

    // For calls that answer the handle through a pointer; closes what was held.
    Handle* put() noexcept {
        reset();
        return &handle_;
    }

  private:
    Handle handle_ = Traits::Invalid();
};

struct RegKeyTraits {
    using Handle = HKEY;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle key) noexcept { ::RegCloseKey(key); }
};

struct KernelHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle handle) noexcept { ::CloseHandle(handle); }
};

struct FileHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle handle) noexcept { ::CloseHandle(handle); }
};

struct FindHandleTraits {
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return INVALID_HANDLE_VALUE; }
    static void Close(Handle handle) noexcept { ::FindClose(handle); }
};

using UniqueRegKey = UniqueHandle<RegKeyTraits>;
using UniqueKernelHandle = UniqueHandle<KernelHandleTraits>;
using UniqueFileHandle = UniqueHandle<FileHandleTraits>;
using UniqueFindHandle = UniqueHandle<FindHandleTraits>;

}  // namespace ql
