#include "tests/memory/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "tests/native/system_memory.h"

namespace {

std::atomic<long> g_liveBlocks = 0;

// Null when there is none.
void* Allocate(std::size_t size, std::size_t alignment = 0) {
    if (memory::Attempt::RefusesNext()) return nullptr;
    void* const block = alignment > 0
                            ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                            : std::malloc(size);
    if (block) ++g_liveBlocks;
    return block;
}

void* OrThrow(void* block) {
    if (!block) throw std::bad_alloc();
    return block;
}

void GiveBack(void* block) {
    if (block) --g_liveBlocks;
    std::free(block);
}

}  // namespace

long memory::LiveBlocks() {
    return g_liveBlocks;
}

bool memory::Attempt::RefusesNext() {
    if (!current_ || current_->hasFailed_ || fake::SystemMemory::IsUsed()) return false;
    return current_->hasFailed_ = current_->turn_-- == 0;
}

void* operator new(std::size_t size) {
    return OrThrow(Allocate(size));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return Allocate(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return OrThrow(Allocate(size, static_cast<std::size_t>(alignment)));
}
void operator delete(void* block) noexcept {
    GiveBack(block);
}
void operator delete(void* block, std::size_t) noexcept {
    GiveBack(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
    GiveBack(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
    GiveBack(block);
}
