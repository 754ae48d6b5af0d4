#pragma once

#include "platform/cache_line.h"
#include "platform/win32.h"

// Clang's thread-safety analysis reads these in the native builds; other compilers see nothing.
#if defined(__clang__)
#define QL_LOCK_ATTRIBUTE(x) __attribute__((x))
#else
#define QL_LOCK_ATTRIBUTE(x)
#endif
#define QL_GUARDED_BY(lock) QL_LOCK_ATTRIBUTE(guarded_by(lock))
#define QL_REQUIRES(lock) QL_LOCK_ATTRIBUTE(requires_capability(lock))

namespace ql {

// A lock that the thread which holds it may take again. Use it through CriticalSectionGuard.
class QL_LOCK_ATTRIBUTE(capability("critical section")) CriticalSection {
  public:
    // Spinning a little before waiting pays: everything held under these locks is short.
    CriticalSection() noexcept { ::InitializeCriticalSectionAndSpinCount(&section_, kSpins); }
    ~CriticalSection() { ::DeleteCriticalSection(&section_); }
    CriticalSection(const CriticalSection&) = delete;
    CriticalSection& operator=(const CriticalSection&) = delete;

    void Enter() noexcept QL_LOCK_ATTRIBUTE(acquire_capability()) { ::EnterCriticalSection(&section_); }
    void Leave() noexcept QL_LOCK_ATTRIBUTE(release_capability()) { ::LeaveCriticalSection(&section_); }

  private:
    static constexpr DWORD kSpins = 1000;
    CRITICAL_SECTION section_;
};

// Holds a critical section for its own lifetime.
class QL_LOCK_ATTRIBUTE(scoped_lockable) CriticalSectionGuard {
  public:
    explicit CriticalSectionGuard(CriticalSection& section) noexcept
        QL_LOCK_ATTRIBUTE(acquire_capability(section))
        : section_(section) {
        section_.Enter();
    }
    ~CriticalSectionGuard() QL_LOCK_ATTRIBUTE(release_capability()) { section_.Leave(); }
    CriticalSectionGuard(const CriticalSectionGuard&) = delete;
    CriticalSectionGuard& operator=(const CriticalSectionGuard&) = delete;

  private:
    CriticalSection& section_;
};

// A lock that many readers or one writer hold, for what is read far more often than written. Readers neither
// wait for each other nor share a line of memory: each thread enters at a stripe of its own, and a writer
// takes them all. Unlike a critical section it must not be taken again by a thread that holds it. Use it
// through its guards.
class QL_LOCK_ATTRIBUTE(capability("shared lock")) SharedLock {
  public:
    SharedLock() noexcept {
        for (Stripe& stripe : stripes_) ::InitializeSRWLock(&stripe.lock);
    }
    SharedLock(const SharedLock&) = delete;
    SharedLock& operator=(const SharedLock&) = delete;

    void EnterAsWriter() noexcept QL_LOCK_ATTRIBUTE(acquire_capability()) {
        for (Stripe& stripe : stripes_) ::AcquireSRWLockExclusive(&stripe.lock);
    }
    void LeaveAsWriter() noexcept QL_LOCK_ATTRIBUTE(release_capability()) {
        for (Stripe& stripe : stripes_) ::ReleaseSRWLockExclusive(&stripe.lock);
    }
    void EnterAsReader() noexcept QL_LOCK_ATTRIBUTE(acquire_shared_capability()) {
        ::AcquireSRWLockShared(&Own().lock);
    }
    void LeaveAsReader() noexcept QL_LOCK_ATTRIBUTE(release_shared_capability()) {
        ::ReleaseSRWLockShared(&Own().lock);
    }

  private:
    static constexpr unsigned kStripes = 8;
    struct Stripe {
        SRWLOCK lock;
        char padding[kCacheLine];
    };

    // The system's thread numbers are multiples of four.
    Stripe& Own() noexcept { return stripes_[::GetCurrentThreadId() / 4 % kStripes]; }

    Stripe stripes_[kStripes];
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
        : lock_(lock) {
        lock_.EnterAsReader();
    }
    ~ReaderGuard() QL_LOCK_ATTRIBUTE(release_generic_capability()) { lock_.LeaveAsReader(); }
    ReaderGuard(const ReaderGuard&) = delete;
    ReaderGuard& operator=(const ReaderGuard&) = delete;

  private:
    SharedLock& lock_;
};

}  // namespace ql
