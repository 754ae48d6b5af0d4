#include "files/launch.h"

#include <gtest/gtest.h>

#include "files/program_name.h"
#include "tests/support/test_folder.h"

namespace {

std::wstring ChildProgram() {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).replace_filename("files_child.exe").wstring();
}

class Launching : public testing::Test {
  protected:
    Launching() { ::SetEnvironmentVariableW(L"QL_CHILD_LINE", (folder_ / L"line").c_str()); }

    // What the child received: its show state as a character, and its command line. It is written before the
    // child is ready for input, and so before the launch is over.
    std::wstring Received() {
        const std::wstring path = folder_ / L"line";
        const std::string bytes = BytesOf(path);
        std::filesystem::remove(path);
        std::wstring line(bytes.size() / sizeof(wchar_t), L'\0');
        bytes.copy(reinterpret_cast<char*>(line.data()), line.size() * sizeof(wchar_t));
        return line;
    }

    TestFolder folder_;
};

TEST_F(Launching, HandsOverTheQuotedPathOneBlankTheSwitchesAndTheShowState) {
    std::filesystem::create_directory(folder_ / L"a folder");
    const std::wstring copy = folder_ / L"a folder\\the child \u4e2d.exe";
    ASSERT_TRUE(::CopyFileW(ChildProgram().c_str(), copy.c_str(), FALSE));
    for (const std::wstring& program : {ChildProgram(), copy}) {
        for (const wchar_t* switches : {L"", L"/x", L"/a \"b c\"  /\xe9 %PATH%"}) {
            for (const int state : {SW_HIDE, SW_SHOWMAXIMIZED}) {
                QLCmdLine line{QLFileName(program.c_str())};
                line.SetSwitches(switches);
                ASSERT_TRUE(LaunchApplication(line, static_cast<unsigned short>(state)));
                EXPECT_EQ(RWWString(static_cast<wchar_t>(state) + (L'"' + program) + L"\" " + switches),
                          RWWString(Received()));
            }
        }
    }
}

TEST(OwnCommandLine, BeginsBehindTheProgramsName) {
    const wchar_t* const cases[][2] = {
        {L"host.exe", L""},
        {L"host.exe  /ni /sa ", L"/ni /sa "},
        {L"\"C:\\My Programs\\host.exe\" \"C:\\a b.qft\" /ni", L"\"C:\\a b.qft\" /ni"},
        {L"C:\\\"My Programs\"\\host.exe\t\"a\"", L"\"a\""},
        {L"\"never closed /ni", L""},
        {L" /ni", L"/ni"},  // no name at all
        {L"", L""}};
    for (const auto& [line, rest] : cases)
        EXPECT_EQ(rest, std::wstring(ql::WithoutProgramName(line))) << line;
    EXPECT_TRUE(std::wstring_view(::GetCommandLineW()).ends_with(GetOwnCommandLine()));
}

TEST_F(Launching, FailsWithoutAProgram) {
    PutBytes(folder_ / L"text.exe", "no program");
    for (const std::wstring& other :
         {folder_ / L"none.exe", folder_ / L"text.exe", std::wstring(), std::wstring(L"http://srv/a.exe")})
        EXPECT_FALSE(LaunchApplication(QLCmdLine(other.c_str()), SW_SHOW)) << testing::PrintToString(other);
}

}  // namespace
