#include "rw/file.h"

#include <gtest/gtest.h>

#include "rw/virtual_streams.h"
#include "tests/support/test_folder.h"

using namespace std::string_literals;

namespace {

class File : public testing::Test {
  protected:
    TestFolder folder_;
    const std::wstring path_ = folder_ / L"file";
    std::uint32_t value_ = 0;
};

TEST_F(File, IsInvalidWhenItCannotBeOpenedAndThenRefusesAll) {
    RWFile files[] = {RWFile(path_.c_str()), RWFile((path_ + L"/below").c_str(), L"wb"), RWFile(nullptr),
                      RWFile(path_.c_str(), nullptr)};
    for (RWFile& file : files) {
        EXPECT_FALSE(file.isValid());
        EXPECT_FALSE(file.Read(value_));
        EXPECT_FALSE(file.Write(value_));
        EXPECT_FALSE(file.SeekTo(0));
        EXPECT_FALSE(file.Flush());
    }
}

TEST_F(File, IsBinaryInEveryModeAndDoesWhatTheModeAllowsAlone) {
    const std::string bytes = "\r\n\n\x1a\r\xff\0end"s;
    for (const auto& [writing, reading] : {std::pair(L"w", L"r"), {L"wb", L"rb"}, {L"wt", L"rt"}}) {
        std::string read(bytes.size(), ' ');
        EXPECT_TRUE(RWFile(path_.c_str(), writing).Write(bytes.data(), bytes.size()));
        EXPECT_EQ(bytes, BytesOf(path_));
        EXPECT_TRUE(RWFile(path_.c_str(), reading).Read(read.data(), read.size()));
        EXPECT_EQ(bytes, read);
        EXPECT_FALSE(RWFile(path_.c_str(), reading).Write(value_));
        EXPECT_EQ(bytes, BytesOf(path_));
        EXPECT_FALSE(RWFile(path_.c_str(), writing).Read(value_));
        EXPECT_EQ("", BytesOf(path_));
    }
}

// What fits into the buffer is lost only when it leaves it, and stays lost.
TEST_F(File, TellsOfALossWhenFlushed) {
#ifdef _WIN32
    RWFile file(L"Z:\\dev\\full", L"wb");
#else
    RWFile file(L"/dev/full", L"wb");
#endif
    RWFileOstream stream(file);
    EXPECT_TRUE((stream << value_).good());
    EXPECT_FALSE(stream.flush().good());
    EXPECT_FALSE(file.Flush());
}

TEST_F(File, ReadsAndWritesInAnyOrder) {
    {
        RWFile file(path_.c_str(), L"w+b");
        EXPECT_TRUE(file.Write("\4\3\2\1\2\0\0\0", 8));
        EXPECT_TRUE(file.SeekTo(4));
        EXPECT_TRUE(file.Read(value_));
        EXPECT_EQ(2u, value_);
        EXPECT_TRUE(file.Write(std::uint32_t{7}));
        EXPECT_TRUE(file.Write(-2.0));
    }
    EXPECT_EQ("\4\3\2\1\2\0\0\0\7\0\0\0\0\0\0\0\0\0\0\xc0"s, BytesOf(path_));
    RWFile file(path_.c_str());
    double number = 0;
    EXPECT_TRUE(file.SeekTo(12));
    EXPECT_TRUE(file.Read(number));
    EXPECT_EQ(-2.0, number);
    EXPECT_FALSE(file.Read(value_)) << "past the end";
    EXPECT_FALSE(file.SeekTo(-1));
    EXPECT_TRUE(file.SeekTo(3));
    EXPECT_TRUE(file.Read(value_));
    EXPECT_EQ(0x201u, value_);
    EXPECT_TRUE(file.Write(std::uint32_t{8}));
    EXPECT_TRUE(file.Read(value_));
    EXPECT_EQ(0u, value_);
}

}  // namespace
