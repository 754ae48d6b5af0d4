#pragma once

#include <atomic>
#include <memory>
#include <utility>

#include "logging/logger.h"
#include "platform/cache_line.h"

namespace ql {

// Messages in order: any thread pushes, the writer takes all at once as its batch. The links are in the messages,
// and a push is one exchange of the newest one, so that no caller waits for another or for the writer.
//
// The system may end a thread between any two stores below when the process ends, and the thread that ends
// the process then goes on from what it finds. So no store but the last of a change makes a message
// unreachable.
class LogQueue {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
  public:
    // Whether the writer sleeps and is to be woken.
    bool Push(std::shared_ptr<LogMessage> message) noexcept {
        LogMessage* const added = message.get();
        added->self_ = std::move(message);
        added->newer_.store(nullptr, std::memory_order_relaxed);
        LogMessage* newest = newest_.load(std::memory_order_relaxed);
        do {
            added->older_.store(newest, std::memory_order_relaxed);
        } while (!newest_.compare_exchange_weak(newest, added));
        return sleeping_ && sleeping_.exchange(false);
    }

    // Makes what is queued the batch, which must be empty. False when there was nothing.
    bool Take() noexcept {
        LogMessage* newest = newest_;
        do {
            taken_ = newest;
        } while (newest && !newest_.compare_exchange_weak(newest, nullptr));
        return LinkTaken();
    }

    // Whether the writer may sleep until it is woken: nothing came meanwhile.
    bool FallAsleep() noexcept {
        sleeping_ = true;
        if (!newest_.load()) return true;
        sleeping_ = false;
        return false;
    }

    // The message in hand, which stays reachable until Advance; null at the end of the batch.
    LogMessage* InHand() const noexcept { return batch_; }
    void Advance() noexcept { batch_.store(batch_.load()->newer_); }

    // For the thread that goes on with what the writer left, perhaps amid taking a batch.
    void FinishTake() noexcept {
        if (!InHand() && !IsQueued(taken_)) LinkTaken();
        taken_ = nullptr;
    }

  private:
    // Makes what was taken the batch, the oldest first.
    bool LinkTaken() noexcept {
        LogMessage* at = taken_;
        if (!at) return false;
        while (LogMessage* const older = at->older_) {
            older->newer_.store(at, std::memory_order_relaxed);
            at = older;
        }
        batch_ = at;
        taken_ = nullptr;
        return true;
    }

    bool IsQueued(const LogMessage* message) const noexcept {
        const LogMessage* at = newest_;
        while (at && at != message) at = at->older_;
        return at != nullptr;
    }

    std::atomic<LogMessage*> newest_ = nullptr;
    std::atomic<bool> sleeping_ = false;
    alignas(kCacheLine) std::atomic<LogMessage*> taken_ = nullptr;  // the newest of those being taken
    std::atomic<LogMessage*> batch_ = nullptr;
};

}  // namespace ql
