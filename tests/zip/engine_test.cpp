#include <gtest/gtest.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "platform/win32.h"
#include "zip/engine/archive_writer.h"
#include "zip/engine/windows_files.h"
#include "zip/zip_records.h"

namespace {

using namespace ql::zip;

template <class Proc>
Proc EntryPoint(const char* dll, const char* name) {
    const HMODULE module = ::LoadLibraryA(dll);
    return reinterpret_cast<Proc>(reinterpret_cast<void*>(module ? ::GetProcAddress(module, name) : nullptr));
}

int Dzip(ZIPCMDSTRUCT command) {
    static const auto proc = EntryPoint<DzipProc>("DZIP32.DLL", "dzip");
    return proc(&command);
}

int Dunzip(UNZIPCMDSTRUCT& command) {
    static const auto proc = EntryPoint<DunzipProc>("DUNZIP32.DLL", "dunzip");
    return proc(&command);
}

struct Member {
    std::string name, content;
    std::uint32_t attributes = 32;
};

class Engine : public testing::Test {
  protected:
    void SetUp() override {
        char temp[MAX_PATH];
        ::GetTempPathA(MAX_PATH, temp);
        folder_ = std::string(temp) + "ql zip " + std::to_string(::GetCurrentProcessId());
        ::CreateDirectoryA(folder_.c_str(), nullptr);
        archive_ = Path("a.zip");
        out_ = Path("out");
    }
    void TearDown() override { Remove(folder_); }

    std::string Path(const std::string& name) const { return folder_ + "\\" + name; }

    static void Remove(const std::string& folder) {
        for (const std::string& name : Names(folder)) {
            std::string path = folder;
            path.append("\\").append(name);
            ::SetFileAttributesA(path.c_str(), FILE_ATTRIBUTE_NORMAL);
            if (!::DeleteFileA(path.c_str())) Remove(path);
        }
        ::RemoveDirectoryA(folder.c_str());
    }

    static std::set<std::string> Names(const std::string& folder) {
        std::set<std::string> names;
        WIN32_FIND_DATAA found;
        const ql::UniqueFindHandle find(::FindFirstFileA((folder + "\\*").c_str(), &found));
        if (!find) return names;
        do names.insert(found.cFileName);
        while (::FindNextFileA(find.get(), &found));
        names.erase(".");
        names.erase("..");
        return names;
    }

    // Files of the year given, so that older and newer are told apart.
    static void WriteFile(const std::string& path, const std::string& content, int year = 2020) {
        PendingFile file = PendingFile::Replacing(std::wstring(path.begin(), path.end()));
        if (!content.empty())
            file.WriteAt(0, reinterpret_cast<const std::uint8_t*>(content.data()), content.size());
        file.SetTime(ToDosTime({year, 6, 15, 12, 30, 10}));
        file.Commit();
    }

    static std::string ReadFile(const std::string& path) {
        try {
            WindowsInput file(std::wstring(path.begin(), path.end()), Result::kMissing, Result::kCannotOpen);
            const Bytes bytes = ReadBytes(file, 0, static_cast<std::size_t>(file.Size()));
            return std::string(bytes.begin(), bytes.end());
        } catch (const Failure&) {
            return "(none)";
        }
    }

    void MakeArchive(const std::vector<Member>& members) const {
        PendingFile file = PendingFile::Replacing(std::wstring(archive_.begin(), archive_.end()));
        ArchiveWriter writer(file);
        for (const Member& member : members) {
            MemoryInput source(reinterpret_cast<const std::uint8_t*>(member.content.data()),
                               member.content.size());
            writer.Add({member.name, ToDosTime({2020, 6, 15, 12, 30, 10}), member.attributes, 0}, source,
                       [](std::uint64_t) {});
        }
        writer.Finish("");
        file.Commit();
    }

    ZIPCMDSTRUCT ZipCommand(std::int32_t function, const std::string& items) {
        items_ = items;
        ZIPCMDSTRUCT command{};
        command.zipStructSize = sizeof command;
        command.function = function;
        command.lpszZIPFile = archive_.c_str();
        command.lpszItemList = items_.c_str();
        command.compFactor = 5;
        return command;
    }
    std::string Quoted(const std::string& name) const {
        std::string quoted("\"");
        quoted += Path(name);
        quoted += '"';
        return quoted;
    }
    // A file of the folder, by its name alone.
    int Zip(std::int32_t function, const std::string& name) {
        ZIPCMDSTRUCT command = ZipCommand(function, Quoted(name));
        command.noDirectoryNamesFlag = 1;
        return Dzip(command);
    }

    UNZIPCMDSTRUCT UnzipCommand(std::int32_t function, const std::string& pattern = "*") {
        items_ = pattern;
        UNZIPCMDSTRUCT command{};
        command.unzipStructSize = sizeof command;
        command.function = function;
        command.lpszZIPFile = archive_.c_str();
        command.lpszFilespec = items_.c_str();
        command.lpszDestination = out_.c_str();
        command.index = -1;
        command.zInfo = &info_;
        command.recurseFlag = 1;
        return command;
    }
    int Extract(const std::string& pattern = "*", const std::function<void(UNZIPCMDSTRUCT&)>& change = {}) {
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_EXTRACT, pattern);
        if (change) change(command);
        return Dunzip(command);
    }
    int Count() {
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COUNT_ALL);
        return Dunzip(command) == 0 ? command.returnCount : -1;
    }

    std::string folder_, archive_, out_, items_;
    ZIPINFO info_{};
};

int QL_ZIP_CALL Cancel(const char*, int, void*) {
    return 1;
}
int QL_ZIP_CALL Record(const char* item, int percent, void* told) {
    *static_cast<std::string*>(told) += std::string(item) + ":" + std::to_string(percent) + " ";
    return 0;
}

TEST_F(Engine, AddsFreshensUpdatesAndDeletes) {
    WriteFile(Path("old.txt"), "old");
    WriteFile(Path("new one.txt"), "new");
    EXPECT_EQ(Zip(ZIP_FRESHEN, "old.txt"), 13);  // no archive
    EXPECT_EQ(Zip(ZIP_DELETE, "old.txt"), 13);
    EXPECT_EQ(Zip(ZIP_UPDATE, "old.txt"), 0);
    EXPECT_EQ(Zip(ZIP_UPDATE, "old.txt"), 12);
    EXPECT_EQ(Zip(ZIP_FRESHEN, "new one.txt"), 12);
    EXPECT_EQ(Zip(ZIP_ADD, "*.txt"), 0);
    EXPECT_EQ(Count(), 2);
    WriteFile(Path("old.txt"), "newer", 2021);
    EXPECT_EQ(Zip(ZIP_FRESHEN, "*.txt"), 0);
    WriteFile(Path("old.txt"), "older", 2019);
    EXPECT_EQ(Zip(ZIP_UPDATE, "*.txt"), 12);
    EXPECT_EQ(Extract(), 0);
    EXPECT_EQ(ReadFile(out_ + "\\old.txt"), "newer");
    EXPECT_EQ(ReadFile(out_ + "\\new one.txt"), "new");
    EXPECT_EQ(Dzip(ZipCommand(ZIP_DELETE, "\"new one.txt\"")), 0);
    EXPECT_EQ(Dzip(ZipCommand(ZIP_DELETE, "\"new one.txt\"")), 12);
    EXPECT_EQ(Zip(ZIP_ADD, "*"), 0);
    EXPECT_EQ(Count(), 2);  // not the archive itself
    EXPECT_EQ(Dzip(ZipCommand(ZIP_DELETE, "*")), 0);
    EXPECT_EQ(Count(), 0);
    EXPECT_EQ(Names(folder_), (std::set<std::string>{"a.zip", "new one.txt", "old.txt", "out"}));
}

TEST_F(Engine, TakesFoldersAndFiltersAsTheFlagsSay) {
    ::CreateDirectoryA(Path("in").c_str(), nullptr);
    ::CreateDirectoryA(Path("in\\sub").c_str(), nullptr);
    WriteFile(Path("in\\a.txt"), std::string(1000, 'a'));
    WriteFile(Path("in\\b.JPG"), std::string(1000, 'b'));
    WriteFile(Path("in\\hidden.txt"), "h");
    ::SetFileAttributesA(Path("in\\hidden.txt").c_str(), FILE_ATTRIBUTE_HIDDEN);
    WriteFile(Path("in\\sub\\a.txt"), "late", 2022);
    const struct {
        std::vector<std::int32_t ZIPCMDSTRUCT::*> flags;
        std::set<std::string> names;
    } cases[] = {
        {{}, {"a.txt", "b.JPG"}},
        {{&ZIPCMDSTRUCT::includeSysHiddenFlag}, {"a.txt", "b.JPG", "hidden.txt"}},
        {{&ZIPCMDSTRUCT::recurseFlag}, {"a.txt", "b.JPG", "sub/", "sub/a.txt"}},
        {{&ZIPCMDSTRUCT::recurseFlag, &ZIPCMDSTRUCT::noDirectoryEntriesFlag},
         {"a.txt", "b.JPG", "sub/a.txt"}},
        {{&ZIPCMDSTRUCT::includeOnlyFollowingFlag}, {"b.JPG"}},
        {{&ZIPCMDSTRUCT::excludeFollowingFlag}, {"a.txt"}},
        {{&ZIPCMDSTRUCT::recurseFlag, &ZIPCMDSTRUCT::noDirectoryEntriesFlag, &ZIPCMDSTRUCT::afterDateFlag},
         {"sub/a.txt"}},
    };
    for (const auto& c : cases) {
        ::DeleteFileA(archive_.c_str());
        ZIPCMDSTRUCT command = ZipCommand(ZIP_ADD, Quoted("in\\*.*"));
        command.lpszIncludeFollowing = command.lpszExcludeFollowing = "*.jpg x";
        command.lpszDate = "01/01/22";
        for (const auto flag : c.flags) command.*flag = 1;
        EXPECT_EQ(Dzip(command), 0) << &c - cases;
        std::set<std::string> names;
        UNZIPCMDSTRUCT next = UnzipCommand(UNZIP_NEXT);
        while (Dunzip(next) == 0) {
            const std::string name = info_.szFileName;
            names.insert(name.substr(name.find("/in/") + 4));
        }
        EXPECT_EQ(names, c.names) << &c - cases;
    }
    ZIPCMDSTRUCT same = ZipCommand(ZIP_ADD, Quoted("in\\*.*"));
    same.recurseFlag = same.noDirectoryNamesFlag = 1;
    EXPECT_EQ(Dzip(same), 16);  // two files would have one name
}

TEST_F(Engine, StoresTheSuffixesThatAreNotToBePacked) {
    WriteFile(Path("a.txt"), std::string(1000, 'a'));
    WriteFile(Path("b.JPG"), std::string(1000, 'b'));
    ZIPCMDSTRUCT command = ZipCommand(ZIP_ADD, Quoted("*.*"));
    command.noDirectoryNamesFlag = command.dontCompressTheseSuffixesFlag = 1;
    command.lpszStoreSuffixes = ".zip:jpg";
    EXPECT_EQ(Dzip(command), 0);
    UNZIPCMDSTRUCT next = UnzipCommand(UNZIP_NEXT_MATCHING, "*.jpg");
    EXPECT_EQ(Dunzip(next), 0);
    EXPECT_EQ(info_.cSize, 1000u);
    next = UnzipCommand(UNZIP_NEXT_MATCHING, "*.txt");
    EXPECT_EQ(Dunzip(next), 0);
    EXPECT_LT(info_.cSize, 100u);
}

TEST_F(Engine, RefusesWhatItDoesNotOffer) {
    WriteFile(Path("a.txt"), "a");
    const struct {
        int code;
        std::function<void(ZIPCMDSTRUCT&)> change;
    } zips[] = {
        {16, [](ZIPCMDSTRUCT& c) { c.zipStructSize = 187; }},
        {16, [](ZIPCMDSTRUCT& c) { c.encryptFlag = 1; }},
        {16, [](ZIPCMDSTRUCT& c) { c.dosifyFlag = 1; }},
        {16, [](ZIPCMDSTRUCT& c) { c.fixFlag = 1; }},
        {16, [](ZIPCMDSTRUCT& c) { c.compFactor = 10; }},
        {16, [](ZIPCMDSTRUCT& c) { c.compFactor = -1; }},
        {16, [](ZIPCMDSTRUCT& c) { c.function = 6; }},
        {20, [](ZIPCMDSTRUCT& c) { c.wMultiVolControl = 1; }},
        {16,
         [](ZIPCMDSTRUCT& c) {
             c.afterDateFlag = 1;
             c.lpszDate = "13/01/22";
         }},
        {13, [](ZIPCMDSTRUCT& c) { c.lpszZIPFile = nullptr; }},
        {12, [](ZIPCMDSTRUCT& c) { c.lpszItemList = nullptr; }},
        {15, [](ZIPCMDSTRUCT& c) { c.lpszZIPFile = "C:\\no such folder\\a.zip"; }},
        {7, [](ZIPCMDSTRUCT& c) { c.addCommentFlag = 1; }},
    };
    for (const auto& c : zips) {
        ZIPCMDSTRUCT command = ZipCommand(ZIP_ADD, Quoted("a.txt"));
        c.change(command);
        EXPECT_EQ(Dzip(command), c.code) << &c - zips;
    }
    EXPECT_EQ(Zip(ZIP_ADD, "not there"), 18);
    EXPECT_EQ(Zip(ZIP_ADD, "not there*"), 12);
    EXPECT_EQ(Names(folder_), std::set<std::string>{"a.txt"});

    EXPECT_EQ(Extract(), 9);
    WriteFile(archive_, "no archive at all, whatever its name");
    EXPECT_EQ(Extract(), 3);
    EXPECT_EQ(Zip(ZIP_ADD, "a.txt"), 3);
    MakeArchive({{"a.txt", "a"}});
    EXPECT_EQ(Extract("b.txt"), 11);
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.unzipStructSize = 0; }), 47);
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.bLF2CRLFFlag = 1; }), 47);
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.wUnzipSubOptions = 2; }), 47);
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.function = 10; }), 47);
}

TEST_F(Engine, FailuresLeaveTheFormerArchiveByteForByte) {
    WriteFile(Path("a.txt"), "a");
    WriteFile(Path("locked.txt"), "l");
    ASSERT_EQ(Zip(ZIP_ADD, "a.txt"), 0);
    const std::string before = ReadFile(archive_);
    {
        const ql::UniqueFileHandle lock(
            ::CreateFileA(Path("locked.txt").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(Zip(ZIP_ADD, "*.txt"), 11);
    }
    ZIPCMDSTRUCT cancelled = ZipCommand(ZIP_ADD, Quoted("*.txt"));
    cancelled.lpMinorStatus = Cancel;
    EXPECT_EQ(Dzip(cancelled), 9);
    {
        const PendingFile other = PendingFile::Replacing(std::wstring(archive_.begin(), archive_.end()));
        EXPECT_EQ(Zip(ZIP_ADD, "*.txt"), 1);
    }
    {
        const ql::UniqueFileHandle reader(::CreateFileA(archive_.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                        nullptr, OPEN_EXISTING, 0, nullptr));
        EXPECT_EQ(Zip(ZIP_ADD, "*.txt"), 10);
    }
    EXPECT_EQ(ReadFile(archive_), before);
    EXPECT_EQ(Names(folder_), (std::set<std::string>{"a.txt", "a.zip", "locked.txt"}));
}

TEST_F(Engine, CommentsAreKeptAndReplaced) {
    WriteFile(Path("a.txt"), "a");
    ZIPCMDSTRUCT alone = ZipCommand(ZIP_ADD, "");
    alone.addCommentFlag = 1;
    alone.lpszComment = "first";
    EXPECT_EQ(Dzip(alone), 13);
    ASSERT_EQ(Zip(ZIP_ADD, "a.txt"), 0);
    for (const std::string& comment : {std::string("first"), std::string(65535, 'x'), std::string()}) {
        alone = ZipCommand(ZIP_ADD, "");
        alone.addCommentFlag = 1;
        alone.lpszComment = comment.c_str();
        ASSERT_EQ(Dzip(alone), 0);
        ASSERT_EQ(Zip(ZIP_ADD, "a.txt"), 0);
        UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_COMMENT_SIZE);
        ASSERT_EQ(Dunzip(command), 0);
        ASSERT_EQ(command.returnCount, static_cast<int>(comment.size()));
        std::string read(comment.size() + 2, '#');
        command.function = UNZIP_COMMENT;
        command.lpszReturnString = read.data();
        ASSERT_EQ(Dunzip(command), 0);
        EXPECT_EQ(read, comment + std::string("\0#", 2));
    }
    const std::string tooLong(65536, 'x');
    alone.lpszComment = tooLong.c_str();
    EXPECT_EQ(Dzip(alone), 7);
    EXPECT_EQ(Count(), 1);
}

TEST_F(Engine, ListsMembers) {
    MakeArchive({{"a.txt", "hello", 33},
                 {"sub/", "", 16},
                 {"sub/long name \u20ac\u4e00.html", ""},
                 {"sub/a.txt", "x"}});
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_NEXT);
    const char* names[] = {"a.txt", "sub/", "sub/long name \x80?.html", "sub/a.txt"};
    const std::uint32_t attributes[] = {33, 16, 32 | ZIPINFO_LONG_NAME, 32};
    for (int i = 0; i < 4; ++i) {
        ASSERT_EQ(Dunzip(command), 0);
        EXPECT_EQ(command.index, i);
        EXPECT_EQ(info_.index, i);
        EXPECT_STREQ(info_.szFileName, names[i]);
        EXPECT_EQ(info_.attr, attributes[i]);
    }
    EXPECT_EQ(Dunzip(command), 25);

    command = UnzipCommand(UNZIP_INDEXED);
    command.index = 0;
    ASSERT_EQ(Dunzip(command), 0);
    EXPECT_EQ(info_.oSize, 5u);
    EXPECT_EQ(info_.crc_32, 0x3610a686u);
    EXPECT_STREQ(info_.szDateTime, "06/15/20 12:30:10");
    for (int index : {-1, 4, -2, 0x7fffffff}) {
        command.index = index;
        EXPECT_EQ(Dunzip(command), 25) << index;
    }
    // What ANSI does not have is listed as a wild card, which finds the member.
    command = UnzipCommand(UNZIP_COUNT_MATCHING, "\"sub/long name \x80?.html\"");
    command.recurseFlag = 0;
    EXPECT_EQ(Dunzip(command), 0);
    EXPECT_EQ(command.returnCount, 1);
    command = UnzipCommand(UNZIP_NEXT_MATCHING, "A.TXT");
    EXPECT_EQ(Dunzip(command), 0);
    EXPECT_EQ(Dunzip(command), 0);
    EXPECT_EQ(command.index, 3);
    EXPECT_EQ(Dunzip(command), 25);
}

TEST_F(Engine, WalksTheLargestArchiveAndSeesEveryChange) {
    std::vector<Member> members;
    members.reserve(65535);
    for (int i = 0; i < 65535; ++i) members.push_back({std::to_string(i) + ".txt", ""});
    MakeArchive(members);
    EXPECT_EQ(Count(), 65535);
    UNZIPCMDSTRUCT command = UnzipCommand(UNZIP_NEXT);
    command.index = 65000;
    int walked = 0;
    while (Dunzip(command) == 0) ++walked;
    EXPECT_EQ(walked, 534);
    EXPECT_STREQ(info_.szFileName, "65534.txt");
    WriteFile(Path("one more.txt"), "");
    EXPECT_EQ(Zip(ZIP_ADD, "one more.txt"), 17);
    for (const char* name : {"aa", "bb"}) {
        MakeArchive({{name, ""}});
        command = UnzipCommand(UNZIP_NEXT);
        EXPECT_EQ(Dunzip(command), 0);
        EXPECT_STREQ(info_.szFileName, name);
    }
}

TEST_F(Engine, ExtractsWithAndWithoutFolders) {
    MakeArchive({{"sub/deep/", "", 16}, {"sub/\u20ac.txt", "euro"}, {"b.txt", "", 33}});
    std::string minor, major;
    EXPECT_EQ(Extract("*",
                      [&](UNZIPCMDSTRUCT& c) {
                          c.lpMinorStatus = c.lpMajorStatus = Record;
                          c.lpMinorUserData = &minor;
                          c.lpMajorUserData = &major;
                      }),
              0);
    EXPECT_EQ(Names(out_ + "\\sub"), (std::set<std::string>{"deep", "\x80.txt"}));
    EXPECT_EQ(::GetFileAttributesA((out_ + "\\b.txt").c_str()), DWORD{33});
    EXPECT_EQ(minor, "sub/\x80.txt:100 b.txt:100 ");
    EXPECT_EQ(major, minor);
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.noDirectoryNamesFlag = 1; }), 49);  // b.txt is there
    EXPECT_EQ(Names(out_), (std::set<std::string>{"sub", "b.txt", "\x80.txt"}));
}

TEST_F(Engine, ReplacesFilesOnlyAsTheFlagsSay) {
    MakeArchive({{"a.txt", "archive"}});
    ::CreateDirectoryA(out_.c_str(), nullptr);
    const auto plain = [](UNZIPCMDSTRUCT&) {};
    const auto overwrite = [](UNZIPCMDSTRUCT& c) { c.overWriteFlag = 1; };
    const auto freshen = [](UNZIPCMDSTRUCT& c) { c.freshenFlag = 1; };
    const auto update = [](UNZIPCMDSTRUCT& c) { c.updateFlag = 1; };
    const auto even = [](UNZIPCMDSTRUCT& c) {
        c.overWriteFlag = 1;
        c.wUnzipSubOptions = UNZIP_OVERWRITE_READ_ONLY;
    };
    const struct {
        int year;  // of the file that is there; 0 none
        bool readOnly;
        std::function<void(UNZIPCMDSTRUCT&)> flags;
        int code;
        const char* content;
    } cases[] = {
        {0, false, plain, 0, "archive"},        {2019, false, plain, 49, "disk"},
        {2021, false, overwrite, 0, "archive"}, {0, false, freshen, 0, "(none)"},
        {2019, false, freshen, 0, "archive"},   {2021, false, freshen, 0, "disk"},
        {0, false, update, 0, "archive"},       {2019, false, update, 0, "archive"},
        {2021, false, update, 0, "disk"},       {2021, true, overwrite, 28, "disk"},
        {2021, true, even, 0, "archive"},
    };
    const std::string file = out_ + "\\a.txt";
    for (const auto& c : cases) {
        ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_NORMAL);
        ::DeleteFileA(file.c_str());
        if (c.year) WriteFile(file, "disk", c.year);
        if (c.readOnly) ::SetFileAttributesA(file.c_str(), FILE_ATTRIBUTE_READONLY);
        EXPECT_EQ(Extract("*", c.flags), c.code) << &c - cases;
        EXPECT_EQ(ReadFile(file), c.content) << &c - cases;
    }
}

TEST_F(Engine, WritesNothingOutsideTheDestination) {
    std::vector<Member> members;
    for (const char* name :
         {"../up.txt", "..\\up.txt", "a/../../up.txt", "/root.txt", "C:/drive.txt", "c:up.txt",
          "\\\\server\\share\\a", "nul", "com1.txt", "a.txt:stream", "dot.", "blank ", "a//b", "*.txt"})
        members.push_back({name, "evil"});
    members.push_back({"good.txt", "good"});
    MakeArchive(members);
    for (int noFolders : {0, 1}) {
        EXPECT_EQ(Extract("*",
                          [&](UNZIPCMDSTRUCT& c) {
                              c.noDirectoryNamesFlag = noFolders;
                              c.overWriteFlag = 1;
                          }),
                  28);
        EXPECT_EQ(Names(out_), std::set<std::string>{"good.txt"});  // the others do not suffer
        EXPECT_EQ(Names(folder_), (std::set<std::string>{"a.zip", "out"}));
    }
    EXPECT_EQ(ReadFile(out_ + "\\good.txt"), "good");
    MakeArchive({{"LABEL", "", 8}});
    EXPECT_EQ(Extract(), 46);
}

TEST_F(Engine, BrokenMembersLeaveWhatIsThereAndSpareTheOthers) {
    MakeArchive({{"bad.txt", "broken"}, {"good.txt", "good"}});
    std::string bytes = ReadFile(archive_);
    bytes[bytes.find("broken")] = 'B';
    WriteFile(archive_, bytes);
    ::CreateDirectoryA(out_.c_str(), nullptr);
    const auto overwrite = [](UNZIPCMDSTRUCT& c) { c.overWriteFlag = 1; };
    EXPECT_EQ(Extract("*", [](UNZIPCMDSTRUCT& c) { c.testFlag = 1; }), 39);
    EXPECT_EQ(Names(out_), std::set<std::string>{});
    EXPECT_EQ(Extract("*", overwrite), 39);
    EXPECT_EQ(Names(out_), std::set<std::string>{"good.txt"});
    WriteFile(out_ + "\\bad.txt", "former");
    EXPECT_EQ(Extract("*", overwrite), 39);
    EXPECT_EQ(ReadFile(out_ + "\\bad.txt"), "former");
    EXPECT_EQ(Extract("good.txt",
                      [](UNZIPCMDSTRUCT& c) {
                          c.overWriteFlag = 1;
                          c.lpMinorStatus = Cancel;
                      }),
              40);
    EXPECT_EQ(Names(out_), (std::set<std::string>{"bad.txt", "good.txt"}));
}

TEST_F(Engine, GoesBetweenMemoryAndArchive) {
    std::string content(300000, 'm');
    content += "end";
    ZIPCMDSTRUCT put = ZipCommand(ZIP_MEMORY_TO_FILE, "folder\\memory.bin");
    put.lpMemBlock = content.data();
    put.lMemBlockSize = static_cast<std::int32_t>(content.size());
    EXPECT_EQ(Dzip(put), 0);
    EXPECT_EQ(Dzip(put), 0);
    EXPECT_EQ(Count(), 1);
    const struct {
        int offset, size, count;
    } cases[] = {{0, 400000, 300003}, {300000, 10, 3},    {262140, 8, 8},
                 {300003, 5, 0},      {0x7fffffff, 5, 0}, {5, 0, 0}};
    for (const auto& c : cases) {
        std::string block(static_cast<std::size_t>(c.size) + 1, '#');
        UNZIPCMDSTRUCT get = UnzipCommand(UNZIP_FILE_TO_MEMORY, "memory.bin");
        get.lpMemBlock = block.data();
        get.lMemBlockSize = c.size;
        get.lStartingOffset = c.offset;
        EXPECT_EQ(Dunzip(get), 0);
        ASSERT_EQ(get.returnCount, c.count) << c.offset;
        const auto count = static_cast<std::size_t>(c.count);
        EXPECT_TRUE(count == 0 ||
                    block.compare(0, count, content, static_cast<std::size_t>(c.offset), count) == 0);
        EXPECT_EQ(block[count], '#') << c.offset;
    }
    for (const char* name : {"..\\a", "a b", "nul", ""}) {
        put = ZipCommand(ZIP_MEMORY_TO_FILE, name);
        EXPECT_EQ(Dzip(put), 16) << name;
    }
}

}  // namespace
