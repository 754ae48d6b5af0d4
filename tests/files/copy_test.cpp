#include "files/file_copy.h"

#include <gtest/gtest.h>

#include "files/backup.h"
#include "files/same_file.h"
#include "tests/support/open_file.h"
#include "tests/support/test_folder.h"

namespace {

std::string Bytes(std::size_t size) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(i * 7 + i / 1024);
    return bytes;
}

class Copies : public testing::Test {
  protected:
    static constexpr unsigned long kUntouched = 12345;

    bool Copy(const std::wstring& destination, const std::wstring& source, bool keepTimes = false) {
        error_ = kUntouched;
        return MakeFileCopy(destination.c_str(), source.c_str(), keepTimes, error_) != 0;
    }

    TestFolder folder_;
    const std::wstring a_ = folder_ / L"a", b_ = folder_ / L"b";
    unsigned long error_ = kUntouched;
};

TEST_F(Copies, HoldEveryByteAndNoOther) {
    for (const std::size_t size : {0U, 1U, (1U << 16), (1U << 16) + 1, 3'000'001U}) {
        for (const std::size_t formerSize : {0U, 1000U, (1U << 16) + 1, 3'000'002U}) {
            PutBytes(a_, Bytes(size));
            PutBytes(b_, std::string(formerSize, 'f'));
            EXPECT_TRUE(Copy(b_, a_));
            EXPECT_TRUE(Bytes(size) == BytesOf(b_)) << size << " over " << formerSize;
        }
    }
    EXPECT_EQ(kUntouched, error_);
}

TEST_F(Copies, KeepTheTimesWhenAskedTo) {
    PutBytes(a_, "x");
    const auto written = std::filesystem::last_write_time(a_) - std::chrono::hours(9);
    std::filesystem::last_write_time(a_, written);
    EXPECT_TRUE(Copy(b_, a_, true));
    EXPECT_TRUE(Copy(folder_ / L"c", a_));
    EXPECT_EQ(written, std::filesystem::last_write_time(b_));
    EXPECT_LT(written, std::filesystem::last_write_time(folder_ / L"c"));
}

TEST_F(Copies, GoToDevicesAndComeFromThem) {
    PutBytes(a_, "x");
    PutBytes(b_, "former");
    EXPECT_TRUE(Copy(L"NUL", a_));
    EXPECT_TRUE(Copy(b_, L"NUL"));
    EXPECT_EQ("", BytesOf(b_));
    QL_SKIP_WITHOUT_FULL_DEVICE();
    EXPECT_FALSE(Copy(kFullDevice, a_));
    EXPECT_EQ(DWORD{ERROR_DISK_FULL}, ::GetLastError());
}

TEST_F(Copies, LoseNothingWhenTheyFailAndSayWhy) {
    PutBytes(a_, "the source");
    PutBytes(b_, "the destination");
    ASSERT_TRUE(::CreateHardLinkW((folder_ / L"link").c_str(), a_.c_str(), nullptr));
    const auto expectFailure = [&](const wchar_t* destination, const wchar_t* source, DWORD reason,
                                   unsigned long told = kUntouched) {
        for (const bool keepTimes : {false, true}) {
            EXPECT_FALSE(Copy(folder_ / destination, folder_ / source, keepTimes));
            EXPECT_EQ(reason, ::GetLastError()) << destination << " from " << source;
            EXPECT_EQ(keepTimes ? told : kUntouched, error_) << destination << " from " << source;
        }
    };
    for (const wchar_t* self : {L"a", L"A", L".\\a", L"link"})
        expectFailure(self, L"a", ERROR_INVALID_PARAMETER);
    expectFailure(L"none\\b", L"a", ERROR_PATH_NOT_FOUND);
    expectFailure(L"b", L"none", ERROR_FILE_NOT_FOUND, ERROR_FILE_NOT_FOUND);
    expectFailure(L"b", L".", ERROR_ACCESS_DENIED, ERROR_ACCESS_DENIED);
    {
        const auto holder = OpenFile(a_, kShareNothing);
        expectFailure(L"b", L"a", ERROR_SHARING_VIOLATION, ERROR_SHARING_VIOLATION);
    }
    {
        const auto holder = OpenFile(b_, kShareReading), sourceHolder = OpenFile(a_, kShareReading);
        expectFailure(L"b", L"a", ERROR_SHARING_VIOLATION);
        EXPECT_TRUE(Copy(folder_ / L"c", a_, true)) << "others may read both";
    }
    EXPECT_FALSE(MakeFileCopy(nullptr, a_.c_str(), 0, error_));
    EXPECT_EQ(DWORD{ERROR_INVALID_PARAMETER}, ::GetLastError());
    EXPECT_FALSE(MakeFileCopy(b_.c_str(), nullptr, 1, error_));
    EXPECT_EQ("the source", BytesOf(a_));
    EXPECT_EQ("the destination", BytesOf(b_));
}

// Not every volume numbers its files.
TEST_F(Copies, TellFilesApartByNumberOrByPlace) {
    using ql::Sameness;
    EXPECT_EQ(Sameness::kDifferent, ql::Compare({1, 7}, {2, 7}));
    EXPECT_EQ(Sameness::kUnknown, ql::Compare({1, 0}, {1, 0}));
    PutBytes(a_, "x");
    PutBytes(b_, "x");
    const auto a = OpenFile(a_, kShareReading), b = OpenFile(b_, kShareReading),
               again = OpenFile(folder_ / L"A", kShareReading);
    EXPECT_TRUE(ql::LieAtOnePlace(a.get(), again.get()));
    EXPECT_FALSE(ql::LieAtOnePlace(a.get(), b.get()));
}

// Its size is told as 0.
TEST_F(Copies, GoOnWhereASourceHoldsMoreThanItTells) {
    const std::wstring source = L"Z:\\proc\\version";
    if (BytesOf(source).empty()) GTEST_SKIP() << "no such source here";
    for (const std::size_t formerSize : {0U, 10U, 100'000U}) {
        PutBytes(b_, std::string(formerSize, 'f'));
        EXPECT_TRUE(Copy(b_, source));
        EXPECT_EQ(BytesOf(source), BytesOf(b_)) << formerSize;
    }
}

using Backups = Copies;

TEST_F(Backups, MoveFromTheFirstLevelToTheSecond) {
    const wchar_t* const cases[][3] = {{L"Letter.docx", L"Letter.~docx1", L"Letter.~docx2"},
                                       {L"Letter", L"Letter.~1", L"Letter.~2"},
                                       {L"Letter.old.rtf", L"Letter.old.~rtf1", L"Letter.old.~rtf2"}};
    for (const auto& [file, first, second] : cases) {
        wchar_t message[64] = L"untouched";
        for (const char* contents : {"one", "two", "three"}) {
            PutBytes(folder_ / file, contents);
            ::SetFileAttributesW((folder_ / first).c_str(), FILE_ATTRIBUTE_HIDDEN);
            EXPECT_TRUE(BackupFile(QLFileName((folder_ / file).c_str()), message, 64));
        }
        EXPECT_EQ("three", BytesOf(folder_ / file));
        EXPECT_EQ("three", BytesOf(folder_ / first));
        EXPECT_EQ("two", BytesOf(folder_ / second));
        EXPECT_STREQ(L"untouched", message);
    }
}

TEST_F(Backups, SayWhichLevelFailedAndKeepTheRest) {
    const std::wstring path = folder_ / L"a.txt", first = folder_ / L"a.~txt1", second = folder_ / L"a.~txt2";
    const QLFileName file(path.c_str());
    wchar_t message[64] = L"";
    PutBytes(path, "now");
    PutBytes(first, "before");
    {
        const auto holder = OpenFile(first, kShareReading);
        EXPECT_FALSE(BackupFile(file, message, 8));
        EXPECT_EQ(DWORD{ERROR_SHARING_VIOLATION}, ::GetLastError());
        EXPECT_STREQ(L"Unable ", message);
    }
    EXPECT_EQ("before", BytesOf(second));
    std::filesystem::remove(second);
    std::filesystem::create_directory(second);
    EXPECT_FALSE(BackupFile(file, message, 64));
    EXPECT_STREQ(L"Unable to do second-level backup.", message);
    for (const int noRoom : {0, -1}) EXPECT_FALSE(BackupFile(file, message, noRoom));
    EXPECT_FALSE(BackupFile(file, nullptr, 64));
    EXPECT_EQ("now", BytesOf(path));
    EXPECT_EQ("before", BytesOf(first));
}

}  // namespace
