#include "tests/memory/failing_memory.h"

#include <atomic>
#include <cstdlib>
#include <new>
#include <utility>

#include "tests/native/system_memory.h"

namespace {

std::atomic<long> g_liveBlocks = 0;
thread_local memory::Attempt* t_attempt = nullptr;

void* Allocate(std::size_t size, std::size_t alignment) {
    if (memory::Attempt::RefusesNext()) throw std::bad_alloc();
    void* const block = alignment > 0
                            ? std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment)
                            : std::malloc(size > 0 ? size : 1);
    if (!block) throw std::bad_alloc();
    ++g_liveBlocks;
    return block;
}

void GiveBack(void* block) {
    if (block) --g_liveBlocks;
    std::free(block);
}

}  // namespace

namespace memory {

long LiveBlocks() {
    return g_liveBlocks;
}

Attempt::Armed::Armed(Attempt& attempt) {
    t_attempt = &attempt;
}

Attempt::Armed::~Armed() {
    t_attempt = nullptr;
}

bool Attempt::RefusesNext() {
    if (!t_attempt || t_attempt->hasFailed_ || fake::SystemMemory::IsUsed()) return false;
    t_attempt->hasFailed_ = t_attempt->turn_-- == 0;
    return t_attempt->hasFailed_;
}

}  // namespace memory

void* operator new(std::size_t size) {
    return Allocate(size, 0);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return Allocate(size, 0);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return Allocate(size, static_cast<std::size_t>(alignment));
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
