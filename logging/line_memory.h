#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <new>
#include <utility>

#include "platform/cache_line.h"
#include "platform/win32.h"

namespace ql {

// Memory for the lines of one thread, free again when the last of them is done.
class LineBlock {  // NOLINT(clang-analyzer-optin.performance.Padding): on purpose
  public:
    static constexpr std::size_t kBytes = std::size_t{64} * 1024 - 2 * kCacheLine;

    // By the thread whose block it is; null when there is no room.
    std::byte* Take(std::size_t bytes) noexcept {
        if (bytes > kBytes - used_) return nullptr;
        ++taken_;
        return bytes_ + std::exchange(used_, used_ + bytes);
    }

    // Both tell whether no line is in it, nor will be.
    bool Retire() noexcept { return Drop(kFilling - taken_); }
    bool GiveBack() noexcept { return Drop(1); }

    void Reuse() noexcept {
        used_ = 0;
        taken_ = 0;
        lines_.store(kFilling, std::memory_order_relaxed);
    }

  private:
    // Stands for the lines of a block that still fills: the caller who adds one need not count it where the
    // writer counts down.
    static constexpr std::size_t kFilling = kBytes;

    bool Drop(std::size_t lines) noexcept { return lines_.fetch_sub(lines) == lines; }

    std::size_t used_ = 0;
    std::size_t taken_ = 0;
    alignas(kCacheLine) std::atomic<std::size_t> lines_ = kFilling;
    alignas(kCacheLine) std::byte bytes_[kBytes];
};

// Where queued lines lie. Each thread fills a block of its own, without a lock. Memory that is asked of the
// system, or touched for the first time, is what costs a caller most; so the writer keeps some blocks ready.
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
        auto* const block = static_cast<LineBlock*>(::FlsGetValue(own_));
        if (std::byte* const at = block ? block->Take(rounded) : nullptr) return {at, block};
        LineBlock* const next = TakeReady();
        if (!next) return {};
        if (!::FlsSetValue(own_, next)) return Keep(next), Place();
        if (block && block->Retire()) Keep(block);
        return {next->Take(rounded), next, count_.load(std::memory_order_relaxed) == kLow};
    }

    // For each line that is done.
    void GiveBack(LineBlock* block) noexcept {
        if (block->GiveBack()) Keep(block);
    }

    // By the writer, often. The zeros make the system hand the memory out now and not at a caller's first
    // touch.
    void Stock() noexcept {
        while (count_.load(std::memory_order_relaxed) < kStocked) {
            auto* const block = new (std::nothrow) LineBlock();
            if (!block) return;
            Keep(block);
        }
    }

    // The library goes before its threads do.
    void Stop() noexcept { ::FlsFree(std::exchange(own_, FLS_OUT_OF_INDEXES)); }

    // The thread that filled the block ends.
    void Retire(LineBlock* block) noexcept {
        if (block->Retire()) Keep(block);
    }

    explicit LineMemory(void(WINAPI* atThreadsEnd)(void*)) noexcept : own_(::FlsAlloc(atThreadsEnd)) {}

  private:
    static constexpr std::size_t kStocked = 32;
    static constexpr std::size_t kLow = kStocked / 2;
    static constexpr std::size_t kMostKept = 2 * kStocked;

    // A slot is empty or holds a block that is nobody's; whoever exchanges it has it.
    LineBlock* TakeReady() noexcept {
        for (std::atomic<LineBlock*>& slot : ready_) {
            if (!slot.load(std::memory_order_relaxed)) continue;
            if (LineBlock* const block = slot.exchange(nullptr)) {
                count_.fetch_sub(1, std::memory_order_relaxed);
                return block;
            }
        }
        return new (std::nothrow) LineBlock;
    }

    void Keep(LineBlock* block) noexcept {
        block->Reuse();
        for (std::atomic<LineBlock*>& slot : ready_) {
            LineBlock* empty = nullptr;
            if (!slot.compare_exchange_strong(empty, block)) continue;
            count_.fetch_add(1, std::memory_order_relaxed);
            return;
        }
        delete block;
    }

    DWORD own_;  // the slot of each thread's block
    alignas(kCacheLine) std::array<std::atomic<LineBlock*>, kMostKept> ready_ = {};
    alignas(kCacheLine) std::atomic<std::size_t> count_ = 0;
};

}  // namespace ql
