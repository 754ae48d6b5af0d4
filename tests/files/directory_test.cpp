#include "files/directory_iterator.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "bench/host_shell.h"
#include "files/file.h"
#include "tests/support/open_file.h"
#include "tests/support/test_folder.h"

namespace {

using Names = std::set<std::wstring>;

class Directories : public testing::Test {
  protected:
    QLFileName Pattern(const wchar_t* pattern) const { return (folder_ / pattern).c_str(); }

    Names Walk(const wchar_t* pattern) const {
        Names names;
        CDirectoryIterator walk;
        QLFileName entry;
        for (bool more = walk.First(Pattern(pattern), &entry); more; more = walk.Next(&entry)) {
            EXPECT_EQ(Pattern(pattern).GetPath(), entry.GetPath());
            EXPECT_EQ(entry.IsDirectory() != 0, walk.IsDir());
            EXPECT_TRUE(names.insert(entry.GetFileName().str()).second) << entry.GetFileName().data();
        }
        EXPECT_FALSE(walk.IsDir());
        EXPECT_FALSE(walk.Next(&entry));
        return names;
    }

    bool Exists(const wchar_t* name) const { return std::filesystem::exists(folder_ / name); }
    void Delete(const wchar_t* name) const { DeleteDirAndContents((folder_ / name).c_str()); }
    void Make(std::initializer_list<const wchar_t*> directories, const Names& files) const {
        for (const wchar_t* name : directories) std::filesystem::create_directory(folder_ / name);
        for (const std::wstring& name : files) PutBytes(folder_ / name.c_str(), "x");
    }

    TestFolder folder_;
};

TEST_F(Directories, AreWalkedByPatternWithoutTheDots) {
    EXPECT_EQ(Names(), Walk(L"*"));
    Make({L"sub.txt"}, {L"a.txt", L"b.TXT", L".hidden", L"noext", L"sub.txt\\inside.txt"});
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L".hidden", L"noext", L"sub.txt"}), Walk(L"*.*"));
    EXPECT_EQ(Names({L"a.txt", L"b.TXT", L"sub.txt"}), Walk(L"*.txt"));
    EXPECT_EQ(Names({L"a.txt"}), Walk(L"a.txt"));
    EXPECT_EQ(Names(), Walk(L"*.none"));
    EXPECT_EQ(Names({L"inside.txt"}), Walk(L"sub.txt\\*"));
    Make({L"%TEMP%"}, {L"%TEMP%\\a"});
    ::SetEnvironmentVariableW(L"QL_FOLDER", L"%TEMP%");
    EXPECT_EQ(Names({L"a"}), Walk(L"%QL_FOLDER%\\*")) << "a value is not expanded once more";
}

// What reads otherwise as the text of a name: a tail, a reference, blanks and dots at the ends.
TEST_F(Directories, TellNamesAsTheDiskHasThem) {
    const Names odd = {L"rep.doc#1", L"%TEMP%x", L" blank.txt", L"a.b.%TEMP%", L"#.#", L"100%"};
    Make({}, odd);
    Make({}, {L"rep.doc"});
    CDirectoryIterator walk;
    QLFileName entry(L"http://srv/a.htm#tail");
    std::vector<QLFileName> entries;
    for (bool more = walk.First(Pattern(L"*"), &entry); more; more = walk.Next(&entry))
        if (odd.contains(entry.GetFileName().str())) entries.push_back(entry);
    EXPECT_EQ(RWWString(L"#tail"), entry.GetTail());
    EXPECT_EQ(odd.size(), entries.size());
    for (const QLFileName& name : entries) {
        QLFile file;
        EXPECT_TRUE(file.Open(OPEN_READ, name)) << name.GetFileName().data();
        EXPECT_EQ(name.GetPathAndFileName(), file.GetFileName().GetPathAndFileName());
        EXPECT_EQ(RWWString(), file.GetFileName().GetTail());
        EXPECT_TRUE(file.Delete()) << name.GetFileName().data();
    }
    EXPECT_EQ(Names({L"rep.doc"}), Walk(L"*"));
    Make({}, odd);
    Delete(L"");
    EXPECT_FALSE(Exists(L""));
}

TEST_F(Directories, AWalkStartsAnewMovesAndIsNotShared) {
    Make({}, {L"a", L"b"});
    CDirectoryIterator walk;
    QLFileName entry(L"before.txt");
    EXPECT_FALSE(walk.Next(&entry));
    EXPECT_FALSE(walk.IsDir());
    EXPECT_FALSE(walk.First(Pattern(L"none\\*"), &entry));
    EXPECT_EQ(QLFileName(L"before.txt"), entry);
    EXPECT_TRUE(walk.First(Pattern(L"*"), &entry));
    EXPECT_TRUE(walk.First(Pattern(L"*"), nullptr));
    CDirectoryIterator copy(walk);
    EXPECT_FALSE(copy.Next(&entry)) << "a copy has no search";
    CDirectoryIterator moved(std::move(walk));
    EXPECT_TRUE(moved.Next(&entry));
    EXPECT_TRUE(copy.First(Pattern(L"*"), &entry));
    copy = moved;
    EXPECT_FALSE(copy.Next(&entry)) << "assigning ends the search";
    EXPECT_FALSE(moved.Next(&entry)) << "and leaves the other's alone";
}

TEST_F(Directories, AreDeletedWithTheFilesThatCanBeRemovedButNotWithSubdirectories) {
    Make({L"plain", L"full", L"full\\sub"}, {L"plain\\a.txt", L"plain\\b", L"full\\c", L"full\\sub\\d"});
    ::SetFileAttributesW((folder_ / L"plain\\b").c_str(), FILE_ATTRIBUTE_READONLY);
    {
        const std::wstring file = folder_ / L"plain\\a.txt";
        ::SetFileAttributesW(file.c_str(), FILE_ATTRIBUTE_READONLY);
        const auto holder = OpenFile(file, kShareAll);
        Delete(L"plain");
        EXPECT_NE(0U, ::GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_READONLY) << "as it was";
        EXPECT_TRUE(Exists(L"plain\\a.txt"));
        EXPECT_FALSE(Exists(L"plain\\b"));
    }
    Delete(L"plain\\");
    EXPECT_FALSE(Exists(L"plain"));
    Delete(L"full");
    EXPECT_FALSE(Exists(L"full\\c"));
    EXPECT_TRUE(Exists(L"full\\sub\\d"));
    Delete(L"plain");  // missing: nothing to do
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
    Make({L"sub", L"other"}, {L"other\\kept"});
    const std::wstring link = folder_ / L"sub\\folder";
    if (!RunInHostShell(folder_.path().wstring(), L"ln -s ../other sub/folder"))
        ::CreateSymbolicLinkW(link.c_str(), (folder_ / L"other").c_str(), SYMBOLIC_LINK_FLAG_DIRECTORY);
    if (!std::filesystem::exists(link)) GTEST_SKIP() << "no links to be had here";
    Delete(L"sub");
    EXPECT_TRUE(Exists(L"other\\kept"));
}

}  // namespace
