#include "rw/file.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/rw/temporary_file.h"

using namespace std::string_literals;

TEST(File, IsInvalidWhenItCannotBeOpenedAndThenRefusesAll) {
    const TemporaryFile missing("missing");
    const std::wstring path = missing.Path();
    RWFile files[] = {RWFile(path.c_str()), RWFile((path + L"/below").c_str(), L"wb"), RWFile(nullptr),
                      RWFile(path.c_str(), nullptr)};
    for (RWFile& file : files) {
        std::uint32_t value = 0;
        EXPECT_FALSE(file.isValid());
        EXPECT_FALSE(file.Read(value));
        EXPECT_FALSE(file.Write(value));
        EXPECT_FALSE(file.SeekTo(0));
        EXPECT_FALSE(file.Flush());
    }
}

TEST(File, WritesValuesAsLittleEndianBytes) {
    const TemporaryFile place("values");
    {
        RWFile file(place.Path().c_str(), L"wb");
        EXPECT_TRUE(file.Write(std::uint32_t{0x01020304}));
        EXPECT_TRUE(file.Write(-2.0));
    }
    EXPECT_EQ("\4\3\2\1\0\0\0\0\0\0\0\xc0"s, place.Content());

    RWFile file(place.Path().c_str(), L"rb");
    std::uint32_t count = 0;
    double number = 0;
    EXPECT_TRUE(file.Read(count) && file.Read(number));
    EXPECT_EQ(0x01020304u, count);
    EXPECT_EQ(-2.0, number);
    EXPECT_FALSE(file.Read(&count, 1));
}

TEST(File, IsBinaryInEveryMode) {
    const std::string bytes = "\r\n\n\x1a\r\xff\0end"s;
    for (const wchar_t* mode : {L"w", L"wb", L"wt"}) {
        const TemporaryFile place("binary");
        EXPECT_TRUE(RWFile(place.Path().c_str(), mode).Write(bytes.data(), bytes.size()));
        EXPECT_EQ(bytes, place.Content());
    }
    for (const wchar_t* mode : {L"r", L"rt", L"r+"}) {
        const TemporaryFile place("binary");
        place.Fill(bytes);
        std::string read(bytes.size(), ' ');
        EXPECT_TRUE(RWFile(place.Path().c_str(), mode).Read(read.data(), read.size()));
        EXPECT_EQ(bytes, read);
    }
}

TEST(File, RefusesAReadThatGoesPastTheEndAndReadsOnAfterASeek) {
    const TemporaryFile place("short");
    place.Fill("\1\0\0\0\2\0\0"s);
    RWFile file(place.Path().c_str(), L"rb");
    std::uint32_t value = 0;
    EXPECT_TRUE(file.Read(value));
    EXPECT_FALSE(file.Read(value));
    EXPECT_FALSE(file.SeekTo(-1));
    EXPECT_TRUE(file.SeekTo(3));
    EXPECT_TRUE(file.Read(value));
    EXPECT_EQ(0x200u, value);
}

TEST(File, DoesWhatItsModeAllowsAlone) {
    const TemporaryFile place("mode");
    place.Fill("kept");
    std::uint32_t value = 0;
    EXPECT_FALSE(RWFile(place.Path().c_str(), L"rb").Write(value));
    EXPECT_EQ("kept", place.Content());
    EXPECT_FALSE(RWFile(place.Path().c_str(), L"wb").Read(value));
    EXPECT_EQ("", place.Content());
}

TEST(File, ReadsAndWritesInAnyOrder) {
    const TemporaryFile place("turns");
    place.Fill("\1\0\0\0\2\0\0\0\3\0\0\0"s);
    RWFile file(place.Path().c_str());
    std::uint32_t value = 0;
    EXPECT_TRUE(file.Read(value));
    EXPECT_TRUE(file.Write(std::uint32_t{7}));
    EXPECT_TRUE(file.Read(value));
    EXPECT_EQ(3u, value);
    EXPECT_TRUE(file.Write(std::uint32_t{8}));
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ("\1\0\0\0\7\0\0\0\3\0\0\0\10\0\0\0"s, place.Content());
}
