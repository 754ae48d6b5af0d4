#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "cmdline/command_switches.h"

namespace {

// What a scan with the switches na, na=, naw, ni, of=, sto= found, as one text: leading
// text|name|name=value...
std::wstring Found(const std::wstring& line) {
    static constexpr const wchar_t* kNames[] = {L"sto=", L"of=", L"ni", L"naw", L"na=", L"na"};
    CCommandSwitches switches;
    for (const std::wstring name : kNames) {
        switches.DeclareSwitch(name.c_str(), name.back() == L'=' ? SWITCH_VALUE : SWITCH_FLAG);
    }
    switches.Scan(line.c_str());
    std::wstring found = switches.GetLeadingText();
    EXPECT_EQ(switches.HasLeadingText(), !found.empty());
    for (const wchar_t* const name : kNames) {
        const wchar_t* const value = switches.GetSwitchValue(name);
        if (value || switches.IsSwitchSet(name)) found += L'|' + std::wstring(name) + (value ? value : L"");
        EXPECT_EQ(switches.FindSwitch(name) != nullptr, value || switches.IsSwitchSet(name));
    }
    return found;
}

TEST(CommandSwitches, ReadsLines) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"   ", L""},
        {L"  doc.qft -NI ", L"doc.qft|ni"},
        {L"\"C:\\My Files\\a /ni.qft\" /ni", L"C:\\My Files\\a /ni.qft|ni"},
        {L"\"\" /ni", L"|ni"},
        {L"a\"b /ni\"c d/e -ni", L"ab /nic d/e|ni"},  // quotes inside a word, a slash without its blank
        {L"a b  /ni", L"a b |ni"},
        {L"\"never closed /ni", L"never closed /ni"},
        {L"doc.qft ni", L"doc.qft ni"},
        {L"/x ni", L"|ni"},  // the prefix character may be left out
        {L"//ni", L""},      // only one is skipped
        {L"/unknown / - /n", L""},
        {L"/sto=\"a b  c\" /ni", L"|sto=a b  c|ni"},
        {L"\"/sto=a b\"", L"/sto=a b"},  // a quote first: leading text
        {L"/\"sto\"=x", L"|sto=x"},
        {L"/sto=C:/a=/-b /ni", L"|sto=C:/a=/-b|ni"},
        {L"\t/sto=x", L"\t/sto=x"},  // a tab is no blank
        {L"/ni\t/sto=x", L"|ni"},
        {L"/sto=x \"/ni\" /of=\"\"", L"|sto=x|of=|ni"},
        {L"/sto=\"a /ni -of=b", L"|sto=a /ni -of=b"},  // never closed
        {L"/st\"o=a b\"c", L"|sto=a bc"},
        {L"/sto=it's'", L"|sto=it's"},
        {L"/sto='", L"|sto="},
        {L"/sto='a", L"|sto=a"},
        {L"/sto=\"' a '\"", L"|sto=a"},
        {L"/of=1 /of=", L"|of="},
        {L"/of=1 /of", L"|of=1"},  // does not begin with the name
        {L"/naw", L"|na"},         // claimed by the shorter name, as are all of these
        {L"/na=answers.anx", L"|na"},
        {L"/NAme=x", L"|na"},
    };
    for (const auto& [line, found] : cases) EXPECT_EQ(found, Found(line)) << testing::PrintToString(line);
}

TEST(CommandSwitches, FirstDeclarationStaysAndKindNoneMatchesNothing) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L" dde ", SWITCH_FLAG);
    switches.DeclareSwitch(L"dde", SWITCH_VALUE);
    switches.DeclareSwitch(L"d", SWITCH_NONE);
    switches.DeclareSwitch(nullptr, SWITCH_NONE);
    switches.Scan(nullptr);
    switches.Scan(L"/dde=1");
    EXPECT_TRUE(switches.IsSwitchSet(L"dde"));
    EXPECT_EQ(nullptr, switches.FindSwitch(L"d"));
    EXPECT_EQ(nullptr, switches.FindSwitch(nullptr));
    EXPECT_EQ(nullptr, switches.GetSwitchValue(L"dde"));
    EXPECT_FALSE(CCommandSwitch(L"", SWITCH_FLAG).Matches(nullptr));
}

// A name of the value kind that has no equals sign claims tokens that have none: the value stays.
TEST(CommandSwitches, TokenWithoutEqualsSignLeavesTheValue) {
    CCommandSwitches switches;
    switches.DeclareSwitch(L"v", SWITCH_VALUE);
    switches.Scan(L"/v");
    EXPECT_STREQ(L"", switches.GetSwitchValue(L"v"));
    switches.Scan(L"/value=1 /v");
    EXPECT_STREQ(L"1", switches.GetSwitchValue(L"v"));
    EXPECT_FALSE(switches.IsSwitchSet(L"v"));
}

}  // namespace
