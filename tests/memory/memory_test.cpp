#include <gtest/gtest.h>

#include "tests/memory/failing_memory.h"

namespace {

// A call that asks for more would be no call to try one allocation after the other.
constexpr unsigned kMostAllocations = 1000;

void BearsEveryLoss(const memory::Row& row) {
    memory::Attempt whole(kMostAllocations);
    row.run(whole);  // what is made once and kept is made here
    ASSERT_FALSE(whole.HasFailed());
    for (unsigned turn = 0; !testing::Test::HasFailure(); ++turn) {
        SCOPED_TRACE("allocation " + std::to_string(turn));
        const long former = memory::LiveBlocks();
        memory::Attempt attempt(turn);
        row.run(attempt);
        EXPECT_EQ(former, memory::LiveBlocks()) << "blocks leak";
        if (!attempt.HasFailed()) return;
    }
}

}  // namespace

TEST(Memory, CallsOfTextAndNamesBearTheLossOfEachAllocation) {
    for (const memory::Row& row : memory::TextCalls()) {
        SCOPED_TRACE(row.what);
        BearsEveryLoss(row);
    }
}

TEST(Memory, CallsOfSettingsBearTheLossOfEachAllocation) {
    for (const memory::Row& row : memory::SettingsCalls()) {
        SCOPED_TRACE(row.what);
        BearsEveryLoss(row);
    }
}
