#include "files/directory_iterator.h"

#include <gtest/gtest.h>

#include <set>

#include "tests/files/host_shell.h"
#include "tests/files/other_process.h"
#include "tests/logging/test_folder.h"

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

    TestFolder folder_;
};

using Names = std::set<std::wstring>;

TEST_F(Directories, AreWalkedByPatternWithoutTheDots) {
    EXPECT_EQ(Names(), Walk(L"*"));
    for (const wchar_t* name : {L"a.txt", L"b.TXT", L".hidden", L"noext"}) PutBytes(folder_ / name, "");
    std::filesystem::create_directory(folder_ / L"sub.txt");
    PutBytes(folder_ / L"sub.txt\\inside.txt", "");
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L".hidden", L"noext", L"sub.txt"}), Walk(L"*.*"));
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L"sub.txt"}), Walk(L"*.txt"));
    EXPECT_EQ(Names({L"a.txt"}), Walk(L"a.txt"));
    EXPECT_EQ(Names(), Walk(L"*.none"));
    EXPECT_EQ(Names(), Walk(L"missing\\*"));
    EXPECT_EQ(Names({L"inside.txt"}), Walk(L"sub.txt\\*"));
}

TEST_F(Directories, AWalkStartsAnewAndMovesToAnotherObject) {
    PutBytes(folder_ / L"a", "");
    PutBytes(folder_ / L"b", "");
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
    DeleteDirAndContents(folder_.path().c_str());
    EXPECT_FALSE(std::filesystem::exists(folder_.path()));
}

TEST_F(Directories, EndTheirWalkWhenTheyAreRemovedMeanwhile) {
    std::filesystem::create_directory(folder_ / L"sub");
    for (wchar_t letter = L'a'; letter <= L'z'; ++letter) PutBytes(folder_ / L"sub\\" + letter, "");
    CDirectoryIterator walk;
    QLFileName entry;
    ASSERT_TRUE(walk.First(Pattern(L"sub\\*"), &entry));
    std::error_code ignored;  // the system may keep a directory until its walk ends
    std::filesystem::remove_all(folder_ / L"sub", ignored);
    int more = 0;
    while (walk.Next(&entry)) ++more;
    EXPECT_LE(more, 25);
    std::filesystem::remove_all(folder_ / L"sub");
    EXPECT_FALSE(walk.First(Pattern(L"sub\\*"), &entry));
}

TEST_F(Directories, AreDeletedWithReadOnlyFilesButNotWithSubdirectories) {
    for (const wchar_t* name : {L"plain", L"plain\\..\\full", L"full\\sub"}) {
        std::filesystem::create_directory(folder_ / name);
    }
    for (const wchar_t* name : {L"plain\\a.txt", L"plain\\b", L"full\\c", L"full\\sub\\d"}) {
        PutBytes(folder_ / name, "");
    }
    ::SetFileAttributesW((folder_ / L"plain\\b").c_str(), FILE_ATTRIBUTE_READONLY);
    DeleteDirAndContents((folder_ / L"plain\\").c_str());
    EXPECT_FALSE(Exists(L"plain"));
    DeleteDirAndContents((folder_ / L"full").c_str());
    EXPECT_FALSE(Exists(L"full\\c"));
    EXPECT_TRUE(Exists(L"full\\sub\\d"));
    DeleteDirAndContents((folder_ / L"plain").c_str());  // missing: nothing to do
}

TEST_F(Directories, AFileInUseKeepsItsDirectory) {
    PutBytes(folder_ / L"a", "");
    PutBytes(folder_ / L"b", "");
    {
        const OtherProcess holder(folder_ / L"a", L"3");
        DeleteDirAndContents(folder_.path().c_str());
        EXPECT_TRUE(Exists(L"a"));
        EXPECT_FALSE(Exists(L"b"));
    }
    DeleteDirAndContents(folder_.path().c_str());
    EXPECT_FALSE(std::filesystem::exists(folder_.path()));
}

std::wstring CurrentDirectory() {
    return std::filesystem::current_path().wstring();
}

TEST_F(Directories, TheCurrentOneIsLeftForTheTemporaryOne) {
    const std::wstring before = CurrentDirectory(), sub = folder_ / L"Sub";
    std::filesystem::create_directory(sub);
    std::filesystem::current_path(sub);
    PutBytes(sub + L"\\a", "");
    for (const wchar_t* none : {static_cast<const wchar_t*>(nullptr), L""}) DeleteDirAndContents(none);
    EXPECT_TRUE(Exists(L"Sub\\a")) << "no directory is not the current one";
    DeleteDirAndContents((folder_ / L"SUB").c_str());
    EXPECT_FALSE(Exists(L"Sub"));
    EXPECT_TRUE(std::filesystem::equivalent(CurrentDirectory(), QLGetTempPath().str()));
    std::filesystem::current_path(before);
}

TEST_F(Directories, LinksInThemAreNotFollowed) {
    for (const wchar_t* name : {L"sub", L"files", L"other"})
        std::filesystem::create_directory(folder_ / name);
    PutBytes(folder_ / L"other\\kept", "x");
    PutBytes(folder_ / L"guarded", "x");
    ASSERT_TRUE(
        ::CreateHardLinkW((folder_ / L"files\\hard").c_str(), (folder_ / L"guarded").c_str(), nullptr));
    DeleteDirAndContents((folder_ / L"files").c_str());
    EXPECT_FALSE(Exists(L"files"));
    EXPECT_EQ("x", BytesOf(folder_ / L"guarded"));
    const std::wstring link = folder_ / L"sub\\folder";
    RunInHostShell(folder_.path().wstring(), L"ln -s ../other sub/folder") ||
        ::CreateSymbolicLinkW(link.c_str(), (folder_ / L"other").c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
    if (!std::filesystem::exists(link)) GTEST_SKIP() << "no links to be had here";
    DeleteDirAndContents((folder_ / L"sub").c_str());
    EXPECT_TRUE(Exists(L"other\\kept"));
}

}  // namespace
