#include "cmdline/command_switches.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "tests/cmdline/scanner_model.h"

namespace {

// Lines of what the rules turn on, against a plain model of them.
TEST(CommandSwitches, ReadLinesAsTheModelDoes) {
    const std::wstring pieces[] = {L" ",  L" ",   L" /", L"-",   L"\"", L"'",   L"=",
                                   L"na", L"naw", L"NI", L"of=", L"v?", L"x\t", L"\xe9"};
    std::mt19937 random(7);
    for (int i = 0; i < 4'000; ++i) {
        CCommandSwitches switches;
        ScannerModel model;
        for (const wchar_t* name : {L"na", L" naw", L"ni ", L"na=", L"of=", L"v?", L"n!", L"\u00c9"}) {
            switches.DeclareSwitch(name, ScannerModel::KindOf(name));
            model.Declare(name);
        }
        for (int scans = 0; scans < 2; ++scans) {
            std::wstring line;
            for (auto left = random() % 12; left > 0; --left) line += pieces[random() % std::size(pieces)];
            switches.Scan(line.c_str());
            model.Scan(line);
            ASSERT_EQ(model.State(), model.StateOf(switches)) << testing::PrintToString(line);
        }
    }
}

// The lines that the rules were made for.
TEST(CommandSwitches, ReadsWhatUsersWrite) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L"ni", SWITCH_FLAG);
    switches.DeclareSwitch(L"sto=", SWITCH_VALUE);
    switches.Scan(L"  \"C:\\My Files\\a /ni.qft\" /NI -sto=\"a  b\" /zz ");
    EXPECT_TRUE(switches.HasLeadingText());
    EXPECT_STREQ(L"C:\\My Files\\a /ni.qft", switches.GetLeadingText());
    EXPECT_TRUE(switches.IsSwitchSet(L"ni"));
    EXPECT_STREQ(L"a  b", switches.GetSwitchValue(L"sto="));
    EXPECT_EQ(RWWString(L"/zz"), switches.GetIgnored()(0));
    switches.Scan(L"/sto= ");
    EXPECT_STREQ(L"", switches.GetSwitchValue(L"sto="));
}

TEST(CommandSwitches, FirstDeclarationStaysAndNullIsNothing) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L" dde ", SWITCH_FLAG);
    switches.DeclareSwitch(L"dde", SWITCH_VALUE);
    switches.DeclareSwitch(nullptr, SWITCH_NONE);
    switches.Scan(nullptr);
    EXPECT_FALSE(switches.HasLeadingText());
    switches.Scan(L"/dde=1");
    EXPECT_TRUE(switches.IsSwitchSet(L"dde"));
    EXPECT_EQ(nullptr, switches.GetSwitchValue(L"dde"));
    EXPECT_EQ(nullptr, switches.FindSwitch(nullptr));
    EXPECT_FALSE(CCommandSwitch(L"", SWITCH_FLAG).Matches(nullptr));
}

}  // namespace
