#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <memory>
#include <utility>

#include "logging/logger.h"

namespace ql {

inline constexpr std::array kLogLevels = {QLLOG_ERROR, QLLOG_WARNING, QLLOG_INFO, QLLOG_DEBUG};

struct LogRegistration {
    explicit LogRegistration(std::shared_ptr<ILogOutput> registered) noexcept
        : output(std::move(registered)),
          isBuffered(dynamic_cast<const IBufferedLogOutput*>(output.get()) != nullptr) {}

    const std::shared_ptr<ILogOutput> output;
    const bool isBuffered;
    std::atomic<LogRegistration*> older = nullptr;
    std::atomic<LogRegistration*> newer = nullptr;
};

// The outputs of each level in the order of registration. Any thread adds, by one exchange; the writer walks,
// and is the only one to detach. Nobody takes a lock, so that neither a slow output nor a thread that the
// system ended holds anybody up. As in the queue, what the system leaves of a change is complete enough for
// the thread that ends the process.
class OutputLists {
  public:
    // Ignores what is not exactly one level.
    void Add(QLLogLevel level, std::shared_ptr<ILogOutput> output) {
        if (!std::has_single_bit(static_cast<unsigned>(level)) || IndexOf(level) >= lists_.size()) return;
        auto* const added = new LogRegistration(std::move(output));
        std::atomic<LogRegistration*>& newest = lists_[IndexOf(level)].newest;
        LogRegistration* before = newest;
        do {
            added->older = before;
        } while (!newest.compare_exchange_weak(before, added));
    }

    // The first of a level; each leads to the next newer one.
    LogRegistration* First(QLLogLevel level) noexcept {
        List& list = lists_[IndexOf(level)];
        LogRegistration* const newest = list.newest;
        if (newest != list.linked) {
            list.first = Link(newest);
            list.linked = newest;
        }
        return newest ? list.first.load() : nullptr;
    }

    // Empties a level. Its registrations stay reachable as those that are being closed until Forget.
    void Detach(QLLogLevel level) noexcept {
        List& list = lists_[IndexOf(level)];
        LogRegistration* newest = list.newest;
        do {
            list.closing = newest;
        } while (newest && !list.newest.compare_exchange_weak(newest, nullptr));
        list.linked = nullptr;
    }
    LogRegistration* FirstClosing(QLLogLevel level) noexcept { return Link(lists_[IndexOf(level)].closing); }
    // They are the caller's now.
    void Forget(QLLogLevel level) noexcept { lists_[IndexOf(level)].closing = nullptr; }

  private:
    struct List {
        std::atomic<LogRegistration*> newest = nullptr;
        std::atomic<LogRegistration*> linked = nullptr;  // the newest when the links were made
        std::atomic<LogRegistration*> first = nullptr;
        std::atomic<LogRegistration*> closing = nullptr;
    };

    static std::size_t IndexOf(QLLogLevel level) noexcept {
        return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(level)));
    }

    // Makes the links to the newer ones and answers the oldest.
    static LogRegistration* Link(LogRegistration* at) noexcept {
        while (LogRegistration* const older = at ? at->older.load() : nullptr) {
            older->newer = at;
            at = older;
        }
        return at;
    }

    std::array<List, kLogLevels.size()> lists_;
};

}  // namespace ql
