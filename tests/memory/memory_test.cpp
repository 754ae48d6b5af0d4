#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "settings/registry.h"
#include "tests/memory/failing_memory.h"

namespace {

// A row that asks for more would be none to try one allocation after the other.
constexpr unsigned kMostAllocations = 1000;

std::atomic<long> g_liveBlocks = 0;  // handed out and not given back yet

// The key of the section that was read last stays open: nobody has this one.
long LiveBlocksWithoutOpenKeys() {
    unsigned number = 0;
    GetRegIntVal(L"A section of a name that is longer than those of the calls are", L"", &number);
    return g_liveBlocks;
}

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    void* const block = memory::Attempt::RefusesNext() ? nullptr : std::malloc(size);
    if (block) ++g_liveBlocks;
    return block;
}
void* operator new(std::size_t size) {
    if (void* const block = ::operator new(size, std::nothrow)) return block;
    throw std::bad_alloc();
}
void operator delete(void* block) noexcept {
    if (block) --g_liveBlocks;
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    ::operator delete(block);
}

TEST(Memory, CallsBearTheLossOfEachAllocation) {
    for (const auto& rows : {memory::TextCalls(), memory::SettingsCalls(), memory::ProgramCalls()}) {
        for (const memory::Row& row : rows) {
            memory::Attempt attempt(kMostAllocations);
            row.run(attempt);  // what is made once and kept is made here
            ASSERT_FALSE(attempt.HasFailed()) << row.what;
            for (unsigned turn = 0; turn == 0 || attempt.HasFailed(); ++turn) {
                const long former = LiveBlocksWithoutOpenKeys();
                attempt = memory::Attempt(turn);
                row.run(attempt);
                EXPECT_EQ(former, LiveBlocksWithoutOpenKeys()) << "blocks leak";
                ASSERT_FALSE(HasFailure()) << row.what << ", allocation " << turn;
            }
        }
    }
}
