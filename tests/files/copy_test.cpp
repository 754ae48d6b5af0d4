#include "files/file_copy.h"

#include <gtest/gtest.h>

#include "files/backup.h"
#include "tests/support/other_process.h"
#include "tests/support/test_folder.h"

namespace {

class Copies : public testing::Test {
  protected:
    int Copy(const wchar_t* destination, const wchar_t* source, int keepTimes = 0) {
        error_ = kUntouched;
        return MakeFileCopy((folder_ / destination).c_str(), (folder_ / source).c_str(), keepTimes, error_);
    }
    static constexpr unsigned long kUntouched = 12345;
    unsigned long error_ = kUntouched;
    TestFolder folder_;
};

TEST_F(Copies, HoldEveryByte) {
    for (const std::size_t size : {0U, 1U, 1024U, (1U << 16), (1U << 16) + 1, 3'000'001U}) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 1024);
        PutBytes(folder_ / L"a", bytes);
        for (const char* former : {"", "something longer"}) {
            PutBytes(folder_ / L"b", former);
            EXPECT_EQ(1, Copy(L"b", L"a"));
            EXPECT_TRUE(bytes == BytesOf(folder_ / L"b")) << size;
        }
    }
    EXPECT_EQ(kUntouched, error_);
}

TEST_F(Copies, KeepTheTimesWhenAskedTo) {
    const auto writtenAt = [&](const wchar_t* name) {
        WIN32_FILE_ATTRIBUTE_DATA data = {};
        EXPECT_TRUE(::GetFileAttributesExW((folder_ / name).c_str(), GetFileExInfoStandard, &data));
        return std::pair(data.ftLastWriteTime.dwHighDateTime, data.ftLastWriteTime.dwLowDateTime);
    };
    PutBytes(folder_ / L"a", "x");
    ::Sleep(50);
    EXPECT_EQ(1, Copy(L"b", L"a", 1));
    EXPECT_EQ(writtenAt(L"a"), writtenAt(L"b"));
    EXPECT_EQ(1, Copy(L"c", L"a", 0));
    EXPECT_NE(writtenAt(L"a"), writtenAt(L"c"));
    EXPECT_EQ(0, Copy(L"b", L"none", 0));
    EXPECT_EQ(kUntouched, error_);
}

TEST_F(Copies, LoseNothingWhenTheyFail) {
    PutBytes(folder_ / L"a", "the source");
    PutBytes(folder_ / L"b", "the destination");
    ASSERT_TRUE(::CreateHardLinkW((folder_ / L"link").c_str(), (folder_ / L"a").c_str(), nullptr));
    for (const wchar_t* self : {L"a", L"A", L".\\a", L"link"}) EXPECT_EQ(0, Copy(self, L"a"));
    EXPECT_EQ(0, Copy(L"none\\b", L"a"));
    EXPECT_EQ(0, Copy(L"b", L"."));
    {
        const OtherProcess holder(folder_ / L"a", L"0");
        EXPECT_EQ(0, Copy(L"b", L"a"));
        EXPECT_EQ(0, Copy(L"b", L"a", 1));
        EXPECT_EQ(static_cast<unsigned long>(ERROR_SHARING_VIOLATION), error_);
    }
    {
        const OtherProcess holder(folder_ / L"b", L"1");
        EXPECT_EQ(0, Copy(L"b", L"a"));
        const OtherProcess sourceHolder(folder_ / L"a", L"1");
        EXPECT_EQ(1, Copy(L"c", L"a", 1)) << "others may read both";
    }
    EXPECT_FALSE(MakeFileCopy(nullptr, (folder_ / L"a").c_str(), 0, error_) ||
                 MakeFileCopy((folder_ / L"b").c_str(), nullptr, 1, error_));
    EXPECT_EQ("the source", BytesOf(folder_ / L"a"));
    EXPECT_EQ("the destination", BytesOf(folder_ / L"b"));
}

using Backups = Copies;

TEST_F(Backups, MoveFromTheFirstLevelToTheSecond) {
    const wchar_t* const cases[][3] = {{L"Letter.docx", L"Letter.~docx1", L"Letter.~docx2"},
                                       {L"Letter", L"Letter.~1", L"Letter.~2"},
                                       {L"Letter.old.rtf", L"Letter.old.~rtf1", L"Letter.old.~rtf2"}};
    for (const auto& [name, first, second] : cases) {
        wchar_t message[64] = L"untouched";
        for (const char* contents : {"one", "two", "three"}) {
            PutBytes(folder_ / name, contents);
            EXPECT_TRUE(BackupFile(QLFileName((folder_ / name).c_str()), message, 64));
        }
        EXPECT_EQ("three", BytesOf(folder_ / name));
        EXPECT_EQ("three", BytesOf(folder_ / first));
        EXPECT_EQ("two", BytesOf(folder_ / second));
        EXPECT_STREQ(L"untouched", message);
    }
}

TEST_F(Backups, SayWhichLevelFailedAndKeepTheRest) {
    const QLFileName file((folder_ / L"a.txt").c_str());
    wchar_t message[64] = L"";
    PutBytes(folder_ / L"a.txt", "now");
    PutBytes(folder_ / L"a.~txt1", "before");
    {
        const OtherProcess holder(folder_ / L"a.~txt1", L"1");  // can be read, not replaced
        EXPECT_FALSE(BackupFile(file, message, 8));
        EXPECT_STREQ(L"Unable ", message);
    }
    EXPECT_EQ("before", BytesOf(folder_ / L"a.~txt2"));
    std::filesystem::remove(folder_ / L"a.~txt2");
    std::filesystem::create_directory(folder_ / L"a.~txt2");
    EXPECT_FALSE(BackupFile(file, message, 64));
    EXPECT_STREQ(L"Unable to do second-level backup.", message);
    EXPECT_FALSE(BackupFile(file, nullptr, 64) || BackupFile(file, message, 0) ||
                 BackupFile(file, message, -1));
    EXPECT_EQ("now", BytesOf(folder_ / L"a.txt"));
    EXPECT_EQ("before", BytesOf(folder_ / L"a.~txt1"));
}

}  // namespace
