#include "files/file.h"

#include <gtest/gtest.h>

#include <cstring>
#include <sstream>

#include "files/file_header.h"
#include "files/file_stream_buf.h"
#include "rw/file.h"
#include "rw/virtual_streams.h"
#include "tests/support/open_file.h"
#include "tests/support/test_folder.h"

namespace {

QLFileName Name(const std::wstring& path) {
    return path.c_str();
}

constexpr int kFailed = -1;

// How many bytes were written.
int Writes(QLFile& file, std::string bytes) {
    int done = 0;
    const int count = static_cast<int>(bytes.size());
    return file.Write(reinterpret_cast<unsigned char*>(bytes.data()), count, &done) ? done : kFailed;
}

std::string Reads(QLFile& file, int count) {
    std::string bytes(static_cast<std::size_t>(count), '\0');
    int got = -1;
    if (!file.Read(reinterpret_cast<unsigned char*>(bytes.data()), count, &got)) return "failed";
    bytes.resize(static_cast<std::size_t>(got));
    return bytes;
}

// Below Wine a user who may do everything may write this, too.
bool CanWriteReadOnly(const std::wstring& file) {
    EXPECT_NE(0U, ::GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_READONLY);
    return static_cast<bool>(OpenFile(file, kShareAll, GENERIC_WRITE));
}

class Files : public testing::Test {
  protected:
    TestFolder folder_;
    const std::wstring path_ = folder_ / L"a.bin";
};

TEST_F(Files, CreateKeepsWhatAFileHoldsAndReadsBytesAsTheyAre) {
    const std::string bytes("a\r\nb\x1a\0c", 7);  // what a text mode would change
    QLFile file;
    EXPECT_FALSE(file.Open(OPEN_READ, Name(path_)));
    EXPECT_EQ(Name(path_), file.GetFileName());
    ASSERT_TRUE(file.Create(OPEN_WRITE, Name(path_)));
    EXPECT_EQ(0U, ::GetFileAttributesW(path_.c_str()) & FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(7, Writes(file, bytes));
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ("failed", Reads(file, 1)) << "opened for writing alone";
    EXPECT_TRUE(file.Create(OPEN_READ | OPEN_WRITE, Name(path_)));
    EXPECT_EQ(bytes, Reads(file, 100));
    EXPECT_EQ("", Reads(file, 100)) << "at the end";
    ASSERT_TRUE(file.Open(0, Name(path_)));
    EXPECT_EQ(kFailed, Writes(file, "x")) << "flags 0 read";
    EXPECT_TRUE(file.Flush()) << "nothing to write";
    EXPECT_TRUE(file.Open(OPEN_WRITE, Name(L"NUL")));
    EXPECT_TRUE(file.Flush()) << "no disk below it";
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(bytes, BytesOf(path_));
}

TEST_F(Files, RefuseWhatIsClosedNullOrNegative) {
    QLFile file;
    unsigned char byte = 0;
    int count = 7;
    for (const auto move : {&QLFile::Read, &QLFile::Write}) EXPECT_FALSE((file.*move)(&byte, 1, &count));
    EXPECT_FALSE(file.Flush());
    EXPECT_FALSE(file.Delete());
    EXPECT_EQ(nullptr, static_cast<const void*>(file));
    ASSERT_TRUE(file.Create(OPEN_READ | OPEN_WRITE, Name(path_)));
    EXPECT_NE(nullptr, static_cast<const void*>(file));
    for (const auto move : {&QLFile::Read, &QLFile::Write}) {
        EXPECT_FALSE((file.*move)(nullptr, 1, &count));
        EXPECT_FALSE((file.*move)(&byte, -1, &count));
        EXPECT_FALSE((file.*move)(&byte, 1, nullptr));
    }
    EXPECT_EQ(7, count);
}

TEST_F(Files, CopiesShareThePositionAndCloseOnTheirOwn) {
    PutBytes(path_, "abcd");
    QLFile first;
    ASSERT_TRUE(first.Open(OPEN_READ, Name(path_)));
    QLFile second(first), third;
    third = second;
    EXPECT_EQ("ab", Reads(first, 2));
    first.Close();
    EXPECT_EQ("cd", Reads(third, 2));
    EXPECT_TRUE(second.IsOpen());
    EXPECT_EQ(Name(path_), second.GetFileName());
}

TEST_F(Files, AreCreatedReadOnlyRenamedAndDeleted) {
    QLFile file;
    ASSERT_TRUE(file.Create(OPEN_WRITE | CREATE_READ_ONLY, Name(path_)));
    EXPECT_EQ(1, Writes(file, "x")) << "the file that made it may write";
    EXPECT_EQ(CanWriteReadOnly(path_), file.Open(OPEN_WRITE, Name(path_)) != 0);
    file.Close();
    ::SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
    PutBytes(folder_ / L"taken", "");
    EXPECT_FALSE(file.Rename(Name(folder_ / L"taken"), 1));
    EXPECT_TRUE(file.Rename(Name(folder_ / L"b.bin"), 0));
    EXPECT_FALSE(file.Rename(Name(folder_ / L"c.bin"), 1)) << "the kept name has no file any more";
    EXPECT_EQ(Name(path_), file.GetFileName());
    ASSERT_TRUE(file.Open(OPEN_READ, Name(folder_ / L"b.bin")));
    file.Close();
    EXPECT_TRUE(file.Rename(Name(path_), 1));
    EXPECT_EQ(Name(path_), file.GetFileName());
    ASSERT_TRUE(file.Open(OPEN_READ, Name(path_)));
    EXPECT_TRUE(file.Delete());
    EXPECT_FALSE(std::filesystem::exists(path_));
}

// What another opening may do while a file is open with each way of sharing.
TEST_F(Files, ShareAsTheirFlagsSay) {
    PutBytes(path_, "x");
    for (const int flags :
         {0, +OPEN_NO_SHARE_READ, +OPEN_NO_SHARE_WRITE, OPEN_NO_SHARE_READ | OPEN_NO_SHARE_WRITE}) {
        const auto sharing = static_cast<unsigned short>(flags | OPEN_READ);
        for (const bool buffered : {false, true}) {
            QLFile file, other;
            CFileStreamBuf buffer;
            ASSERT_TRUE(buffered ? buffer.Open(Name(path_), sharing) : file.Open(sharing, Name(path_)) != 0);
            EXPECT_EQ((flags & OPEN_NO_SHARE_READ) == 0, other.Open(OPEN_READ, Name(path_)) != 0) << flags;
            EXPECT_EQ((flags & OPEN_NO_SHARE_WRITE) == 0, other.Open(OPEN_WRITE, Name(path_)) != 0) << flags;
        }
    }
}

TEST_F(Files, HeadersAreTheirBytes) {
    FILE_HEADER header;
    for (unsigned char i = 0; i < sizeof header.bytes; ++i) header.bytes[i] = i;
    std::memcpy(header.bytes, "\r\n\x1a", 3);  // none of which a text has
    const std::string bytes(reinterpret_cast<const char*>(header.bytes), 128);
    {
        RWFile file(path_.c_str(), L"w+b");
        EXPECT_TRUE(WriteHeader(file, header));
    }
    EXPECT_EQ(bytes, BytesOf(path_));
    RWFile file(path_.c_str(), L"rb");
    CFileStreamBuf buffer;
    ASSERT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    RWBufferIstream stream(buffer);
    const auto isRead = [&header](auto& from) {
        FILE_HEADER back = {};
        EXPECT_FALSE(ReadHeader(from, nullptr));
        EXPECT_TRUE(ReadHeader(from, &back)) << "where it was";
        EXPECT_EQ(0, std::memcmp(&header, &back, sizeof header));
        EXPECT_FALSE(ReadHeader(from, &back)) << "at the end";
    };
    isRead(file);
    isRead(stream);
    EXPECT_FALSE(WriteHeader(file, header)) << "opened for reading";
    std::stringbuf text;
    RWBufferOstream out(text);
    EXPECT_TRUE(WriteHeader(out, header));
    EXPECT_EQ(bytes, text.str());
}

using StreamBuf = Files;

TEST_F(StreamBuf, CreatesOnlyWhenAskedTo) {
    CFileStreamBuf buffer;
    EXPECT_FALSE(buffer.Open(Name(path_), OPEN_READ | OPEN_WRITE));
    EXPECT_TRUE(buffer.GetFileName().IsNull());
    EXPECT_FALSE(buffer.Open(Name(folder_ / L"none\\a"), OPEN_WRITE | OPEN_CREATE_MISSING));
    EXPECT_EQ(Name(folder_ / L"none\\a"), buffer.GetFileName());
    const bool opened = buffer.Open(Name(path_), OPEN_WRITE | OPEN_CREATE_MISSING | CREATE_READ_ONLY);
    EXPECT_EQ(CanWriteReadOnly(path_), opened) << "created, and then not to be written";
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
}

TEST_F(StreamBuf, ReadsWritesAndTellsItsPlace) {
    PutBytes(path_, "old and longer");
    CFileStreamBuf buffer;
    ASSERT_TRUE(buffer.Open(Name(path_), OPEN_WRITE));
    std::ostream(&buffer) << "a\nb";
    EXPECT_EQ(3, buffer.GetFilePos());
    for (const int time : {1, 2}) EXPECT_TRUE(buffer.Flush()) << time;
    EXPECT_EQ("a\nb", BytesOf(path_)) << "writing alone cuts the file off";
    ASSERT_TRUE(buffer.Open(Name(path_), OPEN_READ | OPEN_WRITE));
    std::iostream stream(&buffer);
    std::string line;
    std::getline(stream, line);
    EXPECT_EQ("a", line);
    EXPECT_EQ(2, buffer.GetFilePos());
    stream.seekp(0) << "c";
    for (const long long place : {0x7fffffffLL, 0x80000000LL, 0x1'0000'0005LL}) {
        buffer.pubseekpos(place);
        EXPECT_EQ(place, buffer.GetFilePos64());
        EXPECT_EQ(place <= 0x7fffffff ? static_cast<long>(place) : -1, buffer.GetFilePos());
    }
    EXPECT_TRUE(buffer.Close());
    EXPECT_EQ("c\nb", BytesOf(path_));
    EXPECT_EQ(-1, buffer.GetFilePos64());
}

// A size is of the file that is open, or else of the one opened next.
TEST_F(StreamBuf, CutsAndExtendsNoFileButItsOwn) {
    PutBytes(path_, "abcdef");
    CFileStreamBuf buffer;
    buffer.ChangeSize(4);
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    EXPECT_TRUE(buffer.Close());
    EXPECT_EQ("abcd", BytesOf(path_));
    {
        CFileStreamBuf other;
        ASSERT_TRUE(other.Open(Name(path_), OPEN_READ | OPEN_WRITE));
        other.ChangeSize(6);
    }
    const std::string extended("abcd\0\0", 6);
    EXPECT_EQ(extended, BytesOf(path_));
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    buffer.ChangeSize(-1);
    EXPECT_TRUE(buffer.Close());
    buffer.ChangeSize(0);
    EXPECT_TRUE(buffer.Close()) << "nothing is open";
    EXPECT_FALSE(buffer.Open(Name(folder_ / L"none"), OPEN_READ));
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    EXPECT_TRUE(buffer.Close()) << "the size was the other's";
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    buffer.ChangeSize(1);
    {
        const auto reader = OpenFile(path_, kShareReading);
        EXPECT_FALSE(buffer.Close());
    }
    EXPECT_EQ(extended, BytesOf(path_));
    EXPECT_TRUE(buffer.Open(Name(path_), OPEN_READ));
    buffer.ChangeSize(0);
    EXPECT_TRUE(buffer.Close());
    EXPECT_EQ("", BytesOf(path_));
}

TEST_F(Files, TellWhatAFullDiskLost) {
    QL_SKIP_WITHOUT_FULL_DEVICE();
    QLFile file;
    ASSERT_TRUE(file.Open(OPEN_WRITE, Name(kFullDevice)));
    EXPECT_EQ(kFailed, Writes(file, "x"));
    CFileStreamBuf buffer;
    ASSERT_TRUE(buffer.Open(Name(kFullDevice), OPEN_READ | OPEN_WRITE | OPEN_CREATE_MISSING));
    for (const std::size_t count : {1U, 100'000U}) {
        std::ostream(&buffer) << std::string(count, 'x');
        EXPECT_FALSE(buffer.Flush()) << count;
    }
}

}  // namespace
