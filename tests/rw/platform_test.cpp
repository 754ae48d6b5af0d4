#include <gtest/gtest.h>

#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/critical_section.h"
#include "platform/message_box.h"
#include "platform/module.h"
#include "platform/shell_folders.h"
#include "platform/unique_handle.h"
#include "platform/windows_version.h"

namespace {

struct ClosingTraits {
    using Handle = int;
    static Handle Invalid() noexcept { return -1; }
    static void Close(Handle handle) noexcept {
        closed.push_back(handle);
        ::SetLastError(ERROR_ACCESS_DENIED);
    }
    static inline std::vector<int> closed;
};
using Handle = ql::UniqueHandle<ClosingTraits>;

std::wstring g_shown;

void Remember(const wchar_t* title, const wchar_t* text) {
    g_shown = std::wstring(title) + L": " + text;
}

class Handles : public testing::Test {
  protected:
    void SetUp() override { ClosingTraits::closed.clear(); }
    static const std::vector<int>& Closed() { return ClosingTraits::closed; }
};

}  // namespace

TEST_F(Handles, AreClosedOnceByTheirLastOwner) {
    {
        Handle none;
        Handle first(1);
        Handle second = std::move(first);
        EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved handle is none
        EXPECT_EQ(1, second.get());
        EXPECT_TRUE(Closed().empty());
        none = std::move(second);
    }
    EXPECT_EQ(std::vector{1}, Closed());
}

TEST_F(Handles, AreClosedWhenReplacedButNotByThemselves) {
    Handle handle(0);  // a handle may be 0 where -1 means none
    EXPECT_TRUE(handle);
    handle.reset(0);
    EXPECT_TRUE(Closed().empty());
    handle.reset(2);
    handle = Handle(3);
    *handle.put() = 4;
    EXPECT_EQ((std::vector{0, 2, 3}), Closed());
    Handle& self = handle;
    handle = std::move(self);
    EXPECT_EQ(4, handle.release());
    handle.reset();
    EXPECT_EQ((std::vector{0, 2, 3}), Closed());
}

TEST_F(Handles, LeaveTheLastErrorAloneWhenTheyClose) {
    ::SetLastError(ERROR_FILE_NOT_FOUND);
    Handle(1).reset();
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, ::GetLastError());
}

TEST(CriticalSection, LetsOneThreadInAtATime) {
    ql::CriticalSection section;
    int count = 0;
    std::thread threads[4];
    for (std::thread& thread : threads) {
        thread = std::thread([&] {
            for (int round = 0; round < 5000; ++round) {
                const ql::CriticalSectionGuard guard(section);
                count = count + 1;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(4 * 5000, count);
}

TEST(CriticalSection, IsFreeAgainOnlyAfterTheOutermostGuard) {
    ql::CriticalSection section;
    std::atomic<bool> entered = false;
    std::thread other;
    {
        const ql::CriticalSectionGuard outer(section);
        other = std::thread([&] {
            const ql::CriticalSectionGuard guard(section);
            entered = true;
        });
        [&section]()
            QL_LOCK_ATTRIBUTE(no_thread_safety_analysis) { const ql::CriticalSectionGuard inner(section); }();
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        EXPECT_FALSE(entered);
    }
    other.join();
    EXPECT_TRUE(entered);
}

TEST(ErrorBox, IsReplacedAndAnswersTheFormerOne) {
    const ql::ErrorBox system = ql::SetErrorBox(&Remember);
    ASSERT_NE(nullptr, system);
    ql::ShowErrorBox(L"Title", L"text");
    EXPECT_EQ(L"Title: text", g_shown);
    EXPECT_EQ(&Remember, ql::SetErrorBox(nullptr));
    EXPECT_EQ(system, ql::SetErrorBox(system));
}

TEST(ShellFolders, AreTwoFullPathsWithoutEndingBackslash) {
    const std::wstring personal = ql::PersonalDocumentsFolder();
    const std::wstring shared = ql::PublicDocumentsFolder();
    for (const std::wstring& folder : {personal, shared}) {
        ASSERT_GT(folder.size(), 3u);
        EXPECT_EQ(L":\\", folder.substr(1, 2));
        EXPECT_NE(L'\\', folder.back());
#if defined(_WIN32)
        EXPECT_TRUE(std::filesystem::is_directory(folder));
#endif
    }
    EXPECT_NE(personal, shared);
}

TEST(Module, PathIsThatOfAFile) {
    const std::wstring path = ql::OwnModulePath();
    EXPECT_GT(path.size(), path.find(L'\\') + 1);
#if defined(_WIN32)
    EXPECT_TRUE(std::filesystem::is_regular_file(path));
#endif
}

TEST(WindowsVersion, IsThatOfTheSystemsThatTheLibraryRunsOn) {
    EXPECT_TRUE(ql::IsWindows6OrLater());
}
