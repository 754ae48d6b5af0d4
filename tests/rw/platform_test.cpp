#include <gtest/gtest.h>

#include <utility>

#include "platform/message_box.h"
#include "platform/shared_lock.h"
#include "platform/unique_handle.h"
#include "tests/support/on_threads.h"

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

}  // namespace

TEST(Handles, AreClosedOnceByTheirLastOwner) {
    const std::vector<int>& closed = ClosingTraits::closed;
    {
        Handle none, first(1);
        Handle second = std::move(first);
        EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved handle is none
        none = std::move(second);
        EXPECT_EQ(1, none.get());
        ::SetLastError(ERROR_FILE_NOT_FOUND);
    }
    EXPECT_EQ(DWORD{ERROR_FILE_NOT_FOUND}, ::GetLastError());
    Handle handle(0);  // a handle may be 0 where -1 means none
    handle.reset(0);
    EXPECT_EQ(std::vector{1}, closed);
    handle = Handle(2);
    *handle.put() = 3;
    Handle& self = handle;
    handle = std::move(self);
    EXPECT_EQ(3, handle.release());
    handle.reset();
    EXPECT_EQ((std::vector{1, 0, 2}), closed);
}

// Whoever holds a lock gives its turn away amid a change.
TEST(Locks, KeepOthersOut) {
    ql::CriticalSection section;
    ql::SharedLock lock;
    int counted = 0, written = 0, writtenToo = 0;
    OnThreads(20, [&](int thread) {
        for (int i = 0; i < 300; ++i) {
            if (thread < 2) {
                const ql::WriterGuard guard(lock);
                const int before = written;
                written = before + 1;
                ::Sleep(0);
                writtenToo = before + 1;
            } else {
                const ql::ReaderGuard guard(lock);
                ::Sleep(0);
                EXPECT_EQ(written, writtenToo);
            }
            const ql::CriticalSectionGuard guard(section);
            const int before = counted;
            ::Sleep(0);
            counted = before + 1;
        }
    });
    EXPECT_EQ(600, writtenToo);
    EXPECT_EQ(6000, counted);
}

TEST(ErrorBox, IsReplacedAndAnswersTheFormerOne) {
    const ql::ErrorBox system = ql::SetErrorBox(&Remember);
    ASSERT_NE(nullptr, system);
    ql::CheckObject(&g_shown, static_cast<unsigned long>(reinterpret_cast<std::uintptr_t>(&g_shown)));
    EXPECT_EQ(L"", g_shown);
    ql::CheckObject(&g_shown, 0);
    EXPECT_TRUE(g_shown.starts_with(L"Bad Mojo: this pointer is corrupt\nThis is a serious")) << g_shown;
    EXPECT_EQ(&Remember, ql::SetErrorBox(nullptr));
    EXPECT_EQ(system, ql::SetErrorBox(system));
}
