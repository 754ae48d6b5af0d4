#pragma once

#include <atomic>
#include <cstdint>

#include "platform/cache_line.h"
#include "platform/critical_section.h"

namespace ql {

// A lock that many readers or one writer hold, for what is read far more often than written. Readers neither
// wait for each other nor share a line of memory: each counts itself at a door of its own, and a writer shuts
// them all. Unlike a critical section it must not be taken again by a thread that holds it. Use it through
// its guards.
class QL_LOCK_ATTRIBUTE(capability("shared lock")) SharedLock {
  public:
    // How many readers are behind it; kShut besides while there is a writer.
    using Door = std::atomic<std::uint32_t>;

    SharedLock() noexcept { ::InitializeSRWLock(&writer_); }
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

    void EnterAsWriter() noexcept QL_LOCK_ATTRIBUTE(acquire_capability()) {
        ::AcquireSRWLockExclusive(&writer_);
        for (DoorLine& line : doors_) line.door.fetch_or(kShut, std::memory_order_acq_rel);
        for (DoorLine& line : doors_) AwaitReaders(line.door);
    }
    void LeaveAsWriter() noexcept QL_LOCK_ATTRIBUTE(release_capability()) {
        for (DoorLine& line : doors_) line.door.fetch_and(~kShut, std::memory_order_release);
        ::ReleaseSRWLockExclusive(&writer_);
    }
    // Answers the door, by which the reader leaves again.
    Door& EnterAsReader() noexcept QL_LOCK_ATTRIBUTE(acquire_shared_capability()) {
        Door& door = Own();
        while (door.fetch_add(1, std::memory_order_acquire) & kShut) AwaitWriter(door);
        return door;
    }
    void LeaveAsReader(Door& door) noexcept QL_LOCK_ATTRIBUTE(release_shared_capability()) {
        door.fetch_sub(1, std::memory_order_release);
    }

  private:
    static constexpr std::uint32_t kShut = 0x80000000;
    static constexpr unsigned kDoorBits = 3;
    struct DoorLine {
        Door door = 0;
        char padding[kCacheLine];
    };

    // Threads are told apart by where their stacks are, which costs no call; the number is 2 to the 32nd by
    // the golden ratio, which spreads what differs in a few bits.
    Door& Own() noexcept {
        const char here = 0;
        const auto stack = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&here) >> 16);
        return doors_[stack * 0x9e3779b9u >> (32 - kDoorBits)].door;
    }

    // Readers hold the lock for moments only. Now and then a pause lets in a reader that the system ranks
    // below this thread.
    static void AwaitReaders(const Door& door) noexcept {
        for (unsigned looks = 1; door.load(std::memory_order_acquire) != kShut; ++looks) {
            if (looks > kQuickLooks) ::Sleep(looks % kQuickLooks == 0 ? 1 : 0);
        }
    }
    void AwaitWriter(Door& door) noexcept {
        door.fetch_sub(1, std::memory_order_relaxed);
        ::AcquireSRWLockShared(&writer_);
        ::ReleaseSRWLockShared(&writer_);
    }
    static constexpr unsigned kQuickLooks = 64;

    SRWLOCK writer_;
    DoorLine doors_[1u << kDoorBits];
};

class QL_LOCK_ATTRIBUTE(scoped_lockable) WriterGuard {
  public:
    explicit WriterGuard(SharedLock& lock) noexcept QL_LOCK_ATTRIBUTE(acquire_capability(lock))
        : lock_(lock) {
        lock_.EnterAsWriter();
    }
    ~WriterGuard() QL_LOCK_ATTRIBUTE(release_capability()) { lock_.LeaveAsWriter(); }
    WriterGuard(const WriterGuard&) = delete;
    WriterGuard& operator=(const WriterGuard&) = delete;

  private:
    SharedLock& lock_;
};

class QL_LOCK_ATTRIBUTE(scoped_lockable) ReaderGuard {
  public:
    explicit ReaderGuard(SharedLock& lock) noexcept QL_LOCK_ATTRIBUTE(acquire_shared_capability(lock))
        : lock_(lock), door_(lock.EnterAsReader()) {}
    ~ReaderGuard() QL_LOCK_ATTRIBUTE(release_generic_capability()) { lock_.LeaveAsReader(door_); }
    ReaderGuard(const ReaderGuard&) = delete;
    ReaderGuard& operator=(const ReaderGuard&) = delete;

  private:
    SharedLock& lock_;
    SharedLock::Door& door_;
};

}  // namespace ql
