#include <gtest/gtest.h>

#include "settings/registry.h"
#include "tests/memory/failing_memory.h"

namespace {

// A call that asks for more would be no call to try one allocation after the other.
constexpr unsigned kMostAllocations = 1000;

// The key of the section that was read last stays open: nobody has this one.
long LiveBlocksWithoutOpenKeys() {
    unsigned number = 0;
    GetRegIntVal(L"A section of a name that is longer than those of the calls are", L"", &number);
    return memory::LiveBlocks();
}

}  // namespace

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
