#include "shell/browse_for_folder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <stdexcept>
#include <thread>

#include "platform/win32.h"
#include "tests/support/private_registry.h"
#include "tests/support/start_process.h"
#include "tests/support/test_folder.h"

namespace {

constexpr const wchar_t* kTitle = L"Folder for answers";

// Plays the user, on a thread of its own, while this process or another one shows a dialog. What is still
// open ten seconds after the last act is cancelled, so that a failure does not become a hang.
class User {
  public:
    explicit User(std::function<void(User&)> acts, DWORD process = ::GetCurrentProcessId())
        : process_(process), thread_([this, acts = std::move(acts)] {
              acts(*this);
              for (int waited = 0; !done_; waited += 10, ::Sleep(10))
                  if (waited > 10'000) CancelAll();
          }) {}
    ~User() {
        done_ = true;
        thread_.join();
    }
    User(const User&) = delete;
    User& operator=(const User&) = delete;

    void Type(const wchar_t* text) {
        const HWND edit = Edit();
        ::SendMessageW(edit, EM_SETSEL, 0, -1);
        ::SendMessageW(edit, WM_CLEAR, 0, 0);
        for (; *text; ++text) ::SendMessageW(edit, WM_CHAR, *text, 1);
    }
    std::wstring Typed() { return TextOf(Edit()); }
    void Press(WORD button) { ::PostMessageW(Folder(), WM_COMMAND, button, 0); }
    // For a press that opens no box; one that does would wait for it.
    void PressAndWait(WORD button) {
        EXPECT_NE(0, ::SendMessageTimeoutW(Folder(), WM_COMMAND, button, 0, SMTO_NORMAL, 20'000, nullptr));
    }
    std::wstring Title() { return TextOf(Folder()); }
    // The message of the box that is up, which is closed.
    std::wstring CloseBox() {
        const HWND box = Wait(Dialog::kBox);
        constexpr int kMessageText = 0xFFFF;
        std::wstring text = TextOf(::GetDlgItem(box, kMessageText));
        ::SendMessageW(box, WM_CLOSE, 0, 0);
        while (::IsWindow(box)) ::Sleep(5);
        return text;
    }

  private:
    enum class Dialog { kFolder, kBox };

    static std::wstring TextOf(HWND window) {
        wchar_t text[400] = {};
        ::SendMessageW(window, WM_GETTEXT, 400, reinterpret_cast<LPARAM>(text));
        return text;
    }

    HWND Edit() { return ::FindWindowExW(Folder(), nullptr, L"Edit", nullptr); }
    HWND Folder() { return Wait(Dialog::kFolder); }

    // The process's folder dialog, which has a tree, or its message box, when one is up.
    HWND Open(Dialog wanted) const {
        HWND window = nullptr;
        while ((window = ::FindWindowExW(nullptr, window, L"#32770", nullptr)) != nullptr) {
            DWORD process = 0;
            ::GetWindowThreadProcessId(window, &process);
            const HWND tree = ::FindWindowExW(window, nullptr, L"SysTreeView32", nullptr);
            const Dialog found = tree ? Dialog::kFolder : Dialog::kBox;
            if (process == process_ && found == wanted && ::IsWindowVisible(window)) break;
        }
        return window;
    }

    HWND Wait(Dialog wanted) {
        for (int tries = 0; tries < 2000; ++tries, ::Sleep(10)) {
            if (const HWND window = Open(wanted)) return window;
        }
        ADD_FAILURE() << "the dialog does not come up";
        return nullptr;
    }

    void CancelAll() const {
        for (const Dialog each : {Dialog::kBox, Dialog::kFolder})
            if (const HWND window = Open(each)) ::PostMessageW(window, WM_COMMAND, IDCANCEL, 0);
    }

    DWORD process_;
    std::atomic<bool> done_ = false;
    std::thread thread_;
};

// A folder of the test's own with "inner" in it. Not among those of other tests: Wine's tree does not find a
// folder below one that changes while it is looked for.
class BrowseForFolder : public testing::Test {
  protected:
    BrowseForFolder() { std::filesystem::create_directories(inner_); }

    static std::wstring LongName(const std::wstring& path) {
        wchar_t folder[MAX_PATH];
        ::GetLongPathNameW(path.c_str(), folder, MAX_PATH);
        return folder;
    }

    TestFolder folder_{L"C:\\"};
    const std::wstring outer_ = LongName(folder_.path().wstring());
    const std::wstring inner_ = outer_ + L"\\inner";
};

TEST_F(BrowseForFolder, OkTakesTheNearestFolderAboveTheStartAndCancelLeavesIt) {
    wchar_t documents[MAX_PATH];
    ::SHGetFolderPathW(nullptr, CSIDL_PERSONAL, nullptr, SHGFP_TYPE_CURRENT, documents);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(outer_);
    CBrowseForFolder browser;
    browser.SetTitle(kTitle);
    for (const auto& [start, folder] : {std::pair<std::wstring, std::wstring>(documents, documents),
                                        {L"inner", inner_},
                                        {outer_ + L"\\gone\\deeper\\", outer_}}) {
        browser.SetStartFolder(start);
        const User user([](User& u) {
            EXPECT_EQ(kTitle, u.Title());
            u.Press(IDOK);
        });
        EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
        EXPECT_EQ(RWWString(folder), browser.GetFolder());
    }
    std::filesystem::current_path(before);
    const User user([this](User& u) {
        u.Type(inner_.c_str());
        u.Press(IDCANCEL);
    });
    EXPECT_EQ(CBrowseForFolder::Cancelled, browser.Show());
    EXPECT_EQ(RWWString(outer_), browser.GetFolder());
}

// A host that lets the user pick nothing until it has been asked so many times, and then throws if it is told
// to.
class Reluctant : public CBrowseForFolder {
  public:
    explicit Reluctant(std::size_t refusals, bool throws = false) : refusals_(refusals), throws_(throws) {}
    std::vector<std::wstring> asked;

  protected:
    bool Validate(const RWWString& folder, RWWString& why) override {
        asked.push_back(folder.str());
        if (asked.size() == refusals_) why = L"Not this one.";
        if (throws_ && asked.size() > refusals_) throw std::runtime_error("a host's fault");
        return asked.size() > refusals_;
    }

  private:
    std::size_t refusals_;
    bool throws_;
};

TEST_F(BrowseForFolder, ATypedNameIsTakenWhenItExistsAndTheHostAgrees) {
    const std::wstring gone = outer_ + L"\\gone";
    PutBytes(outer_ + L"\\file", "");
    const std::pair<std::wstring, std::wstring> kCases[] = {
        {inner_, inner_}, {L"  " + inner_ + L"\\ ", inner_}, {L"inner", inner_},
        {L"C:", L"C:\\"}, {L"inner/../inner", inner_},       {L"", outer_}};
    Reluctant browser(std::size(kCases) + 1);
    browser.SetStartFolder(outer_);
    const User user([&](User& u) {
        for (const auto& [text, folder] :
             {std::pair(gone, gone), {L"gone", gone}, {L"file", outer_ + L"\\file"}}) {
            u.Type(text.c_str());
            u.Press(IDOK);
            EXPECT_EQ(L"There is no folder \"" + folder + L"\".", u.CloseBox());
        }
        for (const auto& [typed, folder] : kCases) {
            u.Type(typed.c_str());
            u.PressAndWait(IDOK);
        }
        u.Press(IDOK);
        EXPECT_EQ(L"Not this one.", u.CloseBox());
        u.Type(L"inner");
        u.Press(IDOK);
    });
    EXPECT_EQ(CBrowseForFolder::Chosen, browser.Show());
    EXPECT_EQ(RWWString(inner_), browser.GetFolder());
    ASSERT_EQ(std::size(kCases) + 2, browser.asked.size());
    for (std::size_t i = 0; i < std::size(kCases); ++i) EXPECT_EQ(kCases[i].second, browser.asked[i]);
}

TEST_F(BrowseForFolder, AStartOutOfReachSelectsNothing) {
    Reluctant browser(0);
    browser.SetStartFolder(L"\\\\nowhere\\share\\folder");
    const User user([](User& u) {
        u.Press(IDOK);
        EXPECT_EQ(L"Please select a folder.", u.CloseBox());
        u.Type(L"windows");
        u.Press(IDOK);
        EXPECT_EQ(L"There is no folder \"windows\".", u.CloseBox());
        u.Press(IDCANCEL);
    });
    EXPECT_EQ(CBrowseForFolder::Cancelled, browser.Show());
    EXPECT_EQ(0U, browser.asked.size());
}

TEST_F(BrowseForFolder, AHostThatThrowsMakesItFail) {
    Reluctant browser(0, true);
    browser.SetStartFolder(inner_);
    const User user([](User& u) { u.Press(IDOK); });
    EXPECT_EQ(CBrowseForFolder::Failed, browser.Show());
    EXPECT_TRUE(browser.GetFolder().isNull());
}

TEST_F(BrowseForFolder, TheFolderPickerRemembersTheRecentFolderOfTheKind) {
    const PrivateRegistry registry;
    const SettingsProcess process;
    const SettingsThread thread;
    PrivateRegistry::Put(kUser, L"Locations", L"Answer Files", outer_);
    RWWString folder;
    {
        const User user([](User& u) {
            u.Type(L"inner");
            u.Press(IDOK);
        });
        EXPECT_TRUE(GetFolderPath(nullptr, kTitle, AnswerDirectory, folder));
    }
    EXPECT_EQ(RWWString(inner_), folder);
    EXPECT_EQ(RWWString(inner_), CQlDir::GetRecentDirectory(AnswerDirectory));
    EXPECT_EQ(RWWString(outer_), CQlDir::GetDirectory(AnswerDirectory)) << "the preference stays";
    const User user([](User& u) {
        EXPECT_EQ(L"inner", u.Typed()) << "starts at the recent one";
        u.Type(L"..");
        u.Press(IDCANCEL);
    });
    EXPECT_FALSE(GetFolderPath(nullptr, nullptr, AnswerDirectory, folder));
    EXPECT_EQ(RWWString(inner_), folder);
    EXPECT_EQ(RWWString(inner_), CQlDir::GetRecentDirectory(AnswerDirectory));
}

// The dialog has its older looks there. Its owner is disabled while it is open.
TEST_F(BrowseForFolder, WorksOnAThreadOfAnotherApartment) {
    EXPECT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED));
    const HWND owner =
        ::CreateWindowW(L"Static", L"", WS_OVERLAPPED, 0, 0, 9, 9, nullptr, nullptr, nullptr, nullptr);
    RWWString folder = inner_;
    {
        const User user([owner](User& u) {
            u.Title();  // once it is open
            EXPECT_FALSE(::IsWindowEnabled(owner));
            u.Press(IDOK);
        });
        EXPECT_TRUE(GetDirName(owner, nullptr, folder));
    }
    EXPECT_EQ(RWWString(inner_), folder);
    ::DestroyWindow(owner);
    ::CoUninitialize();
}

// What qlutil prints and its exit status, when the user acts in the dialog that it shows.
TEST_F(BrowseForFolder, QlutilPrintsTheFolderThatTheUserPicks) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const std::wstring answer = outer_ + L"\\answer";
    ql::UniqueFileHandle file(
        ::CreateFileW(answer.c_str(), GENERIC_WRITE, 0, &inherited, CREATE_ALWAYS, 0, nullptr));
    const auto program = StartProcess(
        L"qlutil.exe pick-folder --title \"Folder for answers\" --start \"" + outer_ + L'"', file.get());
    ASSERT_TRUE(program);
    {
        const User user(
            [](User& u) {
                EXPECT_EQ(kTitle, u.Title());
                u.Type(L"inner");
                u.Press(IDOK);
            },
            ::GetProcessId(program.get()));
        EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(program.get(), 60'000));
    }
    DWORD status = 1;
    EXPECT_TRUE(::GetExitCodeProcess(program.get(), &status));
    EXPECT_EQ(0U, status);
    file.reset();
    EXPECT_EQ("folder  " + std::string(inner_.begin(), inner_.end()) + "\n", BytesOf(answer));
}

}  // namespace
