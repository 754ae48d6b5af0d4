#include "cmdline/command_switches.h"

#include <gtest/gtest.h>

// The lines that the rules were made for.
TEST(CommandSwitches, ReadsWhatUsersWrite) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L" ni ", SWITCH_FLAG);
    switches.DeclareSwitch(L"ni", SWITCH_VALUE);
    switches.DeclareSwitch(L"sto=", SWITCH_VALUE);
    switches.DeclareSwitch(nullptr, SWITCH_NONE);
    switches.Scan(nullptr);
    EXPECT_FALSE(switches.HasLeadingText());
    switches.Scan(L"  \"C:\\My Files\\a /ni.qft\" /NI -sto=\"a  b\" /zz ");
    EXPECT_STREQ(L"C:\\My Files\\a /ni.qft", switches.GetLeadingText());
    EXPECT_TRUE(switches.IsSwitchSet(L"ni"));
    EXPECT_EQ(nullptr, switches.GetSwitchValue(L"ni")) << "the first declaration stays";
    EXPECT_STREQ(L"a  b", switches.GetSwitchValue(L"sto="));
    EXPECT_EQ(RWWString(L"/zz"), switches.GetIgnored()(0));
    EXPECT_EQ(nullptr, switches.FindSwitch(nullptr));
    EXPECT_FALSE(CCommandSwitch(L"", SWITCH_FLAG).Matches(nullptr));
}
