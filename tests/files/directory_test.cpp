#include "files/directory_iterator.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/support/host_shell.h"
#include "tests/support/other_process.h"
#include "tests/support/test_folder.h"

namespace {

class Directories : public testing::Test {
  protected:
    QLFileName Pattern(const wchar_t* pattern) const { return (folder_ / pattern).c_str(); }

    std::set<std::wstring> Walk(const wchar_t* pattern) const {
        std::set<std::wstring> names;
        CDirectoryIterator walk;
        QLFileName entry;
        for (bool more = walk.First(Pattern(pattern), &entry); more; more = walk.Next(&entry)) {
            EXPECT_EQ(Pattern(pattern).GetPath(), entry.GetPath());
            EXPECT_EQ(entry.IsDirectory() != 0, walk.IsDir());
            EXPECT_TRUE(names.insert(entry.GetFileName().str()).second);
        }
        EXPECT_FALSE(walk.IsDir() || walk.Next(&entry));
        return names;
    }

    bool Exists(const wchar_t* name) const { return std::filesystem::exists(folder_ / name); }
    void Delete(const wchar_t* name) const { DeleteDirAndContents((folder_ / name).c_str()); }
    void Make(std::initializer_list<const wchar_t*> directories,
              std::initializer_list<const wchar_t*> files) const {
        for (const wchar_t* name : directories) std::filesystem::create_directory(folder_ / name);
        for (const wchar_t* name : files) PutBytes(folder_ / name, "x");
    }

    TestFolder folder_;
};

using Names = std::set<std::wstring>;

TEST_F(Directories, AreWalkedByPatternWithoutTheDots) {
    EXPECT_EQ(Names(), Walk(L"*"));
    Make({L"sub.txt"}, {L"a.txt", L"b.TXT", L".hidden", L"noext", L"sub.txt\\inside.txt"});
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L".hidden", L"noext", L"sub.txt"}), Walk(L"*.*"));
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L"sub.txt"}), Walk(L"*.txt"));
    EXPECT_EQ(Names({L"a.txt"}), Walk(L"a.txt"));
    EXPECT_EQ(Names(), Walk(L"*.none"));
    EXPECT_EQ(Names({L"inside.txt"}), Walk(L"sub.txt\\*"));
}

TEST_F(Directories, AWalkStartsAnewAndMovesToAnotherObject) {
    Make({}, {L"a", L"b"});
    CDirectoryIterator walk;
    QLFileName entry(L"before.txt");
    EXPECT_FALSE(walk.Next(&entry) || walk.IsDir());
    EXPECT_FALSE(walk.First(Pattern(L"none\\*"), &entry));
    EXPECT_EQ(QLFileName(L"before.txt"), entry);
    EXPECT_TRUE(walk.First(Pattern(L"*"), &entry) && walk.First(Pattern(L"*"), nullptr));
    CDirectoryIterator moved(std::move(walk));
    EXPECT_TRUE(moved.Next(&entry));
    EXPECT_FALSE(moved.Next(&entry) || walk.Next(&entry));
}

TEST_F(Directories, AreWalkedWholeWhenTheyAreLarge) {
    PutEntries(folder_.path().wstring(), 10'000);
    Names expected;
    for (int i = 0; i < 10'000; ++i) expected.insert(L"entry " + std::to_wstring(i) + L".txt");
    EXPECT_EQ(expected, Walk(L"*.txt"));
    Delete(L"");
    EXPECT_FALSE(Exists(L""));
}

TEST_F(Directories, EndTheirWalkWhenTheyAreRemovedMeanwhile) {
    Make({L"sub"}, {});
    for (wchar_t letter = L'a'; letter <= L'z'; ++letter) PutBytes(folder_ / L"sub\\" + letter, "");
    CDirectoryIterator walk;
    QLFileName entry;
    ASSERT_TRUE(walk.First(Pattern(L"sub\\*"), &entry));
    std::error_code ignored;  // the system may keep a directory until its walk ends
    std::filesystem::remove_all(folder_ / L"sub", ignored);
    for (int more = 0; walk.Next(&entry); ++more) ASSERT_LT(more, 25);
    std::filesystem::remove_all(folder_ / L"sub");
    EXPECT_FALSE(walk.First(Pattern(L"sub\\*"), &entry));
}

TEST_F(Directories, AreDeletedWithReadOnlyFilesButNotWithSubdirectories) {
    Make({L"plain", L"full", L"full\\sub"}, {L"plain\\a.txt", L"plain\\b", L"full\\c", L"full\\sub\\d"});
    ::SetFileAttributesW((folder_ / L"plain\\b").c_str(), FILE_ATTRIBUTE_READONLY);
    Delete(L"plain\\");
    EXPECT_FALSE(Exists(L"plain"));
    Delete(L"full");
    EXPECT_TRUE(!Exists(L"full\\c") && Exists(L"full\\sub\\d"));
    Delete(L"plain");  // missing: nothing to do
}

TEST_F(Directories, AFileInUseKeepsItsDirectory) {
    Make({}, {L"a", L"b"});
    {
        const OtherProcess holder(folder_ / L"a", L"3");
        Delete(L"");
        EXPECT_TRUE(Exists(L"a") && !Exists(L"b"));
    }
    Delete(L"");
    EXPECT_FALSE(Exists(L""));
}

TEST_F(Directories, TheCurrentOneIsLeftForTheTemporaryOne) {
    const std::filesystem::path before = std::filesystem::current_path();
    Make({L"Sub"}, {L"Sub\\a"});
    std::filesystem::current_path(folder_ / L"Sub");
    for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) DeleteDirAndContents(none);
    EXPECT_TRUE(Exists(L"Sub\\a")) << "no directory is not the current one";
    Delete(L"SUB");
    EXPECT_FALSE(Exists(L"Sub"));
    EXPECT_TRUE(std::filesystem::equivalent(L".", QLGetTempPath().str()));
    std::filesystem::current_path(before);
}

TEST_F(Directories, LinksInThemAreNotFollowed) {
    Make({L"sub", L"files", L"other"}, {L"other\\kept", L"guarded"});
    ASSERT_TRUE(
        ::CreateHardLinkW((folder_ / L"files\\hard").c_str(), (folder_ / L"guarded").c_str(), nullptr));
    Delete(L"files");
    EXPECT_FALSE(Exists(L"files"));
    EXPECT_EQ("x", BytesOf(folder_ / L"guarded"));
    const std::wstring link = folder_ / L"sub\\folder";
    RunInHostShell(folder_.path().wstring(), L"ln -s ../other sub/folder") ||
        ::CreateSymbolicLinkW(link.c_str(), (folder_ / L"other").c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
    if (!std::filesystem::exists(link)) GTEST_SKIP() << "no links to be had here";
    Delete(L"sub");
    EXPECT_TRUE(Exists(L"other\\kept"));
}

}  // namespace
