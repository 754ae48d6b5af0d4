#include "values/number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>

#include "rw/file.h"
#include "rw/virtual_streams.h"
#include "values/date.h"

TEST(Number, NullSpreadsAndComparesFalseWithEverything) {
    const Number null;
    const Number one = 1;
    EXPECT_TRUE((null + 1).IsNull() && (one - null).IsNull() && (null * null).IsNull() &&
                (null / one).IsNull() && (one / null).IsNull() && (-null).IsNull());
    const Number kPairs[][2] = {{null, one}, {one, null}, {null, null}};
    for (const auto& [a, b] : kPairs) {
        EXPECT_FALSE(a == b || a != b || a < b || a > b || a <= b || a >= b);
    }
    EXPECT_TRUE(one != 2 && one < 2 && one <= 1 && one >= 1 && one == 1 && Number(2) > one);
}

TEST(Number, ArithmeticIsThatOfDoublesWithoutSaturation) {
    Number largest;
    largest.SetMax();
    EXPECT_TRUE((largest + 1).IsMax() && (-largest).IsMin());
    EXPECT_EQ(2e100, (largest + largest).GetDouble());
    EXPECT_EQ(0.1 + 0.2, (Number(0.1) + 0.2).GetDouble());
    EXPECT_EQ(-2.5, (Number(5) / Number(-2)).GetDouble());
    EXPECT_TRUE(std::signbit((-Number(0)).GetDouble()));
    EXPECT_TRUE((largest * -10).IsNull()) << "-1e101 is null, however it came about";
    const Number nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(nan != nan && !(nan == nan) && !(nan <= nan));
}

TEST(Number, ReservedValuesAreExact) {
    Number number = 5;
    number.SetNull();
    EXPECT_EQ(-1e101, number.GetDouble());
    number.SetMin();
    EXPECT_EQ(Number::m_minNumber, number.GetDouble());
    EXPECT_EQ(Number::m_maxNumber, -Number::m_minNumber);
    number.SetDouble(std::nextafter(1e100, 0));
    EXPECT_FALSE(number.IsMax() || number.IsMin() || number.IsNull());
    EXPECT_NE(&Number::m_noNumber, &Number::m_maxNumber) << "the constants can be addressed";
}

TEST(Number, DivisionByZeroThrowsAFloatZeroAcrossTheLibraryEvenForNull) {
    for (const Number& dividend : {Number(1), Number(0), Number()}) {
        for (const double zero : {0.0, -0.0}) {
            try {
                (void)(dividend / zero);
                ADD_FAILURE() << "did not throw";
            } catch (const float thrown) {
                EXPECT_EQ(0.0F, thrown);
            }
        }
    }
}

TEST(Number, PersistsAsItsDoubleAndStaysWhenTheReadFails) {
    std::stringbuf bytes;
    RWBufferOstream out(bytes);
    Number(-2.5).saveOn(out);
    EXPECT_EQ(std::string("\0\0\0\0\0\0\x04\xC0", 8), bytes.str());
    EXPECT_EQ(bytes.str().size(), Number().binaryStoreSize());
    RWBufferIstream in(bytes);
    Number number;
    number.restoreFrom(in);
    EXPECT_EQ(-2.5, number.GetDouble());
    number.restoreFrom(in);
    EXPECT_EQ(-2.5, number.GetDouble());
}

TEST(Number, GoesThroughAFileBesideADate) {
    const std::filesystem::path path = std::filesystem::temp_directory_path() / L"quillet_values_test.bin";
    {
        RWFile file(path.wstring().c_str(), L"wb");
        Number().saveOn(file);
        CDate(1, 2, 2003).saveOn(file);
    }
    Number number = 1;
    CDate date(0UL);
    {
        RWFile file(path.wstring().c_str(), L"rb");
        number.restoreFrom(file);
        date.restoreFrom(file);
        EXPECT_TRUE(number.IsNull());
        EXPECT_EQ(CDate(1, 2, 2003), date);
        date.restoreFrom(file);
        number.restoreFrom(file);
    }
    EXPECT_TRUE(number.IsNull());
    EXPECT_EQ(CDate(1, 2, 2003), date);
    EXPECT_EQ(12U, std::filesystem::file_size(path));
    std::filesystem::remove(path);
}
