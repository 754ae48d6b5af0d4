#include "rw/file.h"

#include <gtest/gtest.h>

#include <string>

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
        EXPECT_FALSE(file.isValid() || file.Read(value_) || file.Write(value_) || file.SeekTo(0));
    }
}

TEST_F(File, HoldsValuesAsLittleEndianBytes) {
    EXPECT_TRUE(RWFile(path_.c_str(), L"wb").Write(std::uint32_t{0x01020304}));
    EXPECT_EQ("\4\3\2\1"s, BytesOf(path_));
    EXPECT_TRUE(RWFile(path_.c_str(), L"rb").Read(value_));
    EXPECT_EQ(0x01020304u, value_);
    EXPECT_TRUE(RWFile(path_.c_str(), L"wb").Write(-2.0));
    EXPECT_EQ("\0\0\0\0\0\0\0\xc0"s, BytesOf(path_));
    double number = 0;
    EXPECT_TRUE(RWFile(path_.c_str(), L"rb").Read(number));
    EXPECT_EQ(-2.0, number);
}

TEST_F(File, IsBinaryInEveryMode) {
    const std::string bytes = "\r\n\n\x1a\r\xff\0end"s;
    for (const wchar_t* mode : {L"w", L"wb", L"wt"}) {
        EXPECT_TRUE(RWFile(path_.c_str(), mode).Write(bytes.data(), bytes.size()));
        EXPECT_EQ(bytes, BytesOf(path_));
    }
    for (const wchar_t* mode : {L"r", L"rt", L"r+"}) {
        std::string read(bytes.size(), ' ');
        EXPECT_TRUE(RWFile(path_.c_str(), mode).Read(read.data(), read.size()));
        EXPECT_EQ(bytes, read);
    }
}

TEST_F(File, RefusesAReadThatGoesPastTheEndAndReadsOnAfterASeek) {
    PutBytes(path_, "\1\0\0\0\2\0\0"s);
    RWFile file(path_.c_str(), L"rb");
    EXPECT_TRUE(file.Read(value_));
    EXPECT_FALSE(file.Read(value_));
    EXPECT_FALSE(file.SeekTo(-1));
    EXPECT_TRUE(file.SeekTo(3) && file.Read(value_));
    EXPECT_EQ(0x200u, value_);
}

TEST_F(File, DoesWhatItsModeAllowsAlone) {
    PutBytes(path_, "kept");
    EXPECT_FALSE(RWFile(path_.c_str(), L"rb").Write(value_));
    EXPECT_EQ("kept", BytesOf(path_));
    EXPECT_FALSE(RWFile(path_.c_str(), L"wb").Read(value_));
    EXPECT_EQ("", BytesOf(path_));
}

TEST_F(File, ReadsAndWritesInAnyOrder) {
    PutBytes(path_, "\1\0\0\0\2\0\0\0\3\0\0\0"s);
    {
        RWFile file(path_.c_str());
        EXPECT_TRUE(file.Read(value_));
        EXPECT_TRUE(file.Write(std::uint32_t{7}));
        EXPECT_TRUE(file.Read(value_));
        EXPECT_EQ(3u, value_);
        EXPECT_TRUE(file.Write(std::uint32_t{8}));
    }
    EXPECT_EQ("\1\0\0\0\7\0\0\0\3\0\0\0\10\0\0\0"s, BytesOf(path_));
}

}  // namespace
