#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "engine/pending_file.h"
#include "engine/windows_files.h"
#include "tests/support/open_file.h"
#include "tests/support/test_folder.h"
#include "tests/zip/engine_calls.h"
#include "tests/zip/members.h"
#include "zip/dynazip.h"

namespace {

using namespace ql::zip;
namespace fs = std::filesystem;

using Z = ZIPCMDSTRUCT;
using U = UNZIPCMDSTRUCT;
using ZipFlag = std::int32_t Z::*;
using UnzipFlag = std::int32_t U::*;

template <class Command, class Field>
Command With(Command command, Field Command::*field, std::type_identity_t<Field> value) {
    command.*field = value;
    return command;
}

// In their order.
std::string Joined(const std::set<std::string>& names) {
    std::string all;
    for (const std::string& name : names) all += name + "|";
    return all;
}

int QL_ZIP_CALL AppendName(const ZIPMEMBER* member, void* names) {
    *static_cast<std::wstring*>(names) += member->name + std::wstring(L"|");
    return 0;
}

int QL_ZIP_CALL AppendNamesUpToM(const ZIPMEMBER* member, void* names) {
    return AppendName(member, names) + (*member->name == L'm');
}

// Another call that ends would remove it where it could.
int QL_ZIP_CALL IsHeldAtLast(const ZIPMEMBER* member, void* path) {
    const std::wstring& folder = *static_cast<std::wstring*>(path);
    return member->name == std::wstring(L"349") && fs::is_directory(folder) &&
           !::RemoveDirectoryW(folder.c_str());
}

class Engine : public testing::Test {
  protected:
    Engine() {
        fs::create_directory(folder_);
        EXPECT_TRUE(Dynazip::IsZipDllLoaded());
        EXPECT_TRUE(Dynazip::IsUnZipDllLoaded());
    }

    std::string Path(const std::string& name) const { return (folder_ / name).string(); }

    // In UTF-8.
    static std::string Names(const fs::path& folder) {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.insert(entry.path().filename().string());
        return Joined(names);
    }

    // Files of the year given, so that older and newer are told apart.
    static void WriteFile(const fs::path& path, const std::string& content, int year = 2020) {
        PutBytes(path.wstring(), content);
        SetYear(path, year);
    }
    static void SetYear(const fs::path& path, int year) {
        const FILETIME time = *FileTimeOf(ToDosTime({year, 6, 15, 12, 30, 10}));
        ::SetFileTime(OpenFile(path, 0, FILE_WRITE_ATTRIBUTES).get(), &time, &time, &time);
    }

    static std::string ReadFile(const fs::path& path) {
        return fs::exists(path) ? BytesOf(path.wstring()) : "(none)";
    }

    void MakeArchive(const std::vector<Member>& members) const {
        MemoryOutput output;
        Write(output, members, "");
        PutBytes(WideArchive(), {output.bytes.begin(), output.bytes.end()});
    }

    Z ZipCommand(std::int32_t function, const std::string& items) {
        items_ = items;
        return ::ZipCommand(function, archive_.c_str(), items_.c_str());
    }
    std::string Quoted(const std::string& name) const { return '"' + Path(name) + '"'; }
    // Files of the folder, by their names alone.
    int Zip(std::int32_t function, const std::string& name) {
        return Dzip(With(ZipCommand(function, Quoted(name)), &Z::noDirectoryNamesFlag, 1));
    }

    U UnzipCommand(std::int32_t function, const std::string& pattern = "*",
                   const std::vector<UnzipFlag>& flags = {}) {
        items_ = pattern;
        U command = ::UnzipCommand(function, archive_.c_str(), items_.c_str(), out_.c_str());
        command.zInfo = &info_;
        for (const UnzipFlag flag : flags) command.*flag = 1;
        return command;
    }
    int Extract(const std::string& pattern = "*", const std::vector<UnzipFlag>& flags = {}) {
        return Dunzip(UnzipCommand(UNZIP_EXTRACT, pattern, flags));
    }
    std::wstring WideArchive() const { return fs::path(archive_).wstring(); }
    // The names of those that the class tells of are appended.
    long ExtractMembers(const ZipExtraction& what, std::wstring& names,
                        ZipMemberProc each = AppendName) const {
        return Dynazip::ExtractMembers(WideArchive().c_str(), fs::path(out_).c_str(), what, each, &names);
    }
    // What the call counts, or its code, less than 0.
    static int CountOf(U command) {
        const int code = Dunzip(command);
        return code == UNZIP_DONE ? command.returnCount : -code;
    }
    int Count() { return CountOf(UnzipCommand(UNZIP_COUNT_ALL)); }

    const TestFolder temporary_;
    const fs::path folder_ = temporary_.path() / "with a blank";
    const std::string archive_ = Path("a.zip"), out_ = Path("out");
    std::string items_;
    ZIPINFO info_{};
};

int QL_ZIP_CALL Cancel(const char*, int, void*) {
    return 1;
}
struct Meanwhile {
    std::wstring growing;
    ql::UniqueFileHandle held;
};
int QL_ZIP_CALL GrowAndLetGo(const char* item, int, void* data) {
    auto& meanwhile = *static_cast<Meanwhile*>(data);
    if (std::string(item).ends_with("10.txt")) PutBytes(meanwhile.growing, std::string(100'000, 'g'));
    if (std::string(item).ends_with("57.txt")) meanwhile.held.reset();
    return 0;
}
int QL_ZIP_CALL Record(const char* item, int percent, void* told) {
    *static_cast<std::string*>(told) += std::string(item) + ":" + std::to_string(percent) + " ";
    return 0;
}

// Each step on "old.txt", which has the year as its content, after the steps before.
TEST_F(Engine, AddsFreshensUpdatesAndDeletes) {
    WriteFile(Path("new one.txt"), "new");
    const std::tuple<int, int, const char*, int, int> steps[] = {
        {2020, ZIP_FRESHEN, "old.txt", 13, -9},    {2020, ZIP_DELETE, "old.txt", 13, -9},
        {2020, ZIP_UPDATE, "old.txt", 0, 1},       {2020, ZIP_UPDATE, "old.txt", 12, 1},
        {2020, ZIP_FRESHEN, "new one.txt", 12, 1}, {2020, ZIP_ADD, "*.txt", 0, 2},
        {2021, ZIP_FRESHEN, "*.txt", 0, 2},        {2019, ZIP_UPDATE, "*.txt", 12, 2}};
    for (const auto& [year, function, name, code, count] : steps) {
        WriteFile(Path("old.txt"), std::to_string(year), year);
        EXPECT_EQ(code, Zip(function, name)) << function << " in " << year;
        EXPECT_EQ(count, Count()) << function << " in " << year;
    }
    EXPECT_EQ(UNZIP_DONE, Extract());
    EXPECT_EQ("2021", ReadFile(out_ + "\\old.txt"));
    std::string told;
    Z all = With(ZipCommand(ZIP_ADD, Quoted("*")), &Z::noDirectoryNamesFlag, 1);
    all.lpMajorStatus = Record;
    all.lpMajorUserData = &told;
    EXPECT_EQ(ZIP_DONE, Dzip(all));
    EXPECT_EQ("new one.txt:42 old.txt:100 ", told);
    EXPECT_EQ(2, Count()) << "not the archive itself";
    EXPECT_EQ(ZIP_DONE, Dzip(With(ZipCommand(ZIP_DELETE, "new*"), &Z::oldAsLatestFlag, 1)));
    WriteFile(Path("as old.txt"), "", 2019);
    EXPECT_EQ(fs::last_write_time(Path("as old.txt")), fs::last_write_time(archive_)) << "as the member left";
    PutBytes(WideArchive(), "");
    EXPECT_EQ(ZIP_MISSING, Dzip(ZipCommand(ZIP_DELETE, "*"))) << "an empty file is no archive";
    ::SetFileAttributesA(Path("old.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(ZIP_NOT_COMPLETED, Dzip(With(ZipCommand(ZIP_ADD, Quoted("*.txt")), &Z::deleteOriginalFlag, 1)));
    EXPECT_EQ("a.zip|old.txt|out|", Names(folder_)) << "the one that cannot go stays alone";
}

TEST_F(Engine, TakesFoldersAndFiltersAsTheFlagsSay) {
    fs::create_directories(Path("in\\sub"));
    WriteFile(Path("in\\a.txt"), std::string(1000, 'a'));
    WriteFile(Path("in\\b.JPG"), std::string(1000, 'b'));
    WriteFile(Path("in\\hidden.txt"), "h");
    ::SetFileAttributesA(Path("in\\hidden.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    WriteFile(Path("in\\sub\\a.txt"), "late", 2022);
    const std::pair<std::vector<ZipFlag>, const char*> cases[] = {
        {{}, "a.txt|b.JPG|"},
        {{&Z::dontCompressTheseSuffixesFlag}, "a.txt|b.JPG stored|"},
        {{&Z::includeSysHiddenFlag}, "a.txt|b.JPG|hidden.txt stored|"},
        {{&Z::recurseFlag}, "a.txt|b.JPG|sub/ stored|sub/a.txt stored|"},
        {{&Z::recurseFlag, &Z::noDirectoryEntriesFlag}, "a.txt|b.JPG|sub/a.txt stored|"},
        {{&Z::includeOnlyFollowingFlag}, "b.JPG|"},
        {{&Z::excludeFollowingFlag}, "a.txt|"},
        {{&Z::recurseFlag, &Z::noDirectoryEntriesFlag, &Z::afterDateFlag}, "sub/a.txt stored|"}};
    for (const auto& c : cases) {
        ::DeleteFileA(archive_.c_str());
        Z command = ZipCommand(ZIP_ADD, Quoted("in\\.\\*.*"));
        command.lpszIncludeFollowing = command.lpszExcludeFollowing = "*.jpg x";
        command.lpszDate = "12/31/21";
        command.lpszStoreSuffixes = ":jpg;xt,.zip";
        for (const auto flag : c.first) command.*flag = 1;
        EXPECT_EQ(ZIP_DONE, Dzip(command)) << c.second;
        std::set<std::string> names;
        U next = UnzipCommand(UNZIP_NEXT);
        while (Dunzip(next) == 0) {
            const std::string name = info_.szFileName;
            names.insert(name.substr(name.find("/in/") + 4) + (info_.cMethod == 0 ? " stored" : ""));
        }
        EXPECT_EQ(Joined(names), c.second);
    }
    const auto recursive = With(ZipCommand(ZIP_ADD, Quoted("in\\*.*")), &Z::recurseFlag, 1);
    EXPECT_EQ(ZIP_BAD_REQUEST, Dzip(With(recursive, &Z::noDirectoryNamesFlag, 1)))
        << "two would have one name";
    const std::string twice = Quoted("in\\a.txt") + " " + Quoted("in\\A.*");
    EXPECT_EQ(ZIP_DONE, Dzip(ZipCommand(ZIP_ADD, twice))) << "one file, found twice";
    for (const auto& [name, code] :
         {std::pair{"in\\sub\\", ZIP_DONE}, {"a.txt", ZIP_DONE}, {"b.txt", ZIP_FILE_MISSING}})
        EXPECT_EQ(code, Dzip(With(recursive, &Z::lpszItemList, Quoted(name).c_str()))) << name;
}

TEST_F(Engine, RefusesWhatItDoesNotOffer) {
    WriteFile(Path("a.txt"), "a");
    const auto add = [&] { return ZipCommand(ZIP_ADD, Quoted("a.txt")); };
    const std::pair<ZipFlag, int> numbers[] = {{&Z::zipStructSize, 187},     {&Z::encryptFlag, 1},
                                               {&Z::dosifyFlag, 1},          {&Z::fixFlag, 1},
                                               {&Z::convertLFtoCRLFFlag, 1}, {&Z::fixHarderFlag, 1},
                                               {&Z::includeVolumeFlag, 1},   {&Z::compFactor, 10},
                                               {&Z::compFactor, -1},         {&Z::function, 6}};
    for (const auto& number : numbers)
        EXPECT_EQ(ZIP_BAD_REQUEST, Dzip(With(add(), number.first, number.second))) << &number - numbers;
    const auto addSince = With(add(), &Z::afterDateFlag, 1);
    for (const char* date : {"13/01/22", "00/01/22", "01/32/22", "01/00/22", "x1/01/22", "01/0x/22",
                             "01/01-22", "01 01/22", "1/01/22"})
        EXPECT_EQ(ZIP_BAD_REQUEST, Dzip(With(addSince, &Z::lpszDate, date))) << date;
    EXPECT_EQ(ZIP_NOTHING_TO_DO, Dzip(With(addSince, &Z::lpszDate, "01/01/22")));
    EXPECT_EQ(ZIP_BAD_REQUEST, Dzip(With(add(), &Z::wZipSubOptions, 1)));
    EXPECT_EQ(ZIP_DONE, Dzip(ZipCommand(ZIP_NONE, "")));
    EXPECT_EQ(ZIP_BAD_COMMENT, Dzip(With(add(), &Z::addCommentFlag, 1)));
    EXPECT_EQ(ZIP_MISSING, Dzip(With(add(), &Z::lpszZIPFile, nullptr)));
    EXPECT_EQ(ZIP_CANNOT_CREATE, Dzip(With(add(), &Z::lpszZIPFile, "C:\\no such folder\\a.zip")));
    EXPECT_EQ(ZIP_NOTHING_TO_DO, Dzip(With(add(), &Z::lpszItemList, nullptr)));
    EXPECT_EQ(ZIP_VOLUMES_ASKED, Dzip(With(add(), &Z::wMultiVolControl, 1)));
    EXPECT_EQ(ZIP_FILE_MISSING, Zip(ZIP_ADD, "not there"));
    EXPECT_EQ(ZIP_NOTHING_TO_DO, Zip(ZIP_ADD, "not there*"));
    EXPECT_EQ("a.txt|", Names(folder_));

    EXPECT_EQ(UNZIP_MISSING, Extract());
    MakeArchive({{"a.txt", "a"}});
    EXPECT_EQ(UNZIP_NOTHING_TO_DO, Extract("b.txt"));
    for (const UnzipFlag other : {&U::unzipStructSize, &U::bLF2CRLFFlag})
        EXPECT_EQ(UNZIP_BAD_REQUEST, Extract("*", {other}));
    for (const int function : {-1, 10, int{UNZIP_COMMENT}})
        EXPECT_EQ(UNZIP_BAD_REQUEST, Dunzip(UnzipCommand(function))) << function;
    EXPECT_EQ(UNZIP_DONE, Dunzip(UnzipCommand(UNZIP_NONE)));
    for (const char* none : {"", static_cast<const char*>(nullptr)})
        EXPECT_EQ(UNZIP_MISSING, Dunzip(With(UnzipCommand(UNZIP_NEXT), &U::lpszZIPFile, none)));
    EXPECT_EQ(UNZIP_BAD_REQUEST, Dunzip(With(UnzipCommand(UNZIP_NEXT), &U::zInfo, nullptr)));
    EXPECT_EQ(UNZIP_BAD_REQUEST, Dunzip(With(UnzipCommand(UNZIP_EXTRACT), &U::wUnzipSubOptions, 2)));
}

TEST_F(Engine, FailuresLeaveTheFormerArchiveByteForByte) {
    WriteFile(Path("a.txt"), "a");
    WriteFile(Path("locked.txt"), "l");
    ASSERT_EQ(ZIP_DONE, Zip(ZIP_ADD, "a.txt"));
    const std::string before = ReadFile(archive_);
    {
        const auto lock = OpenFile(Path("locked.txt"), kShareNothing);
        EXPECT_EQ(ZIP_READ_FAILED, Zip(ZIP_ADD, "*.txt"));
    }
    EXPECT_EQ(ZIP_CANCELLED, Dzip(With(ZipCommand(ZIP_ADD, Quoted("*.txt")), &Z::lpMinorStatus, Cancel)));
    {
        Patience patience;
        const PendingFile other(LiteralPath(WideArchive()), patience);
        EXPECT_EQ(ZIP_BUSY, Zip(ZIP_ADD, "*.txt"));
    }
    {
        const auto reader = OpenFile(archive_, kShareReading);
        EXPECT_EQ(ZIP_TEMPORARY_FILE, Zip(ZIP_ADD, "*.txt"));
    }
    EXPECT_EQ(before, ReadFile(archive_));
    PutBytes(PendingFile::NameBeside(WideArchive()), "left by a machine that lost its power");
    EXPECT_EQ(ZIP_DONE, Zip(ZIP_ADD, "a.txt"));
    EXPECT_EQ("a.txt|a.zip|locked.txt|", Names(folder_));
}

// Both have been read ahead, or tried, when they are wanted.
TEST_F(Engine, FilesThatGrowOrAreLetGoDuringTheCallAreAddedWhole) {
    for (int i = 10; i < 60; ++i) WriteFile(Path(std::to_string(i) + ".txt"), "x");
    Meanwhile meanwhile{fs::path(Path("59.txt")).wstring(), OpenFile(Path("58.txt"), kShareNothing)};
    Z command = With(ZipCommand(ZIP_ADD, Quoted("*.txt")), &Z::lpMinorStatus, GrowAndLetGo);
    EXPECT_EQ(ZIP_DONE, Dzip(With(command, &Z::lpMinorUserData, &meanwhile)));
    EXPECT_EQ(UNZIP_DONE, Extract("*", {&U::noDirectoryNamesFlag}));
    EXPECT_EQ(std::string(100'000, 'g'), ReadFile(out_ + "\\59.txt"));
    EXPECT_EQ("x", ReadFile(out_ + "\\58.txt"));
}

TEST_F(Engine, CommentsAreKeptAndReplaced) {
    WriteFile(Path("a.txt"), "a");
    const auto put = [&](const std::string& comment) {
        const Z command = With(ZipCommand(ZIP_ADD, ""), &Z::addCommentFlag, 1);
        return Dzip(With(command, &Z::lpszComment, comment.c_str()));
    };
    EXPECT_EQ(ZIP_MISSING, put(""));
    ASSERT_EQ(ZIP_DONE, Zip(ZIP_ADD, "a.txt"));
    for (const int size : {5, 65535, 0}) {
        const std::string comment(static_cast<std::size_t>(size), 'x');
        EXPECT_EQ(ZIP_DONE, put(comment)) << size;
        ASSERT_EQ(ZIP_DONE, Zip(ZIP_ADD, "a.txt"));
        EXPECT_EQ(size, CountOf(UnzipCommand(UNZIP_COMMENT_SIZE)));
        std::string read = comment + "##";
        EXPECT_EQ(UNZIP_DONE, Dunzip(With(UnzipCommand(UNZIP_COMMENT), &U::lpszReturnString, read.data())));
        EXPECT_EQ(comment + std::string("\0#", 2), read);
    }
    EXPECT_EQ(ZIP_BAD_COMMENT, put(std::string(65536, 'x')));
}

TEST_F(Engine, ListsMembers) {
    MakeArchive({{"a.txt", "hello", 33},
                 {"sub/", "", 0},
                 {"sub/long name \u20ac\u4e00.html", ""},
                 {"sub/a.txt", "x"},
                 {std::string(260, 'n'), ""}});
    U command = UnzipCommand(UNZIP_NEXT);
    std::string listed;
    while (Dunzip(command) == 0)
        listed += std::to_string(info_.index) + info_.szFileName + ' ' + std::to_string(info_.attr) + '|';
    EXPECT_EQ("0a.txt 33|1sub/ 16|2sub/long name \x80?.html 65568|3sub/a.txt 32|", listed);
    EXPECT_EQ(4, command.index) << "whose name is too long for the record";
    EXPECT_EQ(UNZIP_OUT_OF_BOUNDS, Dunzip(command));
    for (const int index : {-1, 5, -2, 0x7fffffff, 0}) {
        command = With(UnzipCommand(UNZIP_INDEXED), &U::index, index);
        EXPECT_EQ(index == 0 ? UNZIP_DONE : UNZIP_OUT_OF_BOUNDS, Dunzip(command)) << index;
    }
    EXPECT_EQ(5u, info_.oSize);
    EXPECT_EQ(0x3610a686u, info_.crc_32);
    EXPECT_STREQ("06/15/20 12:30:10", info_.szDateTime);
    // What ANSI does not have is listed as a wild card, which finds the member.
    for (const char* pattern : {"\"sub/long name \x80?.html\"", "a.txt"}) {
        const U here = UnzipCommand(UNZIP_COUNT_MATCHING, pattern);
        EXPECT_EQ(1, CountOf(With(here, &U::recurseFlag, 0))) << pattern;
    }
    command = UnzipCommand(UNZIP_NEXT_MATCHING, "A.TXT");
    EXPECT_EQ(UNZIP_DONE, Dunzip(command));
    EXPECT_EQ(0, command.index);
    EXPECT_EQ(UNZIP_OUT_OF_BOUNDS, Dunzip(command));
}

TEST_F(Engine, SeesEveryChange) {
    for (const char* name : {"aa", "bb", "aa"}) {  // of one size, the times put back
        MakeArchive({{name, ""}});
        SetYear(archive_, 2020);
        EXPECT_EQ(UNZIP_DONE, Dunzip(UnzipCommand(UNZIP_NEXT)));
        EXPECT_STREQ(name, info_.szFileName);
    }
}

TEST_F(Engine, ExtractsWithAndWithoutFolders) {
    MakeArchive({{"sub/deep/", "", 16}, {"sub/\u20ac.txt", "euro"}, {"b.txt", "", 33}, {"c", "four"}});
    std::string minor, major;
    U told = UnzipCommand(UNZIP_EXTRACT);
    told.lpMinorStatus = told.lpMajorStatus = Record;
    told.lpMinorUserData = &minor;
    told.lpMajorUserData = &major;
    EXPECT_EQ(UNZIP_DONE, Dunzip(told));
    EXPECT_EQ("deep|\u20ac.txt|", Names(out_ + "\\sub"));
    EXPECT_EQ(::GetFileAttributesA((out_ + "\\b.txt").c_str()), DWORD{33});
    EXPECT_EQ(minor, "sub/\x80.txt:100 b.txt:100 c:100 ");
    EXPECT_EQ(major, "sub/\x80.txt:50 b.txt:50 c:100 ");
    EXPECT_EQ(UNZIP_SKIPPED, Extract("*", {&U::noDirectoryNamesFlag}));  // b.txt is there
    EXPECT_EQ("b.txt|c|sub|\u20ac.txt|", Names(out_));
}

TEST_F(Engine, ReplacesFilesOnlyAsTheFlagsSay) {
    MakeArchive({{"a.txt", "archive"}});
    fs::create_directory(out_);
    const std::string file = out_ + "\\a.txt";
    // What the file holds then and the code, where none is there, older ones, of that age, newer ones and
    // those that cannot be written.
    const std::tuple<std::vector<UnzipFlag>, std::uint16_t, const char*> cases[] = {
        {{}, 0, "archive 0|disk 49|disk 49|disk 49|disk 49|"},
        {{&U::overWriteFlag}, 0, "archive 0|archive 0|archive 0|archive 0|disk 28|"},
        {{&U::overWriteFlag}, 1, "archive 0|archive 0|archive 0|archive 0|archive 0|"},
        {{&U::freshenFlag}, 0, "(none) 0|archive 0|disk 0|disk 0|disk 28|"},
        {{&U::updateFlag}, 0, "archive 0|archive 0|disk 0|disk 0|disk 28|"},
        {{&U::updateFlag, &U::overWriteFlag}, 0, "archive 0|archive 0|archive 0|disk 0|disk 28|"}};
    for (const auto& [flags, options, expected] : cases) {
        std::string results;
        for (const int year : {0, 2019, 2020, 2021, -2019}) {
            ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
            ::DeleteFileA(file.c_str());
            if (year != 0) WriteFile(file, "disk", std::abs(year));
            if (year < 0) ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
            const U command = UnzipCommand(UNZIP_EXTRACT, "*", flags);
            const int code = Dunzip(With(command, &U::wUnzipSubOptions, options));
            results += ReadFile(file) + ' ' + std::to_string(code) + '|';
        }
        EXPECT_EQ(expected, results);
    }
    WriteFile(file, "held");
    ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
    const auto held = OpenFile(file, FILE_SHARE_READ);
    const U replacing = UnzipCommand(UNZIP_EXTRACT, "*", {&U::overWriteFlag});
    EXPECT_EQ(UNZIP_CANNOT_CREATE, Dunzip(With(replacing, &U::wUnzipSubOptions, UNZIP_OVERWRITE_READ_ONLY)));
    EXPECT_NE(0U, ::GetFileAttributesA(file.c_str()) & FILE_ATTRIBUTE_READONLY) << "as it was";
    MakeArchive({{"new", ""}, {"newer", ""}});
    EXPECT_EQ(UNZIP_DONE, Extract("*", {&U::freshenFlag}));
    EXPECT_EQ("a.txt|", Names(out_)) << "a file that is not there does not come";
}

TEST_F(Engine, WholePathsMeanThatMemberAloneAndTheUsedPartIsJudged) {
    MakeArchive({{"a.txt", "top"},
                 {"sub/a.txt", "below"},
                 {"./b.txt", "b"},
                 {"/c.txt", "c"},
                 {"\u4e00/d.txt", "d"},
                 {"folder/", ""}});
    EXPECT_EQ(UNZIP_DONE, Extract("a.txt", {&U::noDirectoryNamesFlag}));
    EXPECT_EQ("top", ReadFile(out_ + "\\a.txt"));
    for (const char* name : {"b.txt", "c.txt", "?/d.txt"})
        EXPECT_EQ(UNZIP_DONE, Extract(name, {&U::noDirectoryNamesFlag})) << name;
    EXPECT_EQ("a.txt|b.txt|c.txt|d.txt|", Names(out_));
    std::wstring names;
    EXPECT_EQ(UNZIP_NAME_TAKEN, ExtractMembers({}, names));
    EXPECT_EQ("top", ReadFile(out_ + "\\a.txt")) << "where each is told of, none is lost unseen";
    EXPECT_EQ(UNZIP_DONE, Extract("*", {&U::noDirectoryNamesFlag, &U::overWriteFlag}));
    EXPECT_EQ("below", ReadFile(out_ + "\\a.txt"));
    const std::vector<UnzipFlag> noFolders{&U::noDirectoryItemsFlag};
    for (const auto& [name, count] : {std::pair{"folder", 0}, {"A.TXT", 1}, {"*.txt", 5}})
        EXPECT_EQ(count, CountOf(UnzipCommand(UNZIP_COUNT_MATCHING, name, noFolders))) << name;
    for (const int code : {UNZIP_DONE, UNZIP_NOTHING_TO_DO}) {
        EXPECT_EQ(ZIP_DONE, Dzip(With(ZipCommand(ZIP_DELETE, "a.txt"), &Z::recurseFlag, 1)));
        EXPECT_EQ(code, Extract("sub/a.txt", {&U::testFlag}));
    }
}

TEST_F(Engine, SourcesOfAListHaveAResultEach) {
    WriteFile(Path("new.txt"), "new");
    WriteFile(Path("locked.txt"), "locked", 2021);
    WriteFile(Path("held.txt"), "held", 2021);
    WriteFile(Path("old.txt"), "old", 2019);
    MakeArchive({{"old.txt", "newer"}, {"locked.txt", "former"}, {"held.txt", "former"}});
    const auto held = OpenFile(Path("held.txt"), kShareNothing);
    const auto lock = OpenFile(Path("locked.txt"), kShareNothing);
    const auto wide = [&](const char* name) { return fs::path(Path(name)).wstring(); };
    const std::wstring paths[] = {wide("new.txt"),  wide("old.txt"), wide("locked.txt"),
                                  wide("held.txt"), wide("none"),    wide("A.ZIP")};
    const wchar_t *fresh = paths[0].c_str(), *old = paths[1].c_str(), *locked = paths[2].c_str();
    std::vector<ZIPSOURCE> expected = {{fresh, nullptr, 0},
                                       {fresh, L"in\\\u20ac.txt", 0},
                                       {fresh, L"\u4e00", 16},
                                       {old, L"NEW.txt", 16},
                                       {old, nullptr, 12},
                                       {paths[4].c_str(), nullptr, 18},
                                       {locked, L"Locked.TXT", 11},
                                       {fresh, L"..\\up", 16},
                                       {nullptr, nullptr, 18},
                                       {paths[3].c_str(), nullptr, 11},
                                       {paths[5].c_str(), nullptr, 16}};
    for (const wchar_t* name : {L"1", L"2", L"3", L"4", L"5", L"6"})
        expected.push_back({locked, name, ZIP_READ_FAILED});
    std::vector<ZIPSOURCE> sources = expected;
    for (ZIPSOURCE& source : sources) source.code = -1;
    const ULONGLONG begun = ::GetTickCount64();
    EXPECT_EQ(0, Dynazip::AddFilesToZip(WideArchive().c_str(), sources.data(),
                                        static_cast<int>(sources.size()), 9));
    EXPECT_EQ(ZIP_DONE, Dynazip::LastEngineCode());
    EXPECT_LT(::GetTickCount64() - begun, expected.size() * 1000) << "two seconds are for the whole call";
    for (std::size_t i = 0; i < sources.size(); ++i) EXPECT_EQ(expected[i].code, sources[i].code) << i;
    std::wstring names;
    EXPECT_EQ(UNZIP_DONE, Dynazip::ForEachMember(WideArchive().c_str(), AppendName, &names));
    EXPECT_EQ(L"old.txt|locked.txt|held.txt|new.txt|in/\u20ac.txt|", names);
    // Which functions the engine's own entry point takes, with how many sources; and the code.
    const std::tuple<int, ZIPSOURCE*, int, int> calls[] = {
        {ZIP_FRESHEN, &sources[0], 1, 12}, {ZIP_UPDATE, nullptr, 0, 12},   {ZIP_ADD, &sources[0], 1, 0},
        {ZIP_ADD, nullptr, 1, 16},         {ZIP_ADD, &sources[0], -1, 16}, {ZIP_DELETE, &sources[0], 1, 16}};
    for (const auto& [function, source, count, code] : calls) {
        const Z command = ZipCommand(function, "");
        EXPECT_EQ(code, Call<DzipFilesProc>("DZIP32.DLL", "dzipfiles", &command, source, count)) << function;
    }
}

TEST_F(Engine, MembersAreBroughtOutAsTheClassIsAsked) {
    MakeArchive({{"in/\u4e00.txt", "deep"}, {"a.txt", "a"}, {"b.txt", "b"}});
    const wchar_t* const all[] = {L"b.txt", L"A.TXT", L"B.txt"};  // one of them twice
    // Whom the call tells of, the files that are there then, and what the one that was newer holds.
    const std::tuple<ZipExtraction, const wchar_t*, const char*, const char*> cases[] = {
        {{.names = all, .count = 3, .testsOnly = true}, L"a.txt|b.txt|", "b.txt|", "newer"},
        {{.index = 0}, L"in/\u4e00.txt|", "b.txt|\u4e00.txt|", "newer"},
        {{.names = all, .count = 3, .keepsNewer = true}, L"a.txt|b.txt|", "a.txt|b.txt|\u4e00.txt|", "newer"},
        {{.withFolders = true}, L"in/\u4e00.txt|a.txt|b.txt|", "a.txt|b.txt|in|\u4e00.txt|", "b"}};
    fs::create_directory(out_);
    WriteFile(out_ + "\\b.txt", "newer", 2030);
    for (const auto& [what, told, files, content] : cases) {
        std::wstring names;
        EXPECT_EQ(UNZIP_DONE, ExtractMembers(what, names)) << files;
        EXPECT_EQ(told, names) << files;
        EXPECT_EQ(files, Names(out_));
        EXPECT_EQ(content, ReadFile(out_ + "\\b.txt")) << files;
    }
}

TEST_F(Engine, MembersAreToldInTheirOrderUntilTheCallIsCancelled) {
    std::vector<Member> members;
    for (char c = 'a'; c <= 'z'; ++c) members.push_back({{c}, std::string(c % 7 == 0 ? 100'000 : 100, c)});
    MakeArchive(members);
    std::wstring names;
    EXPECT_EQ(UNZIP_CANCELLED, ExtractMembers({}, names, AppendNamesUpToM));
    EXPECT_EQ(L"a|b|c|d|e|f|g|h|i|j|k|l|m|", names);
}

// They are written in a folder of their own, where nothing else has its name.
TEST_F(Engine, ManyFilesOfOneFolderComeAlone) {
    std::vector<Member> members;
    for (int i = 100; i < 350; ++i) members.push_back({std::to_string(i), "x"});
    MakeArchive(members);
    std::wstring work = fs::path(out_) / "~ql.tmp";
    const std::tuple<const char*, std::function<void()>, long> rows[] = {
        {"nothing", [] {}, UNZIP_CANCELLED},
        {"left by a kill", [&] { fs::create_directory(work); }, UNZIP_CANCELLED},
        {"a file", [&] { PutBytes(work, ""); }, UNZIP_DONE}};
    for (const auto& [before, make, code] : rows) {
        fs::remove_all(out_);
        fs::create_directory(out_);
        make();
        EXPECT_EQ(code, ExtractMembers({}, work, IsHeldAtLast)) << before;
        EXPECT_EQ(code == UNZIP_DONE, fs::exists(work)) << before;
    }
    members.push_back({"~QL.tmp", "a member's name, too"});
    MakeArchive(members);
    fs::remove_all(out_);
    EXPECT_EQ(UNZIP_DONE, Extract());
    EXPECT_EQ("a member's name, too", ReadFile(out_ + "\\~ql.tmp"));
}

TEST_F(Engine, WritesNothingOutsideTheDestination) {
    const std::string good = std::string(251, 'g') + ".txt";  // as long as names can be
    std::vector<Member> members = {{good, "good"}};
    for (const char* name :
         {"../up.txt", "..\\up.txt", "a/../../up.txt", "/root.txt", "C:/drive.txt", "c:up.txt",
          "\\\\server\\share\\a", "nul", "com1.txt", "a.txt:stream", "dot.", "blank ", "a//b", "*.txt"})
        members.insert(members.end() - 1, {name, "evil"});
    MakeArchive(members);
    const std::pair<UnzipFlag, std::string> cases[] = {
        {&U::recurseFlag, good + "|"},
        // The last parts alone are used, and some of them do no harm.
        {&U::noDirectoryNamesFlag, "a|b|drive.txt|" + good + "|root.txt|up.txt|"}};
    for (const auto& [folders, names] : cases) {
        EXPECT_EQ(UNZIP_CANNOT_CREATE, Extract("*", {&U::overWriteFlag, folders}));
        EXPECT_EQ(names, Names(out_));  // the others do not suffer
        EXPECT_EQ("a.zip|out|", Names(folder_));
    }
    EXPECT_EQ("good", BytesOf(L"\\\\?\\" + fs::path(out_ + "\\" + good).wstring()));
    MakeArchive({{"LABEL", "", 8}});
    EXPECT_EQ(UNZIP_VOLUME_LABEL, Extract());
}

TEST_F(Engine, BrokenMembersLeaveWhatIsThereAndSpareTheOthers) {
    MakeArchive({{"bad.txt", "broken"}, {"good.txt", "good"}});
    std::string bytes = ReadFile(archive_);
    bytes[bytes.find("broken")] = 'B';
    WriteFile(archive_, bytes);
    fs::create_directory(out_);
    const std::vector<UnzipFlag> overwrite{&U::overWriteFlag};
    EXPECT_EQ(UNZIP_BAD_CRC, Extract("*", {&U::testFlag}));
    EXPECT_EQ("", Names(out_));
    EXPECT_EQ(UNZIP_BAD_CRC, Extract("*", overwrite));
    EXPECT_EQ("good.txt|", Names(out_));
    WriteFile(out_ + "\\bad.txt", "former");
    EXPECT_EQ(UNZIP_BAD_CRC, Extract("*", overwrite));
    EXPECT_EQ("former", ReadFile(out_ + "\\bad.txt"));
    EXPECT_EQ(UNZIP_CANCELLED,
              Dunzip(With(UnzipCommand(UNZIP_EXTRACT, "good.txt", overwrite), &U::lpMinorStatus, Cancel)));
    EXPECT_EQ("bad.txt|good.txt|", Names(out_));
}

TEST_F(Engine, GoesBetweenMemoryAndArchive) {
    std::string content = std::string(300000, 'm') + "end";
    Z put = ZipCommand(ZIP_MEMORY_TO_FILE, "folder\\memory.bin");
    put.lpMemBlock = content.data();
    put.lMemBlockSize = static_cast<std::int32_t>(content.size());
    std::string told, all = "folder/memory.bin:87 folder/memory.bin:100 ";
    put.lpMinorStatus = Record;
    put.lpMinorUserData = &told;
    for (int times = 0; times < 2; ++times) EXPECT_EQ(ZIP_DONE, Dzip(put));
    EXPECT_EQ(all + all, told);
    EXPECT_EQ(1, Count());
    const std::tuple<int, std::size_t, std::size_t> cases[] = {
        {0, 400000, 300003}, {300000, 10, 3}, {262140, 8, 8}, {300003, 5, 0}, {0x7fffffff, 5, 0}, {5, 0, 0}};
    for (const auto& [offset, size, count] : cases) {
        std::string block(size + 1, '#'), expected = block;
        if (count > 0) expected.replace(0, count, content, static_cast<std::size_t>(offset), count);
        U get = UnzipCommand(UNZIP_FILE_TO_MEMORY, "memory.bin");
        get.lpMemBlock = block.data();
        get.lMemBlockSize = static_cast<std::int32_t>(size);
        get.lStartingOffset = offset;
        EXPECT_EQ(static_cast<int>(count), CountOf(get)) << offset;
        EXPECT_TRUE(block == expected) << offset;
    }
    U get = UnzipCommand(UNZIP_FILE_TO_MEMORY, "memory.bin");
    EXPECT_EQ(0, CountOf(get)) << "no block is enough for nothing";
    EXPECT_EQ(UNZIP_CANCELLED, Dunzip(With(get, &U::lpMinorStatus, Cancel)));
    EXPECT_EQ(UNZIP_BAD_REQUEST, Dunzip(With(get, &U::lMemBlockSize, 1)));
    EXPECT_EQ(UNZIP_NOTHING_TO_DO, Dunzip(UnzipCommand(UNZIP_FILE_TO_MEMORY, "none")));
    get.lpMemBlock = content.data();
    for (const auto field : {&U::lMemBlockSize, &U::lStartingOffset})
        EXPECT_EQ(UNZIP_BAD_REQUEST, Dunzip(With(get, field, -1)));
    const std::tuple<const char*, int, int> puts[] = {{"..\\a", 0, 16}, {"a b", 0, 16}, {"nul", 0, 16},
                                                      {"", 0, 16},      {"a", 1, 16},   {"a", -1, 16},
                                                      {"a", 0, 0}};
    for (const auto& [name, size, code] : puts)
        EXPECT_EQ(code, Dzip(With(ZipCommand(ZIP_MEMORY_TO_FILE, name), &Z::lMemBlockSize, size)))
            << name << size;
}

}  // namespace
