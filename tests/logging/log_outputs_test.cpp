#include "logging/log_outputs.h"

#include <gtest/gtest.h>

#include <regex>

#include "logging/log_line.h"
#include "logging/os_description.h"
#include "platform/bstr.h"
#include "tests/support/open_file.h"
#include "tests/support/replaced_import.h"
#include "tests/support/test_folder.h"

using QLLoggerOutputs::FileOutput;
using QLLoggerOutputs::RollingFileOutput;

namespace {

const std::string kMark = "\xEF\xBB\xBF", kStars(53, '*');
struct Rolling : RollingFileOutput {
    explicit Rolling(const std::wstring& file, int backups, int limit = 0)
        : RollingFileOutput(file.c_str(), L"Soft", L"today", L"1.2", backups, limit, 7) {}
    using RollingFileOutput::GetFileLastWriteTime, RollingFileOutput::SetFileLastWriteTime,
        RollingFileOutput::SetBackupFileName;
    void Put(const std::wstring& text) { Write(QLLOG_INFO, text.c_str()); }
};

// More than the smallest limit, so that each one written makes the log roll.
std::wstring LongEntry(wchar_t letter) {
    return std::wstring(1200, letter) + L'\n';
}

std::string EntryOf(const std::string& text) {
    return text + "\r\n" + kStars + "\r\n";
}

// What the system is told: the debugger, and the event log with its source, category and event.
std::wstring g_told;

void WINAPI TellDebugger(const wchar_t* text) {
    g_told += text;
}

HANDLE WINAPI OpenEventSource(const wchar_t*, const wchar_t* source) {
    g_told += source;
    return INVALID_HANDLE_VALUE;
}

BOOL WINAPI TellEventLog(HANDLE, WORD, WORD category, DWORD event, void*, WORD texts, DWORD bytes,
                         const wchar_t** text, const void*) {
    for (const DWORD number : {DWORD{category}, event, DWORD{texts}, bytes})
        g_told += L',' + std::to_wstring(number);
    g_told += L':' + std::wstring(*text);
    return TRUE;
}

constexpr DWORD kMuch = 1 << 30;
DWORD g_room = kMuch;  // on the disk

BOOL WINAPI WriteWhatHasRoom(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED* place) {
    count = std::min(count, g_room);
    g_room -= count;
    return ::WriteFile(file, bytes, count, written, place);
}

class LogFiles : public testing::Test {
  protected:
    LogFiles() {
        g_told.clear();
        ReplaceImport(kLibrary, L"kernel32", "OutputDebugStringW", &TellDebugger);
        ReplaceImport(kLibrary, L"advapi32", "RegisterEventSourceW", &OpenEventSource);
        ReplaceImport(kLibrary, L"advapi32", "ReportEventW", &TellEventLog);
        ReplaceImport(kLibrary, L"kernel32", "WriteFile", &WriteWhatHasRoom);
    }

    const TestFolder folder_;
    const std::wstring file_ = folder_ / L"r.log", backup_ = folder_ / L"r1.bak";
};
using FileOutputs = LogFiles;
using RollingFile = LogFiles;

}  // namespace

TEST_F(FileOutputs, StartAfreshInUtf8WithAMarkAndReplaceLoneSurrogates) {
    PutBytes(file_, "old");
    FileOutput output(file_.c_str());
    for (const wchar_t* text : {L"a\n", L"", L"\xE9\x20AC\xD83D\xDE00", L"\xD83Dx\xDE00\n", L"\xDE00\xD83D",
                                static_cast<const wchar_t*>(nullptr)})
        output.Write(QLLOG_INFO, text);
    EXPECT_EQ(kMark, BytesOf(file_)) << "lines are buffered";
    output.Flush();
    const std::string none = "\xEF\xBF\xBD", written = kMark + "a\r\n\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80" +
                                                       none + "x" + none + "\r\n" + none + none;
    EXPECT_EQ(written, BytesOf(file_));
    output.Close();
    output.Write(QLLOG_INFO, L"after the close");
    output.Flush();
    EXPECT_EQ(written, BytesOf(file_));
}

TEST_F(FileOutputs, KeepPairsTogetherInTextsLongerThanTheirBuffer) {
    std::wstring text = L"x";
    std::string expected = kMark + "x";
    for (int i = 0; i < 50'000; ++i) {
        text += L"\xD83D\xDE00";
        expected += "\xF0\x9F\x98\x80";
    }
    FileOutput(file_.c_str()).Write(QLLOG_INFO, text.c_str());
    EXPECT_EQ(expected, BytesOf(file_));
}

TEST_F(FileOutputs, LetOthersReadButNotWriteOrRename) {
    FileOutput output(file_.c_str());
    EXPECT_TRUE(OpenFile(file_, kShareAll));
    EXPECT_FALSE(OpenFile(file_, kShareAll, GENERIC_WRITE));
    EXPECT_FALSE(::MoveFileW(file_.c_str(), backup_.c_str()));
    EXPECT_TRUE(output.IsOpen());
    FileOutput copy = output;
    copy.Write(QLLOG_INFO, L"from the copy");
    for (const wchar_t* file : {file_.c_str(), L"Z:\\none\\r.log", static_cast<const wchar_t*>(nullptr)}) {
        FileOutput shut(file);
        EXPECT_FALSE(shut.IsOpen()) << testing::PrintToString(file);
        shut.Write(QLLOG_INFO, L"dropped");
        shut.Flush();
    }
    output.Close();
    copy.Write(QLLOG_INFO, L"too late");
    EXPECT_EQ(kMark + "from the copy", BytesOf(file_));
}

TEST_F(FileOutputs, OnAFullDiskDropWholeLinesCountThemAndSaySoWhenThereIsRoomAgain) {
    FileOutput output(file_.c_str());
    const auto put = [&](int lines, std::size_t length) {
        const std::wstring line = std::wstring(length, L'x') + L'\n';
        for (; lines > 0; --lines) output.Write(QLLOG_INFO, line.c_str());
    };
    const auto lost = [before = QLLogger::LostLines()] { return QLLogger::LostLines() - before; };
    g_room = 100'000;
    put(1, 150'000);
    EXPECT_EQ(kMark, BytesOf(file_)) << "what was written of it is cut off again";
    put(100, 999);
    EXPECT_EQ(38u, lost()) << "the buffer holds 63";
    g_room = kMuch;
    put(1, 1);
    output.Flush();
    std::string written = kMark + "1 line was lost: the disk was full\r\n";
    for (int i = 0; i < 63; ++i) written += std::string(999, 'x') + "\r\n";
    written += "37 lines were lost: the disk was full\r\nx\r\n";
    EXPECT_EQ(written, BytesOf(file_));
    g_room = 0;
    put(2, 1);
    output.Close();
    g_room = kMuch;
    EXPECT_EQ(40u, lost());
    EXPECT_EQ(written, BytesOf(file_));
}

TEST_F(RollingFile, StartsWithItsHeaderAndEndsEachEntryWithStars) {
    Rolling output(file_, 0);
    output.Put(L"first\n");
    output.Put(L"");
    wchar_t os[256], cut[] = L"xxxx";
    GetOSDescription(os, 256);
    for (const int size : {1, 0, -1, 3}) {
        EXPECT_EQ(1, GetOSDescription(cut, size));
        EXPECT_EQ(size == 3 ? os[0] : L'\0', cut[0]) << size;
    }
    EXPECT_EQ((std::wstring{os[0], os[1], L'\0', L'x'}), std::wstring(cut, 4));
    EXPECT_EQ(1, GetOSDescription(nullptr, 3));
    const std::string bytes = BytesOf(file_),
                      start = kMark + "#Software: Soft\r\n#Version: 1.2\r\n#Build date: today\r\n#OS: " +
                              std::string(os, os + std::wcslen(os)) + "\r\n#Username: ";
    EXPECT_EQ(start, bytes.substr(0, start.size()));
    const std::regex rest(
        "[^\r]+\r\n#Computer name: [^\r]+\r\n#Log-Date: \\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\r\n"
        "\\*{53}\r\nfirst\r\n\\*{53}\r\n\\*{53}\r\n");
    EXPECT_TRUE(std::regex_match(bytes.substr(start.size()), rest)) << bytes;
}

TEST_F(RollingFile, ContinuesAFileThatHasContent) {
    for (const auto& [before, hasHeader] : {std::pair("abcd", false), {"abc", true}, {"", true}}) {
        PutBytes(file_, before);
        Rolling(file_, 0).Put(L"x\n");
        const std::string bytes = BytesOf(file_);
        EXPECT_EQ(hasHeader, bytes.find("#Software") != std::string::npos) << before;
        EXPECT_TRUE(bytes.starts_with(before)) << bytes;
        EXPECT_TRUE(bytes.ends_with(EntryOf("x"))) << bytes;
    }
}

TEST_F(RollingFile, RollsWhenPositionAndLengthExceedTheLimitOfAtLeastAThousand) {
    for (const std::size_t length : {100u, 101u}) {
        PutBytes(file_, std::string(900, 'o'));
        Rolling output(file_, 1, 500);
        output.Put(std::wstring(length, L'\x20AC'));  // counted by characters, not by its bytes
        EXPECT_EQ(length > 100, std::filesystem::exists(backup_)) << length;
    }
    EXPECT_EQ(std::string(900, 'o'), BytesOf(backup_));
    EXPECT_TRUE(BytesOf(file_).ends_with("\u20AC" + kStars + "\r\n"));
}

TEST_F(RollingFile, WithoutBackupsIsEmptiedAndTakesTheNewHeaderTexts) {
    Rolling output(file_, 0);
    output.SetBuildDate(L"tomorrow");
    output.SetVersionString(nullptr);
    for (const wchar_t letter : {L'a', L'b'}) output.Put(LongEntry(letter));
    const std::string bytes = BytesOf(file_);
    EXPECT_TRUE(bytes.starts_with(kMark + "#Software: Soft\r\n#Version: \r\n#Build date: tomorrow\r\n"));
    EXPECT_TRUE(bytes.ends_with(kStars + "\r\n" + EntryOf(std::string(1200, 'b')))) << bytes;
    EXPECT_EQ(std::string::npos, bytes.find("aaa"));
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder_.path()), {}));
}

TEST_F(RollingFile, ShiftsItsBackupsIntoGapsTooAndKeepsTheirTimes) {
    constexpr DWORD kBackups = 4, kGap = 3;
    const auto path = [&](DWORD number) {
        return folder_ / (number ? L"Log" + std::to_wstring(number) + L".bak" : L"Log.log").c_str();
    };
    const auto contentOf = [](DWORD number) { return std::string(1000, static_cast<char>('0' + number)); };
    Rolling other(file_, 0);
    for (DWORD i = 0; i <= kBackups; ++i) {
        if (i == kGap) continue;
        PutBytes(path(i), contentOf(i));
        other.SetFileLastWriteTime(path(i).c_str(), {0x10000000 * (i + 1), 30'000'000 + i});
    }
    {
        const auto reader = OpenFile(path(0), kShareAll | FILE_SHARE_DELETE);
        const std::filesystem::path elsewhere = std::filesystem::current_path();
        std::filesystem::current_path(folder_.path());
        QLFileName name;
        Rolling(folder_.path().root_name().wstring() + L"Log.log", 0).SetBackupFileName(name, 0);
        EXPECT_EQ(path(0), name.GetPathAndFileName().str());
        Rolling(L"b\\Log.log", 0).SetBackupFileName(name, 0);
        EXPECT_EQ(folder_ / L"b\\Log.log", name.GetPathAndFileName().str());
        Rolling rolling(L"Log.log", kBackups);
        std::filesystem::current_path(elsewhere);
        rolling.Put(L"new\n");
        rolling.SetBackupFileName(name, 3);
        EXPECT_EQ(path(3), name.GetPathAndFileName().str());
    }
    for (DWORD i = 1; i <= kGap; ++i) {
        EXPECT_EQ(contentOf(i - 1), BytesOf(path(i))) << i;
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        ::GetFileAttributesExW(path(i).c_str(), GetFileExInfoStandard, &data);
        EXPECT_EQ(30'000'000 + i - 1, data.ftLastWriteTime.dwHighDateTime) << i;
        EXPECT_EQ(0x10000000 * i, data.ftLastWriteTime.dwLowDateTime) << i;
    }
    EXPECT_EQ(30'000'000u, other.GetFileLastWriteTime(path(1).c_str()).dwHighDateTime);
    EXPECT_EQ(0u, other.GetFileLastWriteTime(path(kBackups).c_str()).dwHighDateTime)
        << "nothing moved up from the gap";
    EXPECT_TRUE(BytesOf(path(0)).starts_with(kMark + "#Software"));
}

// The oldest backup cannot be deleted, or no other one be renamed, while somebody reads it.
TEST_F(RollingFile, StopsForGoodRatherThanLoseItsOldestBackupButIsEmptiedWhenARenameFails) {
    const std::tuple<int, std::string, std::wstring> cases[] = {
        {1, std::string(1000, '0'), L"BackupAndStartAnew: Failed to delete backup log file: " + backup_},
        {2, kMark + "#Software", L"BackupAndStartAnew, re-creating main log file"}};
    for (const auto& [backups, begin, told] : cases) {
        g_told.clear();
        PutBytes(file_, std::string(1000, '0'));
        PutBytes(backup_, "1");
        Rolling output(file_, backups);
        {
            const auto held = OpenFile(backup_, kShareAll);
            output.Put(L"x\n");
        }
        EXPECT_NE(std::wstring::npos, g_told.find(told)) << g_told;
        output.Put(L"y\n");
        EXPECT_EQ("1", BytesOf(backup_)) << backups;
        EXPECT_EQ(begin, BytesOf(file_).substr(0, begin.size())) << backups;
        EXPECT_EQ(backups == 2, BytesOf(file_).ends_with(EntryOf("y"))) << backups;
    }
}

TEST_F(RollingFile, ThatCannotBeOpenedStaysUsable) {
    const std::wstring path = folder_ / (L"none\\" + std::wstring(300, L'n') + L".log").c_str();
    Rolling output(path, 1);
    output.Put(L"x");
    output.Flush();
    EXPECT_FALSE(output.IsOpen());
    const std::wstring message =
        L"RollingFileOutput::RollingFileOutput failed to open or create file: " + path + L'\n';
    EXPECT_EQ(message + L"Soft,4,7,1,0:" + message, g_told);
    g_told.clear();
    QLLogger::InitializeLog(path.c_str(), QLLOG_INFO);
    QLLogger::CloseLogs();
    EXPECT_EQ(L"Quillet.Platform.Native.Util,4,1,1,0:The log cannot be opened: " + path, g_told);
}

TEST_F(LogFiles, TakeComTextsAndAnsiTextsInTheSystemsCodePage) {
    char ansi[8] = {};
    ::WideCharToMultiByte(CP_ACP, 0, L"\xE9", -1, ansi, sizeof ansi, nullptr, nullptr);
    QLLogger::InitializeLog(file_.c_str(), QLLOG_INFO);
    wchar_t comText[] = L"com \x20AC ";
    BSTR text = ::SysAllocString(comText);
    const std::string begin(70, 'n'), place = begin + ansi + 'o';
    QLLoggerLevelInserter(QLLOG_INFO, place.c_str(), 1)
        << _bstr_t(text, false) << ansi << place << LogMessageFinish();
    QLLogger::CloseLogs();
    const std::string told = begin + "\u00e9o";
    EXPECT_TRUE(BytesOf(file_).ends_with('[' + told + ":1]-com \u20ac \u00e9" + told + "\r\n"))
        << BytesOf(file_);
}
