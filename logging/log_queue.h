#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "logging/in_order.h"
#include "logging/line_memory.h"
#include "logging/logger.h"
#include "platform/cache_line.h"

namespace ql {

// What stands in the queue: a line, or a message of the host's. Whoever handles it frees it.
struct LogEntry {
    std::atomic<LogEntry*> older = nullptr;
    std::atomic<LogEntry*> newer = nullptr;
    std::shared_ptr<LogMessage> message{};     // none for a line
    LineBlock* block = nullptr;                // where it lies; null is the heap
    std::size_t counted = 0;                   // its bytes in the backlog
    InOrder<std::uint32_t> firstDelivery = 0;  // once it is begun
    QLLogLevel level{};

    // A line's text follows it.
    wchar_t* Text() noexcept { return reinterpret_cast<wchar_t*>(this + 1); }
};

// Entries in order: any thread pushes, the writer takes all at once as its batch. The links are in the
// entries, and a push is one exchange of the newest one, so that no caller waits for another or for the
// writer.
//
// The system may end a thread between any two stores below when the process ends, and the thread that ends
// the process then goes on from what it finds. So no store but the last of a change makes an entry
// unreachable.
class LogQueue {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
  public:
    // Whether the writer sleeps and is to be woken.
    bool Push(LogEntry* added) noexcept {
        LogEntry* newest = newest_.load(std::memory_order_relaxed);
        do {
            added->older.store(newest, std::memory_order_relaxed);
        } while (!newest_.compare_exchange_weak(newest, added, kInOneOrder));
        return sleeping_.load(kInOneOrder) && sleeping_.exchange(false, kInOneOrder);
    }

    // Makes what is queued the batch, which must be empty. False when there was nothing.
    bool Take() noexcept {
        LogEntry* newest = newest_;
        do {
            taken_ = newest;
        } while (newest && !newest_.compare_exchange_weak(newest, nullptr));
        return LinkTaken();
    }

    // Whether the writer may sleep until it is woken: nothing came meanwhile.
    bool FallAsleep() noexcept {
        sleeping_.store(true, kInOneOrder);
        if (!newest_.load(kInOneOrder)) return true;
        sleeping_ = false;
        return false;
    }

    // The entry in hand, which stays reachable until Advance; null at the end of the batch.
    LogEntry* InHand() const noexcept { return batch_; }
    void Advance() noexcept { batch_.store(batch_.load()->newer); }

    // For the thread that goes on with what the writer left, perhaps amid taking a batch.
    void FinishTake() noexcept {
        if (!InHand() && !IsQueued(taken_)) LinkTaken();
        taken_ = nullptr;
    }

  private:
    // Either the pusher sees that the writer sleeps or the writer sees the entry: that each stores before it
    // reads what the other stores holds only in an order that all threads agree on.
    static constexpr std::memory_order kInOneOrder = std::memory_order_seq_cst;

    // Makes what was taken the batch, the oldest first.
    bool LinkTaken() noexcept {
        LogEntry* at = taken_;
        if (!at) return false;
        while (LogEntry* const older = at->older) {
            older->newer.store(at, std::memory_order_relaxed);
            at = older;
        }
        batch_ = at;
        taken_ = nullptr;
        return true;
    }

    bool IsQueued(const LogEntry* entry) const noexcept {
        const LogEntry* at = newest_;
        while (at && at != entry) at = at->older;
        return at != nullptr;
    }

    std::atomic<LogEntry*> newest_ = nullptr;
    std::atomic<bool> sleeping_ = false;
    alignas(kCacheLine) std::atomic<LogEntry*> taken_ = nullptr;  // the newest of those being taken
    std::atomic<LogEntry*> batch_ = nullptr;
};

}  // namespace ql
