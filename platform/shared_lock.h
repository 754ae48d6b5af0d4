#pragma once

#include <atomic>
#include <cstdint>

#include "platform/cache_line.h"
#include "platform/critical_section.h"
#include "platform/module.h"

namespace ql {

// A lock that many readers or one writer hold, for what is read far more often than written. A reader holds
// one of its doors, a writer all of them: readers neither wait for each other nor share a line of memory
// while there are no more of them inside than doors. Unlike a critical section it must not be taken again by
// a thread that holds it. Use it through its guards.
class QL_LOCK_ATTRIBUTE(capability("shared lock")) SharedLock {
  public:
    // Whether somebody holds it.
    using Door = std::atomic<bool>;

    SharedLock() noexcept { ::InitializeSRWLock(&writer_); }
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

    void EnterAsWriter() noexcept QL_LOCK_ATTRIBUTE(acquire_capability()) {
        ::AcquireSRWLockExclusive(&writer_);
        for (DoorLine& line : doors_) AwaitAndTake(line.door);
    }
    void LeaveAsWriter() noexcept QL_LOCK_ATTRIBUTE(release_capability()) {
        for (DoorLine& line : doors_) Release(line.door);
        ::ReleaseSRWLockExclusive(&writer_);
    }
    // Answers the door, by which the reader leaves again.
    Door& EnterAsReader() noexcept QL_LOCK_ATTRIBUTE(acquire_shared_capability()) {
        for (unsigned looks = 0, own = OwnDoor();; AwaitWriter(looks++)) {
            for (unsigned i = 0; i < kDoors; ++i) {
                Door& door = doors_[(own + i) % kDoors].door;
                if (TakeIfFree(door)) return door;
            }
        }
    }
    void LeaveAsReader(Door& door) noexcept QL_LOCK_ATTRIBUTE(release_shared_capability()) { Release(door); }

  private:
    static constexpr unsigned kDoorBits = 3, kDoors = 1u << kDoorBits, kQuickLooks = 64;
    struct DoorLine {
        Door door = false;
        char padding[kCacheLine];
    };

    // Threads are told apart by where their stacks are, which costs no call; the number is 2 to the 32nd by
    // the golden ratio, which spreads what differs in a few bits.
    static unsigned OwnDoor() noexcept {
        const char here = 0;
        const auto stack = static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(&here) >> 16);
        return stack * 0x9e3779b9u >> (32 - kDoorBits);
    }

    static bool TakeIfFree(Door& door) noexcept { return !door.exchange(true, std::memory_order_acquire); }
    static void Release(Door& door) noexcept { door.store(false, std::memory_order_release); }

    // A reader that the end of the process has taken away holds its door for good; it has changed nothing.
    static void AwaitAndTake(Door& door) noexcept {
        for (unsigned looks = 1; !TakeIfFree(door) && !ProcessIsEnding(); ++looks) Pause(looks);
    }
    void AwaitWriter(unsigned looks) noexcept {
        ::AcquireSRWLockShared(&writer_);
        ::ReleaseSRWLockShared(&writer_);
        Pause(looks);
    }
    // Readers hold a door for moments only. Now and then a pause lets in one that the system ranks below this
    // thread.
    static void Pause(unsigned looks) noexcept {
        if (looks > kQuickLooks) ::Sleep(looks % kQuickLooks == 0 ? 1 : 0);
    }

    SRWLOCK writer_;
    DoorLine doors_[kDoors];
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
