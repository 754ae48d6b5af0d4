#pragma once

#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "platform/critical_section.h"

namespace ql {

// Memory for lines, filled from its front. It is free again when the last line in it is done.
class LineBlock {
  public:
    // Null when it is full.
    void* Take(std::size_t bytes) noexcept {
        if (bytes > sizeof bytes_ - used_) return nullptr;
        void* const place = bytes_ + used_;
        used_ += bytes;
        ++taken_;
        return place;
    }

    // Both tell whether no line is in it, nor will be.
    bool Retire() noexcept { return Drop(kFilling - taken_); }
    bool GiveBack() noexcept { return Drop(1); }

    void Empty() noexcept {
        used_ = 0;
        taken_ = 0;
        lines_.store(kFilling, std::memory_order_relaxed);
    }

  private:
    friend class LineMemory;
    static constexpr std::size_t kSize = 64 * 1024;
    // Stands for the lines of a block that still fills: the caller who adds one need not count it where
    // the writer counts down.
    static constexpr std::size_t kFilling = kSize;

    bool Drop(std::size_t lines) noexcept { return lines_.fetch_sub(lines) == lines; }

    LineBlock* next_ = nullptr;
    std::size_t used_ = 0;
    std::size_t taken_ = 0;
    std::atomic<std::size_t> lines_ = kFilling;
    alignas(std::max_align_t) std::byte bytes_[kSize - 64];
};

// Where queued lines lie. Memory that is asked of the system, or touched for the first time, is what costs a
// caller most; so the writer keeps some blocks ready.
class LineMemory {
  public:
    struct Place {
        void* at = nullptr;  // null when there is no memory, or too much was asked for
        LineBlock* block = nullptr;
        bool isStockLow = false;  // the writer is to be woken for it
    };

    Place Take(std::size_t bytes) noexcept {
        constexpr std::size_t kMost = sizeof(LineBlock::bytes_) / 16;
        constexpr std::size_t kUnit = alignof(std::max_align_t);
        if (bytes > kMost) return {};
        const std::size_t rounded = (bytes + kUnit - 1) / kUnit * kUnit;
        Place place = TakeReady(rounded);
        if (!place.at && AddBlock()) place = TakeReady(rounded);
        return place;
    }

    // For each line that is done.
    void GiveBack(LineBlock* block) noexcept {
        if (block->GiveBack()) Recycle(block);
    }

    // By the writer, often.
    void Stock() noexcept {
        while (ready_.load(std::memory_order_relaxed) < kStocked && AddBlock()) {
        }
    }

  private:
    static constexpr std::size_t kStocked = 32;
    static constexpr std::size_t kLow = kStocked / 2;
    static constexpr std::size_t kMostKept = 2 * kStocked;

    Place TakeReady(std::size_t bytes) noexcept {
        const CriticalSectionGuard guard(lock_);
        void* at = filling_ ? filling_->Take(bytes) : nullptr;
        bool isStockLow = false;
        if (!at && first_) {
            isStockLow = Refill();
            at = filling_->Take(bytes);
        }
        return {at, filling_, isStockLow};
    }

    // Fills the next block from here on. Whether the stock has just become low.
    bool Refill() noexcept QL_REQUIRES(lock_) {
        LineBlock* const full = std::exchange(filling_, first_);
        first_ = filling_->next_;
        const bool isLow = ready_.fetch_sub(1, std::memory_order_relaxed) == kLow;
        if (full && full->Retire()) Add(full);
        return isLow;
    }

    void Add(LineBlock* block) noexcept QL_REQUIRES(lock_) {
        block->Empty();
        block->next_ = first_;
        first_ = block;
        ready_.fetch_add(1, std::memory_order_relaxed);
    }

    // The zeros make the system hand the memory out now and not at a caller's first touch.
    bool AddBlock() noexcept {
        auto* const block = new (std::nothrow) LineBlock();
        if (!block) return false;
        const CriticalSectionGuard guard(lock_);
        Add(block);
        return true;
    }

    void Recycle(LineBlock* block) noexcept {
        const std::unique_ptr<LineBlock> dropped(ready_.load(std::memory_order_relaxed) < kMostKept ? nullptr
                                                                                                    : block);
        if (dropped) return;
        const CriticalSectionGuard guard(lock_);
        Add(block);
    }

    CriticalSection lock_;
    LineBlock* filling_ QL_GUARDED_BY(lock_) = nullptr;
    LineBlock* first_ QL_GUARDED_BY(lock_) = nullptr;  // of the ready ones
    std::atomic<std::size_t> ready_ = 0;
};

}  // namespace ql
