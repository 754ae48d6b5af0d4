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
    const std::filesystem::path path = std::filesystem::temp_directory_path() / L"quillet_values_test.bin";
    std::stringbuf bytes;
    {
        RWFile file(path.wstring().c_str(), L"wb");
        RWBufferOstream stream(bytes);
        Number(-2.5).saveOn(file);
        Number(-2.5).saveOn(stream);
        CDate(1, 2, 2003).saveOn(file);
    }
    EXPECT_EQ(std::string("\0\0\0\0\0\0\x04\xC0", 8), bytes.str());
    EXPECT_EQ(Number().binaryStoreSize() + CDate().binaryStoreSize(), std::filesystem::file_size(path));
    RWFile file(path.wstring().c_str(), L"rb");
    RWBufferIstream stream(bytes);
    Number fromFile;
    Number fromStream;
    CDate date(0UL);
    for (int i = 0; i < 2; ++i) {  // the second time finds nothing
        fromFile.restoreFrom(file);
        date.restoreFrom(file);
        fromStream.restoreFrom(stream);
        EXPECT_TRUE(fromFile == -2.5 && fromStream == -2.5 && date == CDate(1, 2, 2003));
    }
    EXPECT_FALSE(stream.good());
}
