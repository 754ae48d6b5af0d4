// What calls leave on the disk when the heap of the run time refuses one of their allocations: what they
// claim, and no file of another folder is touched.
#include <gtest/gtest.h>

#include <functional>

#include "files/backup.h"
#include "files/directory_iterator.h"
#include "files/file_stream_buf.h"
#include "tests/support/replaced_import.h"
#include "tests/support/test_folder.h"

namespace {

int g_turn = -1;  // of the allocation to refuse, counted down; below 0 for none

void* Allocate(std::size_t size) {
    return g_turn < 0 || g_turn-- > 0 ? std::malloc(size) : nullptr;
}

// Both folders hold a letter; the calls are about the other one's.
TEST(FilesWithoutMemory, TouchNoFileOfTheCurrentFolder) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TestFolder current, other;
    std::filesystem::current_path(current.path());
    const std::wstring folder = other.path().wstring(), ours = current / L"letter.document";
    const std::wstring letter = other / L"letter.document", backup = other / L"letter.~document1";
    const QLFileName name(letter), pattern(other / L"*.document");
    QLFileName entry;
    CFileStreamBuf file;
    // A call, and what it must have answered.
    const std::pair<std::function<bool()>, std::function<bool()>> rows[] = {
        {[&] { return DeleteDirAndContents(folder.c_str()), true; }, [&] { return true; }},
        {[&] { return BackupFile(name, nullptr, 0); }, [&] { return std::filesystem::exists(backup); }},
        {[&] { return CDirectoryIterator().First(pattern, &entry); }, [&] { return entry == name; }},
        {[&] { return file.Open(name, OPEN_WRITE); }, [&] { return file.is_open(); }}};
    ReplaceImport(L"libstdc++-6.dll", L"msvcrt.dll", "malloc", &Allocate);
    for (const auto& [call, isDone] : rows) {
        bool isRefused = true, answer = false;
        int turn = 0;
        for (; isRefused && !HasFailure(); ++turn) {
            std::filesystem::create_directory(folder);
            for (const std::wstring& path : {ours, letter}) PutBytes(path, "x");
            std::filesystem::remove(backup);
            entry.Reset();
            g_turn = turn;
            EXPECT_NO_THROW(answer = call());
            isRefused = std::exchange(g_turn, -1) < 0;
            EXPECT_EQ(isDone(), answer) << "allocation " << turn;
            EXPECT_TRUE(std::filesystem::exists(ours)) << "allocation " << turn;
            file.Close();
        }
        EXPECT_LT(1, turn) << "nothing was refused";
    }
    std::filesystem::current_path(before);
}

}  // namespace
