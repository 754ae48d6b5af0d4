#include "shell/browse_for_folder.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "platform/win32.h"
#include "tests/settings/private_registry.h"

namespace {

constexpr const wchar_t* kTitle = L"Folder for answers";

// Windows of the system's dialogs on one thread: the folder dialog, which has a tree, and message boxes.
struct Dialogs {
    HWND folder = nullptr;
    HWND box = nullptr;
};

BOOL CALLBACK Sort(HWND window, LPARAM data) {
    wchar_t name[32] = {};
    ::GetClassNameW(window, name, 32);
    if (std::wstring_view(name) != L"#32770" || !::IsWindowVisible(window)) return TRUE;
    const bool hasTree = ::FindWindowExW(window, nullptr, L"SysTreeView32", nullptr) != nullptr;
    auto& dialogs = *reinterpret_cast<Dialogs*>(data);
    (hasTree ? dialogs.folder : dialogs.box) = window;
    return TRUE;
}

// Plays the user, on a thread of its own, while the test's thread shows a dialog.
class User {
  public:
    explicit User(std::function<void(User&)> acts)
        : screen_(::GetCurrentThreadId()), thread_([this, acts = std::move(acts)] { acts(*this); }) {}
    ~User() { thread_.join(); }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    void Type(const wchar_t* text) {
        const HWND edit = ::FindWindowExW(Folder(), nullptr, L"Edit", nullptr);
        ::SendMessageW(edit, EM_SETSEL, 0, -1);
        ::SendMessageW(edit, WM_CLEAR, 0, 0);
        for (; *text; ++text) ::SendMessageW(edit, WM_CHAR, *text, 1);
    }
    void Press(WORD button) { ::PostMessageW(Folder(), WM_COMMAND, button, 0); }
    std::wstring Title() {
        wchar_t title[100] = {};
        ::GetWindowTextW(Folder(), title, 100);
        return title;
    }
    // The message of the box that is up, which is closed.
    std::wstring CloseBox() {
        const HWND box = Wait(&Dialogs::box);
        constexpr int kMessageText = 0xFFFF;
        wchar_t text[400] = {};
        ::GetDlgItemTextW(box, kMessageText, text, 400);
        ::SendMessageW(box, WM_CLOSE, 0, 0);
        while (::IsWindow(box)) ::Sleep(5);
        return text;
    }

  private:
    HWND Folder() { return Wait(&Dialogs::folder); }

    HWND Wait(HWND Dialogs::*wanted) {
        for (int tries = 0; tries < 2000; ++tries, ::Sleep(10)) {
            Dialogs dialogs;
            ::EnumThreadWindows(screen_, &Sort, reinterpret_cast<LPARAM>(&dialogs));
            if (dialogs.*wanted) return dialogs.*wanted;
        }
        ADD_FAILURE() << "the dialog does not come up";
        return nullptr;
    }

    DWORD screen_;
    std::thread thread_;
};

// A folder of the test's own, "outer", with "inner" in it.
class BrowseForFolder : public testing::Test {
  protected:
    BrowseForFolder() {
        wchar_t folder[MAX_PATH];
        ::GetTempPathW(MAX_PATH, folder);
        outer_ = folder + (L"ql" + std::to_wstring(::GetCurrentProcessId()));
        inner_ = outer_ + L"\\inner";
        EXPECT_TRUE(::CreateDirectoryW(outer_.c_str(), nullptr));
        EXPECT_TRUE(::CreateDirectoryW(inner_.c_str(), nullptr));
        wchar_t longName[MAX_PATH];
        ::GetLongPathNameW(outer_.c_str(), longName, MAX_PATH);
        outer_ = longName;
        inner_ = outer_ + L"\\inner";
    }
    ~BrowseForFolder() override {
        ::RemoveDirectoryW(inner_.c_str());
        ::RemoveDirectoryW(outer_.c_str());
    }

    std::wstring outer_;
    std::wstring inner_;
};

TEST_F(BrowseForFolder, OkTakesTheStartFolderOrTheNearestAboveIt) {
    const struct {
        std::wstring start, folder;
    } kCases[] = {{inner_, inner_}, {outer_ + L"\\gone\\deeper\\", outer_}, {L"C:\\", L"C:\\"}};
    for (const auto& c : kCases) {
        CBrowseForFolder browser;
        browser.SetTitle(kTitle);
        browser.SetStartFolder(c.start);
        const User user([](User& u) {
            EXPECT_EQ(kTitle, u.Title());
            u.Press(IDOK);
        });
        EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
        EXPECT_EQ(RWWString(c.folder), browser.GetFolder());
    }
}

TEST_F(BrowseForFolder, CancelLeavesTheFormerFolder) {
    CBrowseForFolder browser;
    browser.SetStartFolder(inner_);
    {
        const User user([](User& u) { u.Press(IDCANCEL); });
        EXPECT_EQ(CBrowseForFolder::Cancelled, browser.Show());
        EXPECT_EQ(L"", browser.GetFolder());
    }
    {
        const User user([](User& u) { u.Press(IDOK); });
        EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
    }
    const User user([this](User& u) {
        u.Type(outer_.c_str());
        u.Press(IDCANCEL);
    });
    EXPECT_EQ(CBrowseForFolder::Cancelled, browser.Show());
    EXPECT_EQ(RWWString(inner_), browser.GetFolder());
}

TEST_F(BrowseForFolder, ATypedNameIsTakenAndIsBelowTheSelectionWithoutARoot) {
    const struct {
        std::wstring typed, folder;
    } kCases[] = {{inner_, inner_},   {L"  " + inner_ + L"\\ ", inner_},
                  {L"inner", inner_}, {L"inner/../inner", inner_},
                  {L"", outer_},      {L"C:", L"C:\\"}};
    for (const auto& c : kCases) {
        CBrowseForFolder browser;
        browser.SetStartFolder(outer_);
        const User user([&](User& u) {
            u.Type(c.typed.c_str());
            u.Press(IDOK);
        });
        EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
        EXPECT_EQ(RWWString(c.folder), browser.GetFolder()) << c.typed;
    }
}

TEST_F(BrowseForFolder, AFolderThatDoesNotExistIsRefusedAndTheDialogStays) {
    const std::wstring gone = outer_ + L"\\gone";
    CBrowseForFolder browser;
    browser.SetStartFolder(outer_);
    const User user([&](User& u) {
        u.Type(gone.c_str());
        u.Press(IDOK);
        EXPECT_EQ(L"There is no folder \"" + gone + L"\".", u.CloseBox());
        u.Type(L"gone too");
        u.Press(IDOK);
        EXPECT_EQ(L"There is no folder \"" + gone + L" too\".", u.CloseBox());
        u.Type(inner_.c_str());
        u.Press(IDOK);
    });
    EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
    EXPECT_EQ(RWWString(inner_), browser.GetFolder());
}

class InnerOnly : public CBrowseForFolder {
  protected:
    bool Validate(const RWWString& folder, RWWString& why) override {
        why = L"Not this one.";
        return folder.view().ends_with(L"\\inner");
    }
};

TEST_F(BrowseForFolder, TheHostMayRefuseAFolder) {
    InnerOnly browser;
    browser.SetStartFolder(outer_);
    const User user([](User& u) {
        u.Press(IDOK);
        EXPECT_EQ(L"Not this one.", u.CloseBox());
        u.Type(L"inner");
        u.Press(IDOK);
    });
    EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
    EXPECT_EQ(RWWString(inner_), browser.GetFolder());
}

TEST_F(BrowseForFolder, TheFolderPickerRemembersTheRecentFolderOfTheKind) {
    const PrivateRegistry registry;
    const SettingsProcess process;
    const SettingsThread thread;
    PrivateRegistry::Put(kUser, L"Locations", L"Answer Files", outer_);
    RWWString folder = L"before";
    {
        const User user([](User& u) { u.Press(IDCANCEL); });
        EXPECT_FALSE(GetFolderPath(nullptr, kTitle, AnswerDirectory, folder));
        EXPECT_EQ(L"before", folder);
    }
    {
        const User user([](User& u) {
            u.Type(L"inner");
            u.Press(IDOK);
        });
        EXPECT_TRUE(GetFolderPath(nullptr, kTitle, AnswerDirectory, folder));
        EXPECT_EQ(RWWString(inner_), folder);
        EXPECT_EQ(RWWString(inner_), CQlDir::GetRecentDirectory(AnswerDirectory));
        EXPECT_EQ(RWWString(outer_), CQlDir::GetDirectory(AnswerDirectory)) << "the preference stays";
    }
    const User user([](User& u) { u.Press(IDOK); });
    RWWString again = L"before";
    EXPECT_TRUE(GetFolderPath(nullptr, nullptr, AnswerDirectory, again));
    EXPECT_EQ(RWWString(inner_), again) << "starts at the recent one";
}

TEST_F(BrowseForFolder, WorksOnAThreadOfAnotherApartment) {
    const HRESULT started = ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    EXPECT_EQ(S_OK, started);
    RWWString folder = inner_;
    {
        const User user([](User& u) { u.Press(IDOK); });
        EXPECT_TRUE(GetDirName(nullptr, nullptr, folder));
    }
    EXPECT_EQ(RWWString(inner_), folder);
    ::CoUninitialize();
}

}  // namespace
