#include <gtest/gtest.h>

#include "names/cmd_line.h"
#include "names/name_access.h"

TEST(CmdLine, SplitsNameAndSwitchesAndComposesThemAgain) {
    const wchar_t* const cases[][4] = {
        {nullptr, L"", L"", L""},
        {L"\"\" /ni", L"", L"/ni", L" /ni"},
        {L" C:\\a.qft  /ni  /sa ", L"C:\\a.qft", L"/ni  /sa", L"C:\\a.qft /ni  /sa"},
        {L"\"C:\\My Files\\a.qft\" /x /y", L"C:\\My Files\\a.qft", L"/x /y", L"C:\\My Files\\a.qft /x /y"},
        {L"\"C:\\My /Files\\a.qft\"/x", L"C:\\My /Files\\a.qft", L"/x", L"\"C:\\My /Files\\a.qft\" /x"},
        {L"\" a.qft \" -x", L"a.qft", L"-x", L"a.qft -x"},
        {L"\"a.qft /x", L"a.qft", L"/x", L"a.qft /x"},  // never closed
        {L"\"\"-x", L"", L"-x", L" -x"},
        {L"C:\\a/b.txt", L"C:\\a/b.txt", L"", L"C:\\a/b.txt"},
        {L"C:\\a/b.txt /x", L"C:\\a/b.txt /x", L"", L"\"C:\\a/b.txt /x\""},
        {L"a.qft -x", L"a.qft -x", L"", L"a.qft -x"},  // a hyphen is no slash
    };
    for (const auto& [text, name, switches, composed] : cases) {
        SCOPED_TRACE(testing::PrintToString(text));
        const QLCmdLine line(text);
        EXPECT_EQ(line.GetPathAndFileName(), name);
        EXPECT_EQ(line.GetSwitches(), switches);
        EXPECT_EQ(line.GetCmdLine(), composed);
        EXPECT_EQ(line.IsNull(), *composed == L'\0');
    }
}

TEST(CmdLine, ChangesSwitches) {
    QLCmdLine line(L"C:\\d\\", L"a.b", L".qft", L"  /x ");
    line.AppendSwitches(L"/y ");
    line.AppendSwitches(L" /z");
    EXPECT_EQ(line.GetCmdLine(), L"C:\\d\\a.b.qft /x /y  /z");
    line.ClearSwitches();
    line.AppendSwitches(nullptr);
    EXPECT_EQ(line.GetSwitches(), L" ");
    EXPECT_EQ(ql::NameAccess::Switches(line), L" ");
}

TEST(CmdLine, ComparesByTheNameFirstAndAssignsByText) {
    const QLCmdLine a(L"C:\\A.QFT /X"), b(L"c:\\a.qft /x"), c(L"c:\\a.qft /y"), d(L"c:\\b.qft /a");
    const QLFileName name(std::wstring(L"C:\\A.qft")), other(L"C:\\b.qft");
    EXPECT_EQ(a, b);
    EXPECT_LT(b.CompareTo(c), 0);
    EXPECT_LT(c.CompareTo(d), 0);
    EXPECT_TRUE(a == name);
    EXPECT_TRUE(name == c);
    EXPECT_TRUE(a != other);
    EXPECT_TRUE(other != c);
    QLCmdLine copy;
    copy = QLCmdLine(QLFileName(L"ftp://srv/a.txt?q"));
    EXPECT_EQ(copy.GetTail(), L"") << "left out of the text";
    EXPECT_EQ(copy.GetCmdLine(), L"ftp://srv/a.txt");
}
