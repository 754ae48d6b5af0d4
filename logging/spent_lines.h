#pragma once

#include <cstddef>
#include <memory>
#include <utility>

#include "logging/logger.h"
#include "platform/critical_section.h"

namespace ql {

// Lines that have been written, for the next ones to be built in: memory that one thread takes and another
// gives back is what costs a caller most. Holds some megabytes at most.
class SpentLines {
  public:
    // Null when there is none.
    std::shared_ptr<WriteLogMessage> Take() noexcept {
        const CriticalSectionGuard guard(lock_);
        WriteLogMessage* const line = first_;
        if (!line) return nullptr;
        --count_;
        first_ = static_cast<WriteLogMessage*>(line->next_.load());
        return std::static_pointer_cast<WriteLogMessage>(std::move(line->self_));
    }

    // By the writer alone. False, and nothing done, when the line is not to be kept.
    bool Keep(WriteLogMessage& line) noexcept {
        constexpr std::size_t kLongestText = 500;
        if (!line.reusable_ || line.self_.use_count() > 1 || line.text_.capacity() > kLongestText)
            return false;
        if (held_ >= kMostHeld) return false;
        line.text_.clear();
        line.delivered_ = 0;
        line.next_.store(heldFirst_, std::memory_order_relaxed);
        heldFirst_ = &line;
        if (!heldLast_) heldLast_ = &line;
        // Many at a time, so that callers seldom find the lock taken.
        if (++held_ >= kManyLines) HandOver();
        return true;
    }

  private:
    static constexpr std::size_t kManyLines = 256;
    static constexpr std::size_t kMostHeld = 2 * kManyLines;

    void HandOver() noexcept {
        constexpr std::size_t kMostLines = 16 * 1024;
        const CriticalSectionGuard guard(lock_);
        if (count_ >= kMostLines) return;
        heldLast_->next_.store(first_, std::memory_order_relaxed);
        first_ = std::exchange(heldFirst_, nullptr);
        heldLast_ = nullptr;
        count_ += std::exchange(held_, 0);
    }

    CriticalSection lock_;
    WriteLogMessage* first_ QL_GUARDED_BY(lock_) = nullptr;
    std::size_t count_ QL_GUARDED_BY(lock_) = 0;

    // The writer's own.
    WriteLogMessage* heldFirst_ = nullptr;
    WriteLogMessage* heldLast_ = nullptr;
    std::size_t held_ = 0;
};

}  // namespace ql
