#include "logging/log_outputs.h"

#include <gtest/gtest.h>

#include <regex>

#include "logging/log_line.h"
#include "logging/os_description.h"
#include "platform/bstr.h"
#include "platform/unique_handle.h"
#include "tests/support/test_folder.h"

using QLLoggerOutputs::FileOutput;
using QLLoggerOutputs::RollingFileOutput;

namespace {

const std::string kStars(53, '*');

// What goes to the debugger meanwhile. The system tells a text as an exception that somebody may look at.
class DebuggerTexts {
  public:
    DebuggerTexts() : hook_(::AddVectoredExceptionHandler(1, Look)) { s_texts.clear(); }
    ~DebuggerTexts() { ::RemoveVectoredExceptionHandler(hook_); }
    DebuggerTexts(const DebuggerTexts&) = delete;
    DebuggerTexts& operator=(const DebuggerTexts&) = delete;

    static const std::vector<std::wstring>& All() { return s_texts; }

  private:
    static LONG WINAPI Look(EXCEPTION_POINTERS* pointers) {
        constexpr DWORD kNarrowText = 0x40010006;  // raised after the wide one, which not every system has
        const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
        if (record.ExceptionCode == kNarrowText) {
            const std::string text = reinterpret_cast<const char*>(record.ExceptionInformation[1]);
            s_texts.emplace_back(text.begin(), text.end());
        }
        return EXCEPTION_CONTINUE_SEARCH;
    }

    static inline std::vector<std::wstring> s_texts;
    void* hook_;
};

ql::UniqueFileHandle OpenFile(const std::wstring& path, DWORD access, DWORD share) {
    return ql::UniqueFileHandle(
        ::CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

FILETIME WriteTime(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    ::GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
    return data.ftLastWriteTime;
}

void SetWriteTime(const std::wstring& path, FILETIME time) {
    ::SetFileTime(OpenFile(path, GENERIC_WRITE, 0).get(), nullptr, nullptr, &time);
}

RollingFileOutput Rolling(const std::wstring& file, int backups, int limit = 0) {
    return RollingFileOutput(file.c_str(), L"Soft", L"today", L"1.2", backups, limit, 7);
}

// More than the smallest limit, so that each one written makes the log roll.
std::wstring LongEntry(wchar_t letter) {
    return std::wstring(1200, letter) + L'\n';
}

bool HoldsEntryOf(const std::wstring& file, char letter) {
    return BytesOf(file).find("\r\n" + kStars + "\r\n" + std::string(1200, letter) + "\r\n" + kStars +
                              "\r\n") != std::string::npos;
}

}  // namespace

TEST(FileOutput, StartsAfreshInUtf8WithAMarkAndReplacesLoneSurrogates) {
    const TestFolder folder;
    const std::wstring file = folder / L"plain.log";
    PutBytes(file, "old");
    FileOutput output(file.c_str());
    for (const wchar_t* text :
         {L"a\n", L"", L"\xE9\x20AC\xD83D\xDE00\n", L"\xD83Dx\xDE00\n", L"\xDE00\xD83D"}) {
        output.Write(QLLOG_INFO, text);
    }
    output.Write(QLLOG_INFO, nullptr);
    EXPECT_EQ("\xEF\xBB\xBF", BytesOf(file)) << "lines are buffered";
    output.Flush();
    const std::string written =
        "\xEF\xBB\xBF"
        "a\r\n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\r\n\xEF\xBF\xBDx\xEF\xBF\xBD\r\n\xEF\xBF\xBD\xEF\xBF\xBD";
    EXPECT_EQ(written, BytesOf(file));
    output.Close();
    output.Write(QLLOG_INFO, L"after the close");
    output.Flush();
    EXPECT_EQ(written, BytesOf(file));
}

TEST(FileOutput, KeepsPairsTogetherInTextsLongerThanItsBuffer) {
    const TestFolder folder;
    const std::wstring file = folder / L"long.log";
    std::wstring text = L"x";
    std::string expected = "\xEF\xBB\xBFx";
    for (int i = 0; i < 50'000; ++i) {
        text += L"\xD83D\xDE00";
        expected += "\xF0\x9F\x98\x80";
    }
    FileOutput(file.c_str()).Write(QLLOG_INFO, text.c_str());
    EXPECT_EQ(expected, BytesOf(file));
}

TEST(FileOutput, LetsOthersReadButNotWriteOrRename) {
    const TestFolder folder;
    const std::wstring file = folder / L"plain.log";
    FileOutput output(file.c_str());
    EXPECT_TRUE(OpenFile(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE));
    EXPECT_FALSE(OpenFile(file, GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE));
    EXPECT_FALSE(::MoveFileW(file.c_str(), (folder / L"moved.log").c_str()));
    FileOutput second(file.c_str());
    EXPECT_FALSE(second.IsOpen());
    EXPECT_TRUE(output.IsOpen());
    second.Write(QLLOG_INFO, L"dropped");
    FileOutput copy = output;
    copy.Write(QLLOG_INFO, L"from the copy");
    output.Close();
    copy.Write(QLLOG_INFO, L"too late");
    EXPECT_EQ(
        "\xEF\xBB\xBF"
        "from the copy",
        BytesOf(file));
}

TEST(FileOutput, ThatCannotBeOpenedIgnoresWrites) {
    const TestFolder folder;
    FileOutput(nullptr).Write(QLLOG_INFO, L"x");
    FileOutput missing((folder / L"none\\plain.log").c_str());
    missing.Write(QLLOG_INFO, L"x");
    missing.Flush();
}

// A device that is always full, where the system under the tests has one.
TEST(FileOutput, OnAFullDiskCountsItsLinesAndCostsTheOtherOutputsNothing) {
    const TestFolder folder;
    const wchar_t* const full = L"\\\\?\\unix\\dev\\full";
    if (!OpenFile(full, GENERIC_WRITE, FILE_SHARE_READ)) GTEST_SKIP() << "there is no full device here";
    const std::uint32_t before = QLLogger::LostLines();
    QLLogger::InitializeLog(full, QLLOG_INFO);
    QLLogger::InitializeLog((folder / L"good.log").c_str(), QLLOG_INFO);
    const std::wstring line(999, L'x');
    for (int i = 0; i < 1000; ++i) QLLogger::PutMessage(QLLOG_INFO, line.c_str());
    QLLogger::CloseLogs();
    EXPECT_EQ(3u + 999'000, BytesOf(folder / L"good.log").size());
    EXPECT_EQ(before + 1000, QLLogger::LostLines());
}

TEST(RollingFile, StartsWithItsHeaderAndEndsEachEntryWithStars) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    RollingFileOutput output = Rolling(file, 0);
    output.Write(QLLOG_INFO, L"first\n");
    output.Write(QLLOG_INFO, L"");
    wchar_t os[256];
    GetOSDescription(os, 256);
    const std::string osLine = "#OS: " + std::string(os, os + std::wcslen(os)) + "\r\n";
    const std::string bytes = BytesOf(file);
    EXPECT_TRUE(bytes.starts_with("\xEF\xBB\xBF#Software: Soft\r\n#Version: 1.2\r\n#Build date: today\r\n" +
                                  osLine + "#Username: "));
    const std::regex rest(
        "\r\n#Username: [^\r]+\r\n#Computer name: [^\r]+\r\n"
        "#Log-Date: \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\r\n\\*{53}\r\nfirst\r\n"
        "\\*{53}\r\n\\*{53}\r\n$");
    EXPECT_TRUE(std::regex_search(bytes, rest)) << bytes;
}

TEST(RollingFile, ContinuesAFileThatHasContent) {
    const TestFolder folder;
    for (const auto& [before, hasHeader] : {std::pair("abcd", false), {"abc", true}, {"", true}}) {
        const std::wstring file = folder / L"r.log";
        PutBytes(file, before);
        Rolling(file, 0).Write(QLLOG_INFO, L"x\n");
        const std::string bytes = BytesOf(file);
        EXPECT_EQ(hasHeader, bytes.find("#Software") != std::string::npos) << before;
        EXPECT_TRUE(bytes.starts_with(before) && bytes.ends_with("x\r\n" + kStars + "\r\n")) << before;
    }
}

TEST(RollingFile, RollsWhenPositionAndLengthExceedTheLimitOfAtLeastAThousand) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    PutBytes(file, std::string(900, 'o'));
    RollingFileOutput output = Rolling(file, 1, 500);
    output.Write(QLLOG_INFO, std::wstring(100, L'\x20AC').c_str());  // 1000 by characters, more by bytes
    EXPECT_FALSE(std::filesystem::exists(folder / L"r1.bak"));
    output.Write(QLLOG_INFO, L"y");
    EXPECT_TRUE(std::filesystem::exists(folder / L"r1.bak"));
    EXPECT_TRUE(BytesOf(file).ends_with("\r\ny" + kStars + "\r\n"));
}

TEST(RollingFile, WithoutBackupsIsEmptiedAndTakesTheNewHeaderTexts) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    const DebuggerTexts debugger;
    RollingFileOutput output = Rolling(file, 0);
    output.SetBuildDate(L"tomorrow");
    output.SetVersionString(nullptr);
    output.Write(QLLOG_INFO, LongEntry(L'a').c_str());
    output.Write(QLLOG_INFO, LongEntry(L'b').c_str());
    EXPECT_TRUE(HoldsEntryOf(file, 'b'));
    EXPECT_FALSE(HoldsEntryOf(file, 'a'));
    EXPECT_TRUE(
        BytesOf(file).starts_with("\xEF\xBB\xBF#Software: Soft\r\n#Version: \r\n#Build date: tomorrow\r\n"));
    const std::wstring anew =
        L"Quillet Server RollingFileOutput::BackupAndStartAnew, re-creating main log file\n";
    EXPECT_EQ((std::vector{anew, anew}), debugger.All());
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST(RollingFile, ShiftsItsBackupsIntoGapsTooAndKeepsTheirTimes) {
    const TestFolder folder;
    constexpr DWORD kBackups = 4, kGap = 3;
    const auto path = [&](DWORD number) {
        return folder / (number ? L"Log" + std::to_wstring(number) + L".bak" : L"Log.log").c_str();
    };
    const auto contentOf = [](DWORD number) { return std::string(1000, static_cast<char>('0' + number)); };
    for (DWORD i = 0; i <= kBackups; ++i) {
        if (i == kGap) continue;
        PutBytes(path(i), contentOf(i));
        SetWriteTime(path(i), {0x10000000 * (i + 1), 30'000'000 + i});
    }
    Rolling(path(0), kBackups).Write(QLLOG_INFO, L"new\n");
    for (DWORD i = 1; i <= kGap; ++i) {
        EXPECT_EQ(contentOf(i - 1), BytesOf(path(i))) << i;
        EXPECT_EQ(30'000'000 + i - 1, WriteTime(path(i)).dwHighDateTime) << i;
        EXPECT_EQ(0x10000000 * i, WriteTime(path(i)).dwLowDateTime) << i;
    }
    EXPECT_FALSE(std::filesystem::exists(path(kBackups))) << "nothing moved up from the gap";
    EXPECT_TRUE(BytesOf(path(0)).starts_with("\xEF\xBB\xBF#Software"));
}

TEST(RollingFile, StopsForGoodWhenTheOldestBackupCannotBeDeleted) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    PutBytes(file, std::string(1000, '0'));
    PutBytes(folder / L"r1.bak", "1");
    const DebuggerTexts debugger;
    RollingFileOutput output = Rolling(file, 1);
    {
        const ql::UniqueFileHandle held =
            OpenFile(folder / L"r1.bak", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        output.Write(QLLOG_INFO, L"x");
    }
    output.Write(QLLOG_INFO, L"y");
    EXPECT_EQ(std::string(1000, '0'), BytesOf(file));
    EXPECT_EQ("1", BytesOf(folder / L"r1.bak"));
    EXPECT_EQ((std::vector{L"RollingFileOutput::BackupAndStartAnew: Failed to delete backup log file: " +
                           (folder / L"r1.bak") + L"\n"}),
              debugger.All());
}

TEST(RollingFile, EmptiesTheMainFileWhenARenameFails) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    PutBytes(file, std::string(1000, '0'));
    PutBytes(folder / L"r1.bak", "1");
    const DebuggerTexts debugger;
    RollingFileOutput output = Rolling(file, 2);
    const ql::UniqueFileHandle held =
        OpenFile(folder / L"r1.bak", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
    output.Write(QLLOG_INFO, L"x\n");
    EXPECT_EQ("1", BytesOf(folder / L"r1.bak"));
    EXPECT_TRUE(BytesOf(file).starts_with("\xEF\xBB\xBF#Software"));
    EXPECT_EQ(L"RollingFileOutput::BackupAndStartAnew: Failed to rename log file\n\tfrom: " +
                  (folder / L"r1.bak") + L"\n\tto: " + (folder / L"r2.bak") + L"\n",
              debugger.All().at(0));
}

TEST(RollingFile, GivesItsHeirsTheTimesOfFiles) {
    struct Heir : RollingFileOutput {
        using RollingFileOutput::GetFileLastWriteTime, RollingFileOutput::SetFileLastWriteTime;
        using RollingFileOutput::RollingFileOutput;
    };
    const TestFolder folder;
    const QLFileName other((folder / L"other").c_str()), none((folder / L"none").c_str());
    PutBytes(folder / L"other", "");
    Heir heir((folder / L"r.log").c_str(), L"", L"", L"", 0, 0, 1u);
    heir.SetFileLastWriteTime(other, {0x10000000, 30'000'000});
    EXPECT_EQ(30'000'000u, heir.GetFileLastWriteTime(other).dwHighDateTime);
    EXPECT_EQ(0x10000000u, WriteTime(folder / L"other").dwLowDateTime);
    EXPECT_EQ(0u, heir.GetFileLastWriteTime(none).dwHighDateTime);
}

TEST(RollingFile, RollsUnderAReaderThatSharesEverything) {
    const TestFolder folder;
    const std::wstring file = folder / L"r.log";
    RollingFileOutput output = Rolling(file, 1);
    output.Write(QLLOG_INFO, LongEntry(L'a').c_str());
    const ql::UniqueFileHandle reader =
        OpenFile(file, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE);
    ASSERT_TRUE(reader);
    output.Write(QLLOG_INFO, LongEntry(L'b').c_str());
    EXPECT_TRUE(HoldsEntryOf(folder / L"r1.bak", 'a'));
    EXPECT_TRUE(HoldsEntryOf(file, 'b'));
}

TEST(RollingFile, ReportsAFileThatCannotBeOpenedAndStaysUsable) {
    const TestFolder folder;
    const DebuggerTexts debugger;
    const std::wstring file = folder / (L"none\\" + std::wstring(300, L'n') + L".log").c_str();
    RollingFileOutput output = Rolling(file, 1);
    output.Write(QLLOG_INFO, L"x");
    output.Flush();
    EXPECT_EQ(
        (std::vector{L"RollingFileOutput::RollingFileOutput failed to open or create file: " + file + L"\n"}),
        debugger.All());
}

TEST(LogLine, TakesComTextsAndAnsiTextsInTheSystemsCodePage) {
    const TestFolder folder;
    const std::wstring file = folder / L"a.log";
    char ansi[8] = {};
    ::WideCharToMultiByte(CP_ACP, 0, L"\xE9", -1, ansi, sizeof ansi, nullptr, nullptr);
    QLLogger::InitializeLog(file.c_str(), QLLOG_INFO);
    wchar_t comText[] = L"com \x20AC ";
    BSTR text = ::SysAllocString(comText);
    QLLoggerLevelInserter(QLLOG_INFO, ansi, 1) << _bstr_t(text, false) << ansi << LogMessageFinish();
    QLLogger::CloseLogs();
    EXPECT_TRUE(BytesOf(file).ends_with("[\xC3\xA9:1]-com \xE2\x82\xAC \xC3\xA9\r\n")) << BytesOf(file);
}
