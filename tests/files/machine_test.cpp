#include "files/machine.h"

#include <gtest/gtest.h>

#include <cwchar>

#include "platform/system_text.h"
#include "platform/wait_until.h"
#include "tests/support/private_registry.h"
#include "tests/support/test_folder.h"

namespace {

// The bytes at 60 say where the signature begins.
TEST(Machine, Is32BitExeComparesWideUnits) {
    const TestFolder folder;
    const auto is32Bit = [&](const std::string& offset, const std::string& rest) {
        PutBytes(folder / L"x.exe", std::string(60, 'x') + offset + rest);
        return Is32BitExe((folder / L"x.exe").c_str());
    };
    using std::string_literals::operator""s;
    EXPECT_EQ(1, is32Bit("\x40\0\0\0"s, "P\0E\0\0\0"s));
    EXPECT_EQ(1, is32Bit("\x40\0\0\0"s, "P\0E\0"s)) << "zeros follow the end";
    for (const std::string& rest : {"P\0E\0x\0"s, "PE\0\0L\x1"s}) EXPECT_EQ(0, is32Bit("\x40\0\0\0"s, rest));
    for (const std::string& offset : {"\xff\xff\xff\xff"s, "\x40"s}) EXPECT_EQ(0, is32Bit(offset, ""));
    EXPECT_EQ(0, Is32BitExe((folder / L"none.exe").c_str()));
    EXPECT_EQ(0, Is32BitExe(nullptr));
}

TEST(Machine, AnswersAsTheSystemDoesAndCanWriteToAKeyOfTheMachineOnlyWhenItIsThere) {
    const PrivateRegistry registry;
    EXPECT_FALSE(CanWriteToHKLM());
    PrivateRegistry::Put(kMachine, L"", L"x", 1);
    EXPECT_TRUE(CanWriteToHKLM());
    BOOL emulated = FALSE;
    ::IsWow64Process(::GetCurrentProcess(), &emulated);
    EXPECT_EQ(sizeof(void*) == 8 || emulated, Is64BitWindows());
    EXPECT_EQ(::IsUserAnAdmin() != FALSE, IsAdminUser());
}

TEST(WaitUntil, LooksUntilItIsSoOrTheTimeIsUp) {
    int looks = 0;
    ql::WaitUntil([&looks] { return ++looks == 5; }, std::chrono::minutes(1));
    EXPECT_EQ(5, looks);
    const auto begun = std::chrono::steady_clock::now();
    ql::WaitUntil([] { return false; }, std::chrono::milliseconds(50));
    EXPECT_LE(std::chrono::milliseconds(50), std::chrono::steady_clock::now() - begun);
}

TEST(SystemText, OfAnyLengthComesWhole) {
    for (const DWORD length : {259UL, 260UL, 261UL, 1040UL}) {
        const auto ask = [length](wchar_t* text, DWORD size) {
            if (length < size) std::wmemset(text, L'x', length);
            return length;
        };
        EXPECT_EQ(std::wstring(length, L'x'), ql::SystemText(ask));
    }
}

}  // namespace
