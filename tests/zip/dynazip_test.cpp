#include "zip/dynazip.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <sstream>
#include <tuple>
#include <vector>

#include "platform/win32.h"
#include "tests/zip/recording_engine.h"

namespace {

constexpr wchar_t kZipEngine[] = L"DZIP32.DLL", kUnzipEngine[] = L"DUNZIP32.DLL";
// Neither in the code page nor with a look-alike in it; and one with a look-alike alone.
const wchar_t* const kNotAnsi[] = {L"\u4e00.zip", L"\u0100.zip"};

std::wstring Beside(const wchar_t* name) {
    wchar_t path[MAX_PATH];
    ::GetModuleFileNameW(::GetModuleHandleW(L"Quillet.Platform.Native.Util.dll"), path, MAX_PATH);
    const std::wstring own = path;
    return own.substr(0, own.rfind(L'\\') + 1) + name;
}

template <class... Part>
std::string Joined(const Part&... parts) {
    std::ostringstream all;
    ((all << parts << '|'), ...);
    return all.str();
}

bool IsLoaded() {
    return Dynazip::IsZipDllLoaded() == 1 && Dynazip::IsUnZipDllLoaded() == 1;
}
void Free() {
    Dynazip::FreeZipDll();
    Dynazip::FreeUnZipDll();
}

// The engines beside the library are those that record.
class DynazipCalls : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(IsLoaded());
        zip_ = Recorded(kZipEngine);
        unzip_ = Recorded(kUnzipEngine);
        ASSERT_TRUE(zip_ && unzip_);
        for (Recording* recording : {zip_, unzip_}) std::memset(recording, 0, sizeof *recording);
    }
    void TearDown() override { Free(); }
    static Recording* Recorded(const wchar_t* engine) {
        const HMODULE module = ::GetModuleHandleW(Beside(engine).c_str());
        const FARPROC proc = module ? ::GetProcAddress(module, "Recorded") : nullptr;
        return proc ? reinterpret_cast<RecordedProc>(reinterpret_cast<void*>(proc))() : nullptr;
    }

    Recording *zip_ = nullptr, *unzip_ = nullptr;
};

// Of the command that an engine was called with.
TEST_F(DynazipCalls, FillTheRecords) {
    EXPECT_EQ(1, Dynazip::AddFileToZip(L"C:\\a \u20ac.zip", L"C:\\in", L"b c.txt", 7));
    EXPECT_EQ("C:\\a \x80.zip|\"C:\\in\\b c.txt\"|", Joined(zip_->archive, zip_->items));
    const ZIPCMDSTRUCT& zip = zip_->zip;
    EXPECT_EQ(Joined(sizeof zip) + "3|7|1|1|1|0|0|",
              Joined(zip.zipStructSize, zip.function, zip.compFactor, zip.quietFlag, zip.growExistingFlag,
                     zip.noDirectoryNamesFlag, zip.recurseFlag, zip.addCommentFlag));
    zip_->answer = ZIP_NOTHING_TO_DO;
    EXPECT_EQ(0, Dynazip::AddFileToZip(L"a", nullptr, L"b", 0));
    EXPECT_STREQ("\"\\b\"", zip_->items);
    EXPECT_EQ(ZIP_NOTHING_TO_DO, Dynazip::DeleteFileFromZip(L"a.zip", L"b c.txt"));
    EXPECT_EQ("2|5|\"b c.txt\"|trash|", Joined(zip.function, zip.compFactor, zip_->items, zip_->place));

    unzip_->answer = UNZIP_CANCELLED;
    EXPECT_EQ(UNZIP_CANCELLED, Dynazip::ExtractFileFromZip(L"a.zip", L"b c.txt", L"C:\\out"));
    const UNZIPCMDSTRUCT& unzip = unzip_->unzip;
    EXPECT_EQ(Joined(sizeof unzip) + "8|-1|\"b c.txt\"|C:\\out|",
              Joined(unzip.unzipStructSize, unzip.function, unzip.index, unzip_->items, unzip_->place));
    EXPECT_EQ("1|1|1|1|0|0|", Joined(unzip.overWriteFlag, unzip.noDirectoryNamesFlag, unzip.recurseFlag,
                                     unzip.noDirectoryItemsFlag, unzip.testFlag, unzip.freshenFlag));
}

TEST_F(DynazipCalls, ExistsCountsWhatMatchesAndIndexedInfoIsTheEngines) {
    for (const auto& [count, answer, exists] : {std::array{0, 0, 0}, {2, 0, 1}, {2, 9, 0}}) {
        unzip_->count = count;
        unzip_->answer = answer;
        EXPECT_EQ(exists, Dynazip::FileExistsInZip(L"a.zip", L"b")) << count << ' ' << answer;
        EXPECT_EQ(UNZIP_COUNT_MATCHING, unzip_->unzip.function);
    }
    unzip_->answer = UNZIP_DONE;
    unzip_->info.crc_32 = 77;
    ZIPINFO info{};
    EXPECT_EQ(UNZIP_DONE, Dynazip::GetIndexedZipInfo(L"a.zip", 5, &info));
    EXPECT_EQ("7|5|77|", Joined(unzip_->unzip.function, unzip_->unzip.index, info.crc_32));
    EXPECT_EQ(ZIP_BAD_REQUEST, Dynazip::GetIndexedZipInfo(L"a.zip", 5, nullptr));
}

TEST_F(DynazipCalls, CommentsAreReadInOneCallAsTheyWereWrittenOrInTheUtf8OfOthers) {
    const std::string longest(65535, '\x80');
    const std::tuple<bool, std::string, std::wstring> cases[] = {
        {true, "", L""},
        {true, "\x80 \"5\"", L"\u20ac \"5\""},
        {true, "\xc3\x83\xc2\xa9", L"\u00c3\u00a9"},
        {true, longest, std::wstring(longest.size(), L'\u20ac')},
        {false, "caf\xc3\xa9", L"caf\u00e9"}};
    for (const auto& [isOurs, bytes, text] : cases) {
        const std::string what = bytes.substr(0, 9);
        EXPECT_EQ(1, Dynazip::SetComment(L"a.zip", text.c_str())) << what;
        EXPECT_EQ(isOurs, bytes == zip_->comment) << what;
        unzip_->calls = 0;
        std::strcpy(unzip_->comment, bytes.c_str());
        EXPECT_EQ(text, Dynazip::GetComment(L"a.zip").str()) << what;
        EXPECT_EQ(1, unzip_->calls) << what;
    }
    EXPECT_EQ(UNZIP_COMMENT, unzip_->unzip.function);
    unzip_->answer = UNZIP_CUT_OFF;
    EXPECT_TRUE(Dynazip::GetComment(L"a.zip").isNull());
    EXPECT_EQ(1, Dynazip::SetComment(L"a.zip", nullptr));
    EXPECT_EQ("4|1|||", Joined(zip_->zip.function, zip_->zip.addCommentFlag, zip_->items, zip_->comment));
    zip_->answer = ZIP_BAD_COMMENT;
    EXPECT_EQ(0, Dynazip::SetComment(L"a.zip", L"b"));
    EXPECT_EQ(ZIP_BAD_COMMENT, Dynazip::LastEngineCode());
}

TEST_F(DynazipCalls, ListsGoOneByOneToAnEngineThatKnowsNone) {
    const wchar_t* const path = L"C:\\in/a.txt";
    ZIPSOURCE files[] = {
        {L"c.txt", L"c.txt", -1}, {L"a.txt", L"other.txt", -1}, {path, L"b\".txt", -1}, {path, nullptr, -1}};
    EXPECT_EQ(0, Dynazip::AddFilesToZip(L"a.zip", files, 4, 9));
    EXPECT_EQ(2, zip_->calls);
    EXPECT_STREQ("\"C:\\in\\a.txt\"", zip_->items);
    const int codes[] = {ZIP_DONE, ZIP_BAD_REQUEST, ZIP_BAD_REQUEST, ZIP_DONE};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(codes[i], files[i].code) << i;
    EXPECT_EQ(1, Dynazip::AddFilesToZip(L"a.zip", files, 1, 9));
    EXPECT_STREQ("\".\\c.txt\"", zip_->items);
    EXPECT_EQ(0, Dynazip::AddFilesToZip(L"a.zip", nullptr, 4, 9));
    EXPECT_EQ(ZIP_BAD_REQUEST, Dynazip::LastEngineCode());
    EXPECT_EQ(1, Dynazip::AddFilesToZip(L"a.zip", nullptr, 0, 9));
    EXPECT_EQ(ZIP_DONE, Dynazip::LastEngineCode());
    EXPECT_EQ(16, Dynazip::AddFilesToZip(kNotAnsi[0], files, 4, 9));
    for (const ZIPSOURCE& file : files) EXPECT_EQ(ZIP_BAD_REQUEST, file.code) << &file - files;
}

int QL_ZIP_CALL AppendMember(const ZIPMEMBER* member, void* told) {
    auto& all = *static_cast<std::string*>(told);
    all += Joined(member->index, member->code, member->ansiName, member->size, member->attributes,
                  member->flags, member->isFolder, member->isEncrypted);
    return member->index;
}
int QL_ZIP_CALL CountMember(const ZIPMEMBER*, void* count) {
    return ++*static_cast<int*>(count) < 0;
}

TEST_F(DynazipCalls, WalksGoMemberByMemberWithAnEngineThatKnowsNone) {
    unzip_->info.oSize = 7;
    unzip_->info.attr = 32768 + 33;
    // What the engine answers for each member; the end of the walk, and its second member.
    const std::tuple<int, const char*, int, const char*> cases[] = {
        {0, "\x80/", 40, "1|0|\x80/|7|32801|0|1|1|"},
        {49, "\\", 40, "1|49|\\|7|32801|0|1|1|"},
        {0, "", 40, "1|0||7|32801|0|0|1|"},
        {25, "a", 0, ""},
        {2, "a", 2, ""}};
    std::string told;
    for (const auto& [answer, name, code, second] : cases) {
        unzip_->answer = answer;
        std::strcpy(unzip_->info.szFileName, name);
        told.clear();
        EXPECT_EQ(code, Dynazip::ForEachMember(L"a.zip", AppendMember, &told)) << answer << name;
        EXPECT_EQ(code, Dynazip::LastEngineCode()) << answer << name;
        EXPECT_EQ(second, told.substr(told.size() / 2)) << answer << name;
    }
    unzip_->answer = UNZIP_DONE;
    std::memset(unzip_->info.szFileName, 'x', sizeof unzip_->info.szFileName);  // without an end
    int count = 0;
    EXPECT_EQ(UNZIP_DONE, Dynazip::ForEachMember(L"a.zip", CountMember, &count));
    EXPECT_EQ(65536, count) << "as far as indexes go";
    EXPECT_EQ(16, Dynazip::ExtractMembers(L"a.zip", L"out", {.count = 1}, AppendMember, &told));
    EXPECT_EQ(16, Dynazip::ExtractMembers(L"a.zip", L"out", {}, nullptr, &told));
    EXPECT_EQ(16, Dynazip::ForEachMember(L"a.zip", nullptr, &told));
}

TEST_F(DynazipCalls, DateAndSizeComeFromTheNextMatch) {
    std::int64_t time = 1;
    int size = 2;
    const std::tuple<int, const char*, std::uint32_t, std::int64_t, int> cases[] = {
        {0, "07/14/99 12:30:10", 1234, 931'955'410, 1234},
        {0, "01/02/80 23:59:59", 0xffffffff, 315'705'599, 0x7fffffff},
        {0, "12/31/79 01:02:03", 0, 3'471'210'123, 0},
        {0, "00/00/80 00:00:00", 6, -1, 6},
        {0, "?", 5, -1, 5},
        {25, "07/14/99 12:30:10", 1234, -1, 5}};
    for (const auto& [answer, date, bytes, utc, told] : cases) {
        std::strcpy(unzip_->info.szDateTime, date);
        unzip_->info.oSize = bytes;
        unzip_->answer = answer;
        EXPECT_EQ(answer, Dynazip::GetFileDateAndSizeFromZip(L"a.zip", L"b", time, size)) << date;
        // Local time: at most a day, of whole quarters of an hour, away from the same in UTC.
        EXPECT_LT(std::abs(time - utc), utc < 0 ? 1 : 86400) << date;
        EXPECT_EQ(0, (time - utc) % 900) << date;
        EXPECT_EQ(told, size) << date;
    }
    EXPECT_EQ(UNZIP_NEXT_MATCHING, unzip_->unzip.function);
}

// The answers of all operations on names; of the comment, which is empty, the code.
std::vector<long> Answers(const wchar_t* archive, const wchar_t* name, const wchar_t* folder) {
    std::int64_t time;
    int size;
    ZIPINFO info;
    std::string told;
    return {Dynazip::GetComment(archive).isNull() ? Dynazip::LastEngineCode() : -1,
            Dynazip::AddFileToZip(archive, folder, name, 5),
            Dynazip::DeleteFileFromZip(archive, name),
            Dynazip::ExtractFileFromZip(archive, name, folder),
            Dynazip::ExtractMembers(archive, folder, {.names = &name, .count = 1}, AppendMember, &told),
            Dynazip::FileExistsInZip(archive, name),
            Dynazip::SetComment(archive, name),
            Dynazip::GetFileDateAndSizeFromZip(archive, name, time, size),
            Dynazip::GetIndexedZipInfo(archive, 0, &info),
            Dynazip::ForEachMember(archive, AppendMember, &told)};
}

TEST_F(DynazipCalls, NamesBeyondAnsiAnswer16WithoutACall) {
    using Codes = std::vector<long>;
    for (const wchar_t* bad : kNotAnsi) {
        EXPECT_EQ(Answers(bad, L"a", L"a"), (Codes{16, 16, 16, 16, 16, 16, 16, 16, 16, 16}));
        EXPECT_EQ(zip_->calls + unzip_->calls, 0);
        EXPECT_EQ(Answers(L"a", bad, L"a"), (Codes{0, 16, 16, 16, 16, 16, 16, 16, 0, 40}));
        EXPECT_EQ(zip_->calls + unzip_->calls, 4);  // the comment's, the indexed one's and two of the walk
        EXPECT_EQ(Answers(L"a", L"a", bad), (Codes{0, 16, 0, 16, 16, 0, 1, 0, 0, 40}));
        EXPECT_EQ(Answers(L"a", L"a", L"a"), (Codes{0, 1, 0, 0, 47, 0, 1, 0, 0, 40}));
        zip_->calls = unzip_->calls = 0;
    }
}

// Engines are put away to where a search by name alone would find them: the current folder, which is in PATH
// too.
class DynazipLoading : public testing::Test {
  protected:
    void SetUp() override {
        ::CreateDirectoryW(Beside(L"away").c_str(), nullptr);
        ::SetCurrentDirectoryW(Beside(L"away").c_str());
        ::SetEnvironmentVariableW(L"PATH", Beside(L"away").c_str());
        TearDown();
    }
    void TearDown() override {
        Free();
        for (const wchar_t* engine : {kZipEngine, kUnzipEngine}) PutBack(engine);
    }
    static std::wstring Away(const wchar_t* engine) { return Beside(L"away\\") + engine; }
    static void PutAway(const wchar_t* engine) { ::MoveFileW(Beside(engine).c_str(), Away(engine).c_str()); }
    static void PutBack(const wchar_t* engine) {
        ::MoveFileExW(Away(engine).c_str(), Beside(engine).c_str(), MOVEFILE_REPLACE_EXISTING);
    }
};

TEST_F(DynazipLoading, LoadsOnceUntilFreedAndAgain) {
    for (int round = 0; round < 4; ++round) {
        for (int times = 0; times < 2; ++times) EXPECT_TRUE(IsLoaded()) << round;
        Free();
        for (const wchar_t* engine : {kZipEngine, kUnzipEngine}) EXPECT_FALSE(::GetModuleHandleW(engine));
    }
}

TEST_F(DynazipLoading, WithoutEnginesEachOperationFails) {
    for (const wchar_t* engine : {kZipEngine, kUnzipEngine}) PutAway(engine);
    EXPECT_EQ(0, Dynazip::IsZipDllLoaded());
    EXPECT_EQ(0, Dynazip::IsUnZipDllLoaded());
    EXPECT_EQ((std::vector<long>{126, 0, 126, 126, 126, 0, 0, 126, 126, 126}), Answers(L"a", L"a", L"a"));
    // A module of that name without the entry point.
    const std::wstring library = Beside(L"Quillet.Platform.Native.Util.dll");
    ASSERT_TRUE(::CopyFileW(library.c_str(), Beside(kZipEngine).c_str(), FALSE));
    EXPECT_EQ(0, Dynazip::IsZipDllLoaded()) << "a module without the entry point";
    EXPECT_FALSE(::GetModuleHandleW(kZipEngine)) << "is unloaded again";
    PutBack(kZipEngine);
    EXPECT_EQ(1, Dynazip::IsZipDllLoaded());
}

TEST(DynazipRecords, StartFromTheirDefaults) {
    ZIPCMDSTRUCT zip, zipZero{};
    UNZIPCMDSTRUCT unzip, unzipZero{};
    zipZero.zipStructSize = sizeof zip, zipZero.function = 6, zipZero.compFactor = 5;
    unzipZero.unzipStructSize = sizeof unzip, unzipZero.index = -1;
    unzipZero.noDirectoryNamesFlag = unzipZero.recurseFlag = unzipZero.noDirectoryItemsFlag = 1;
    std::memset(&zip, 0xcc, sizeof zip);
    std::memset(&unzip, 0xcc, sizeof unzip);
    Dynazip::InitZIPCmdStruct(&zip);
    Dynazip::InitUNZIPCmdStruct(&unzip);
    EXPECT_EQ(std::memcmp(&zip, &zipZero, sizeof zip), 0);
    EXPECT_EQ(std::memcmp(&unzip, &unzipZero, sizeof unzip), 0);
}

TEST(DynazipMessages, HaveTheirCodes) {
    std::wstring said;
    for (int code = -1; code < 1000; ++code) {
        for (const wchar_t* text : {Dynazip::ZipErrorMsg(code), Dynazip::UnzipErrorMsg(code)})
            if (*text) said += std::to_wstring(code) + L' ' + text + L'|';
    }
    EXPECT_EQ(
        L"1 Busy, can't enter now|2 Unexpected end of zip file|2 Unexpected end of zip file|3 Zip file "
        L"structure invalid|3 Zip file structure invalid|4 Out of memory|4 Out of memory|5 Internal logic "
        L"error|5 Out of memory|6 Entry too big to split|7 Invalid comment format|8 Zip file invalid or "
        L"insufficient memory|9 Application cancelled operation|9 File not found|10 Temporary file failure|"
        L"11 Input file read failure|11 No files to test, extract, etc.|12 Nothing to do!|12 The same disk "
        L"volume can not be used as both the source and destination|13 Missing or empty zip file|14 Output "
        L"file write failure, possible disk full|15 Could not create output file|16 Invalid combination of "
        L"control parameters|17 Could not complete operation|18 File not found or no read permission|19 "
        L"Media Error Encountered|20 Invalid combination of Multi-Volume control parameters|21 Improper use "
        L"of Multi-Volume Zip file|25 Index out of bounds|28 Error creating output file|29 Error opening "
        L"archive|39 Bad CRC|40 Application cancelled operation|41 File skipped, encrypted|42 File skipped, "
        L"unknown compression method|44 Bad or missing decrypt code|45 Busy, can't enter now|46 Can't "
        L"extract a Volume ID item|47 Command syntax error|48 Operation cancelled|49 Operation skipped|50 "
        L"Disk full|126 The zip engine is not loaded|126 The zip engine is not loaded|127 Another member of "
        L"that name was brought out before|",
        said);
}

}  // namespace
