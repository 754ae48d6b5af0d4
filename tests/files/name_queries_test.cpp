#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <tuple>

#include "files/file_copy.h"
#include "names/file_name.h"
#include "settings/preferences.h"
#include "tests/support/open_file.h"
#include "tests/support/private_registry.h"
#include "tests/support/test_folder.h"

namespace {

using namespace std::string_literals;

QLFileName Name(const std::wstring& path) {
    return path.c_str();
}

class NameQueries : public testing::Test {
  protected:
    std::wstring Put(const wchar_t* name) {
        PutBytes(folder_ / name, "x");
        return folder_ / name;
    }
    TestFolder folder_;
};

TEST_F(NameQueries, AccessIsForRootedLocalNamesAndStatusTellsWhatCouldBeDone) {
    const std::wstring file = Put(L"a.txt"), folder = folder_.path().wstring();
    ::SetFileAttributesW(Put(L"read.txt").c_str(), FILE_ATTRIBUTE_READONLY);
    ASSERT_TRUE(::SetCurrentDirectoryW(folder.c_str()));
    constexpr auto kAny = static_cast<QLFileName::Status>(-1);
    const std::tuple<std::wstring, std::string, QLFileName::Status> cases[] = {
        {file, "open read write exists ", QLFileName::StatusWritable},
        {folder + L"\\read.txt", "open read exists ", QLFileName::StatusReadOnly},
        {folder, "open read write exists folder ", kAny},
        {folder + L"\\", "open read write ", kAny},
        {folder + L"\\.\\a.txt", "open read write exists ", QLFileName::StatusWritable},
        {folder + L"\\..", "open read write exists folder ", kAny},
        {folder + L"\\new", "", QLFileName::StatusCreatable},
        {folder + L"\\none\\a.txt", "", QLFileName::StatusNotCreatable},
        {L"a.txt", "", kAny},
        {L".\\a.txt", "", kAny},
        {L"http://srv/a.txt", "", QLFileName::StatusUnknown},
        {L"", "", kAny}};
    constexpr int kReadAndWrite = QLFileName::ACCESS_READ | QLFileName::ACCESS_WRITE;
    for (const auto& [text, access, status] : cases) {
        const QLFileName name = Name(text);
        const std::string facts = std::string(name.CanAccess(0) ? "open " : "") +
                                  (name.CanAccess(QLFileName::ACCESS_READ) ? "read " : "") +
                                  (name.CanAccess(kReadAndWrite) ? "write " : "") +
                                  (name.Exists() ? "exists " : "") + (name.IsDirectory() ? "folder " : "");
        EXPECT_EQ(access, facts) << testing::PrintToString(text);
        if (status == kAny) continue;
        EXPECT_EQ(status, name.GetStatus()) << testing::PrintToString(text);
    }
    ::SetCurrentDirectoryW(L"C:\\");
    EXPECT_FALSE(std::filesystem::exists(folder_ / L"new"));
    EXPECT_EQ("x", BytesOf(file));
    const auto reader = OpenFile(file, kShareAll);
    EXPECT_EQ(QLFileName::StatusInUse, Name(file).GetStatus()) << "held, if shared in every way";
    EXPECT_TRUE(Name(file).CanAccess(QLFileName::ACCESS_WRITE));
}

// CanAccess puts the system's messages about missing disks back, GetStatus leaves them off.
TEST_F(NameQueries, ChangeTheErrorModeAsTheirHeaderSays) {
    const UINT before = ::SetErrorMode(0);
    Name(folder_ / L"a.txt").CanAccess(0);
    EXPECT_EQ(0U, ::GetErrorMode());
    EXPECT_EQ(0U, ::GetThreadErrorMode());
    Name(folder_ / L"a.txt").GetStatus();
    EXPECT_EQ(UINT{SEM_FAILCRITICALERRORS}, ::SetErrorMode(before));
}

// Each name is made, seen, copied and removed.
TEST_F(NameQueries, HoldForLongAndForeignNames) {
    const std::wstring longFolder = L"\\\\?\\" + folder_.path().wstring() + L'\\' + std::wstring(99, L'd');
    ASSERT_TRUE(::CreateDirectoryW(longFolder.c_str(), nullptr));
    for (const std::wstring& file : {std::wstring(251, L'f'), L"\u00c4\u4e2d \xd83d\xde00 .d\u00f6cx"s}) {
        const std::wstring path = longFolder + L'\\' + file;
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_EQ(QLFileName::StatusCreatable, Name(path).GetStatus());
        PutBytes(path, "x");
        EXPECT_EQ(QLFileName::StatusWritable, Name(path).GetStatus());
        unsigned long error = 0;
        EXPECT_TRUE(MakeFileCopy((path + L"2").c_str(), path.c_str(), 1, error));
        for (const wchar_t* copy : {L"2", L""}) EXPECT_TRUE(::DeleteFileW((path + copy).c_str()));
    }
    EXPECT_TRUE(::RemoveDirectoryW(longFolder.c_str()));
}

TEST_F(NameQueries, ShortNamesComeBackAsTheLongOnes) {
    const std::wstring file = Put(L"A rather long name.document");
    wchar_t expected[MAX_PATH], longName[MAX_PATH];
    ASSERT_NE(0U, ::GetShortPathNameW(file.c_str(), expected, MAX_PATH));
    ASSERT_NE(0U, ::GetLongPathNameW(file.c_str(), longName, MAX_PATH));
    EXPECT_EQ(RWWString(expected), QLGetShortPathName(file));
    EXPECT_EQ(RWWString(expected), Name(file).GetShortVersion());
    EXPECT_EQ(RWWString(longName), QLGetLongPathName(expected));
    EXPECT_EQ(RWWString(longName), Name(expected).GetLongPathAndFileName());
    const std::wstring missing = folder_ / L"Not there at all.document";
    EXPECT_NE(RWWString(missing), QLGetShortPathName(missing)) << "asked by making it for a moment";
    EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder_.path()), {}));
}

TEST_F(NameQueries, OtherFormsFallBackToTheText) {
    const wchar_t* const shortForms[][2] = {{L"//srv/share/a long", L"\\\\srv\\share\\a long"},
                                            {L"sub/a long name", L"sub\\a long name"},
                                            {L"C:/nowhere at all/a.t", L"C:\\nowhere at all\\a.t"},
                                            {L"C:", L"C:"},
                                            {L"C:/", L"C:\\"},
                                            {L"C:\\nowhere at all\\b\\", L"C:\\nowhere at all\\b"},
                                            {L"", L""}};
    for (const auto& [text, form] : shortForms) EXPECT_EQ(RWWString(form), QLGetShortPathName(text));
    EXPECT_EQ(RWWString(L"\\\\srv\\share\\\\"), QLFileName(L"\\\\srv\\share\\a.txt").GetShortPath());
    EXPECT_EQ(RWWString(L"http://srv/a/"), QLFileName(L"http://srv/a/b.txt").GetShortPath());
    EXPECT_EQ(RWWString(L"http://srv/b.htm?x"), QLFileName(L"http://srv/b.htm?x").GetLongPathAndFileName());
    EXPECT_EQ(RWWString(L"mailto:a.b"), QLFileName(L"mailto:a.b").GetLongPathAndFileName());
    for (const std::wstring& path : {L"C:\\nowhere\\a.txt"s, L"C:\\" + std::wstring(5000, L'd') + L"/a"})
        EXPECT_EQ(RWWString(path), QLGetLongPathName(path)) << path.size();
    for (const wchar_t* text : {L"\\\\srv\\share\\a.txt", L"C:\\a.txt", L"sub\\a.txt"})
        EXPECT_EQ(RWWString(text), QLFileName(text).GetUNCPathAndFileName());
}

class TemporaryNames : public NameQueries {
  protected:
    TemporaryNames() : tmp_(::_wgetenv(L"TMP")), temp_(::_wgetenv(L"TEMP")) {}
    ~TemporaryNames() override { Set(tmp_, temp_); }
    static void Set(const std::wstring& tmp, const std::wstring& temp) {
        ::_wputenv_s(L"TMP", tmp.c_str());
        ::_wputenv_s(L"TEMP", temp.c_str());
    }
    std::wstring tmp_, temp_;
};

TEST_F(TemporaryNames, LiveInTheFirstFolderThatCanBeWritten) {
    const PrivateRegistry registry;
    const SettingsProcess process;
    const SettingsThread thread;
    const std::wstring folder = folder_.path().wstring();
    PrivateRegistry::Put(kUser, L"Locations", L"Answer Files", folder);
    for (const auto& [tmp, temp] :
         {std::pair(folder, L"C:\\"), {L"C:\\nowhere", folder.c_str()}, {L"C:\\nowhere", L""}}) {
        Set(tmp, temp);
        EXPECT_EQ(RWWString(folder), QLGetTempPath());
    }
    WriteQLRegString(L"Locations", L"Answer Files", L"C:\\nowhere at all");
    wchar_t windows[MAX_PATH];
    ::GetWindowsDirectoryW(windows, MAX_PATH);
    EXPECT_EQ(RWWString(windows), QLGetTempPath());
}

TEST_F(TemporaryNames, AreFreeAndKeepFolderAndExtension) {
    const std::wstring folder = folder_.path().wstring();
    Set(folder, folder);
    for (const auto& [text, extension] : {std::pair(std::wstring(), L".tmp"),
                                          {L"x.docx", L".docx"},
                                          {folder + L"\\x", L".tmp"},
                                          {folder + L"\\x.", L"."}}) {
        for (const bool create : {false, true}) {
            QLFileName name(text.c_str());
            name.SetTempPathAndFileName(create);
            const std::wstring file = name.GetFileName().str();
            EXPECT_EQ(RWWString(folder + L'\\'), name.GetPath());
            const std::wstring digits = file.substr(5, file.size() - 5 - std::wcslen(extension));
            EXPECT_EQ(L"~ql12" + digits + extension, file);
            EXPECT_EQ(std::wstring::npos, digits.find_first_not_of(L"0123456789")) << digits.c_str();
            EXPECT_EQ(create, ::DeleteFileW(name.GetPathAndFileName().data()) != FALSE)
                << "there, and held by nobody";
        }
    }
    // The numbers come from the program's own generator: seeded alike they hit the same name, which is taken.
    QLFileName first, second;
    std::srand(1);
    first.SetTempFileName(true);
    std::srand(1);
    second.SetTempFileName(true);
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.Exists());
    EXPECT_TRUE(second.Exists());
}

// Whatever the width, of the steps the first that fits: how is held by generated texts and measures.
TEST(FitToWidth, TakesFoldersAwayUntilTheDevicesTextFits) {
    const HDC dc = ::CreateCompatibleDC(nullptr);
    const auto fitted = [&](RWWString text, int width) {
        QLFileName::FitToWidth(dc, text, width);
        return text;
    };
    const RWWString path = L"C:\\Wide\\MMMM\\file.txt", shorter = L"C:\\...\\MMMM\\file.txt";
    SIZE size = {};
    EXPECT_TRUE(::GetTextExtentPoint32W(dc, path.data(), static_cast<int>(path.length()), &size));
    EXPECT_EQ(path, fitted(path, size.cx + 2));
    EXPECT_EQ(shorter, fitted(path, size.cx + 1));
    const wchar_t* const cases[][2] = {
        {L"C:\\f.txt", L"C:\\f.txt"},          {L"one/two/three", L"one/two/three"},
        {L"\\\\srv\\share\\f", L"\\...\\f"},   {L"...\\a\\b\\c", L"...\\...\\b\\c"},
        {L"C:\\...a\\b\\c\\d", L"C:\\...\\d"}, {L"", L""}};
    for (const auto& [whole, shortest] : cases) {
        EXPECT_EQ(shortest, QLFileName(whole).FitToWidth(dc, 0));
        EXPECT_EQ(shortest, fitted(whole, std::numeric_limits<int>::min()));
    }
    EXPECT_EQ(path, QLFileName(path.data()).FitToWidth(nullptr, 0)) << "nothing measures it";
    ::DeleteDC(dc);
}

}  // namespace
