#include "cmdline/command_switches.h"

#include <gtest/gtest.h>

// What lines hold is held by generated ones.
TEST(CommandSwitches, KeepTheFirstDeclarationAndTakeNullForNothing) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L"ni", SWITCH_FLAG);
    switches.DeclareSwitch(L"ni", SWITCH_VALUE);
    switches.DeclareSwitch(nullptr, SWITCH_NONE);
    switches.Scan(L"/ni=x");
    EXPECT_TRUE(switches.IsSwitchSet(L"ni"));
    EXPECT_EQ(nullptr, switches.GetSwitchValue(L"ni"));
    switches.Scan(nullptr);
    EXPECT_FALSE(switches.HasLeadingText());
    EXPECT_EQ(nullptr, switches.FindSwitch(nullptr));
    EXPECT_FALSE(CCommandSwitch(L"", SWITCH_FLAG).Matches(nullptr));
    EXPECT_FALSE(CCommandSwitch(L"", SWITCH_FLAG).IsPresent());
}
