#pragma once

#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <memory>
#include <utility>

#include "logging/logger.h"
#include "platform/critical_section.h"

namespace ql {

inline constexpr std::array kLogLevels = {QLLOG_ERROR, QLLOG_WARNING, QLLOG_INFO, QLLOG_DEBUG};

struct LogRegistration {
    explicit LogRegistration(std::shared_ptr<ILogOutput> registered) noexcept
        : output(std::move(registered)) {}

    const std::shared_ptr<ILogOutput> output;
    std::atomic<LogRegistration*> next = nullptr;
};

// The outputs of each level in the order of registration. Any thread adds; the writer walks without a lock
// and is the only one to detach, so that a slow output holds nobody up and may register others itself.
class OutputLists {
  public:
    // Ignores what is not exactly one level.
    void Add(QLLogLevel level, std::shared_ptr<ILogOutput> output) {
        for (std::size_t i = 0; i < kLogLevels.size(); ++i) {
            if (level == kLogLevels[i])
                Append(lists_[i], std::make_unique<LogRegistration>(std::move(output)));
        }
    }

    LogRegistration* First(QLLogLevel level) const noexcept { return Of(level).first; }

    // Empties a level; its registrations are the caller's.
    LogRegistration* Detach(QLLogLevel level) noexcept {
        const CriticalSectionGuard guard(lock_);
        return DetachAbandoned(level);
    }

    // The same without the lock, for when no other thread is left that could let go of it.
    LogRegistration* DetachAbandoned(QLLogLevel level) noexcept {
        List& list = lists_[IndexOf(level)];
        list.last = nullptr;
        return list.first.exchange(nullptr);
    }

  private:
    struct List {
        std::atomic<LogRegistration*> first = nullptr;
        LogRegistration* last = nullptr;
    };

    static std::size_t IndexOf(QLLogLevel level) noexcept {
        return static_cast<std::size_t>(std::countr_zero(static_cast<unsigned>(level)));
    }
    const List& Of(QLLogLevel level) const noexcept { return lists_[IndexOf(level)]; }

    void Append(List& list, std::unique_ptr<LogRegistration> added) noexcept {
        const CriticalSectionGuard guard(lock_);
        (list.last ? list.last->next : list.first).store(added.get());
        list.last = added.release();
    }

    CriticalSection lock_;
    std::array<List, kLogLevels.size()> lists_;
};

}  // namespace ql
