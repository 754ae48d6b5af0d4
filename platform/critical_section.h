#pragma once

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

}  // namespace ql
