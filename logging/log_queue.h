#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "logging/cache_line.h"
#include "logging/logger.h"
#include "platform/critical_section.h"

namespace ql {

// Messages in order: any thread pushes at the back, the writer takes all at once as its batch. The links are
// in the messages, so that a push costs one short lock and no memory.
//
// The system may end a thread between any two stores below when the process ends, and the thread that ends
// the process then goes on from what it finds. So no store but the last of a change makes a message
// unreachable.
class LogQueue {
  public:
    // Whether the writer sleeps and is to be woken.
    bool Push(std::shared_ptr<LogMessage> message) noexcept {
        LogMessage* const added = message.get();
        added->self_ = std::move(message);
        added->next_.store(nullptr, std::memory_order_relaxed);
        const CriticalSectionGuard guard(lock_);
        LogMessage* const last = last_;
        (last ? last->next_ : first_).store(added, std::memory_order_release);
        last_.store(added, std::memory_order_release);
        return std::exchange(sleeping_, false);
    }

    // Makes what is queued the batch, which must be empty. False when there was nothing.
    bool Take() noexcept {
        const CriticalSectionGuard guard(lock_);
        return TakeAbandoned();
    }

    // The same without the lock, for when no other thread is left that could let go of it.
    bool TakeAbandoned() noexcept {
        LogMessage* const first = first_;
        batch_.store(first);
        last_.store(nullptr);
        first_.store(nullptr);
        return first != nullptr;
    }

    // Whether the writer may sleep until it is woken: nothing came meanwhile.
    bool FallAsleep() noexcept {
        const CriticalSectionGuard guard(lock_);
        sleeping_ = first_.load() == nullptr;
        return sleeping_;
    }

    // The message in hand, which stays reachable until Advance; null at the end of the batch.
    LogMessage* InHand() const noexcept { return batch_; }
    void Advance() noexcept { batch_.store(batch_.load()->next_); }

    // For the thread that goes on with what the writer left: a batch that was being taken is still queued as
    // well.
    void DropTornTake() noexcept {
        if (first_ == batch_) first_.store(nullptr);
    }

    // Held while the writer is started: it then waits for its starter.
    CriticalSection& lock() noexcept { return lock_; }

  private:
    CriticalSection lock_;
    std::atomic<LogMessage*> first_ = nullptr;
    std::atomic<LogMessage*> last_ = nullptr;
    bool sleeping_ QL_GUARDED_BY(lock_) = false;
    alignas(kCacheLine) std::atomic<LogMessage*> batch_ = nullptr;
};

}  // namespace ql
