#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <memory>
#include <new>
#include <utility>

#include "platform/cache_line.h"
#include "platform/critical_section.h"

namespace ql {

// Memory for lines, free again when the last line in it is done.
class LineBlock {
  public:
    static constexpr std::size_t kBytes = std::size_t{128} * 1024 - kCacheLine;

    std::byte* begin() noexcept { return bytes_; }

    // Both tell whether no line is in it, nor will be.
    bool Retire(std::size_t linesTaken) noexcept { return Drop(kFilling - linesTaken); }
    bool GiveBack() noexcept { return Drop(1); }

    void Reuse() noexcept { lines_.store(kFilling, std::memory_order_relaxed); }

  private:
    // Stands for the lines of a block that still fills: the caller who adds one need not count it where the
    // writer counts down.
    static constexpr std::size_t kFilling = kBytes;

    bool Drop(std::size_t lines) noexcept { return lines_.fetch_sub(lines) == lines; }

    alignas(kCacheLine) std::atomic<std::size_t> lines_ = kFilling;
    alignas(kCacheLine) std::byte bytes_[kBytes];
};

// Where queued lines lie. Memory that is asked of the system, or touched for the first time, is what costs a
// caller most; so the writer keeps some blocks ready.
class LineMemory {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
  public:
    struct Place {
        std::byte* at = nullptr;  // null when there is no memory, or too much was asked for
        LineBlock* block = nullptr;
        bool isStockLow = false;  // the writer is to be woken for it
    };

    Place Take(std::size_t bytes) noexcept {
        constexpr std::size_t kMost = LineBlock::kBytes / 16;
        constexpr std::size_t kUnit = alignof(std::max_align_t);
        if (bytes > kMost) return {};
        const std::size_t rounded = (bytes + kUnit - 1) / kUnit * kUnit;
        Place place = TakeReady(rounded);
        if (!place.at && AddBlock()) place = TakeReady(rounded);
        return place;
    }

    // For each line that is done.
    void GiveBack(LineBlock* block) noexcept {
        if (block->GiveBack()) Keep(block);
    }

    // By the writer, often.
    void Stock() noexcept {
        while (count_.load(std::memory_order_relaxed) < kStocked && AddBlock()) {
        }
    }

  private:
    static constexpr std::size_t kStocked = 16;
    static constexpr std::size_t kLow = kStocked / 2;
    static constexpr std::size_t kMostKept = 2 * kStocked;

    Place TakeReady(std::size_t bytes) noexcept {
        std::unique_ptr<LineBlock> dropped;
        const CriticalSectionGuard guard(lock_);
        bool isStockLow = false;
        if (bytes > room_) {
            const std::size_t ready = count_.load(std::memory_order_relaxed);
            if (ready == 0) return {};
            isStockLow = ready == kLow;
            dropped.reset(FillNext(ready - 1));
        }
        room_ -= bytes;
        ++taken_;
        return {std::exchange(at_, at_ + bytes), filling_, isStockLow};
    }

    // The former block where there is no use for it.
    LineBlock* FillNext(std::size_t index) noexcept QL_REQUIRES(lock_) {
        LineBlock* const full = std::exchange(filling_, ready_[index]);
        count_.store(index, std::memory_order_relaxed);
        const bool isFree = full && full->Retire(std::exchange(taken_, 0));
        at_ = filling_->begin();
        room_ = LineBlock::kBytes;
        return isFree ? Offer(full) : nullptr;
    }

    // Makes a free block ready, or answers it where enough are.
    LineBlock* Offer(LineBlock* block) noexcept QL_REQUIRES(lock_) {
        const std::size_t ready = count_.load(std::memory_order_relaxed);
        if (ready == kMostKept) return block;
        block->Reuse();
        ready_[ready] = block;
        count_.store(ready + 1, std::memory_order_relaxed);
        return nullptr;
    }

    void Keep(LineBlock* block) noexcept {
        std::unique_ptr<LineBlock> dropped;
        const CriticalSectionGuard guard(lock_);
        dropped.reset(Offer(block));
    }

    // The zeros make the system hand the memory out now and not at a caller's first touch.
    bool AddBlock() noexcept {
        auto* const block = new (std::nothrow) LineBlock();
        if (block) Keep(block);
        return block != nullptr;
    }

    CriticalSection lock_;
    LineBlock* filling_ QL_GUARDED_BY(lock_) = nullptr;
    std::byte* at_ QL_GUARDED_BY(lock_) = nullptr;
    std::size_t room_ QL_GUARDED_BY(lock_) = 0;
    std::size_t taken_ QL_GUARDED_BY(lock_) = 0;
    alignas(kCacheLine) std::array<LineBlock*, kMostKept> ready_ QL_GUARDED_BY(lock_) = {};
    alignas(kCacheLine) std::atomic<std::size_t> count_ = 0;
};

}  // namespace ql
