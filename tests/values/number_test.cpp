#include "values/number.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

#include "rw/file.h"
#include "tests/support/test_folder.h"
#include "values/date.h"

TEST(Number, NullSpreadsAndComparesFalseWithEverything) {
    const Number null, one = 1, nan = std::numeric_limits<double>::quiet_NaN();
    for (const Number& result : {null + 1, one - null, null * null, null / one, one / null, -null})
        EXPECT_TRUE(result.IsNull());
    const Number kPairs[][2] = {{null, one}, {one, null}, {null, null}};
    for (const auto& [a, b] : kPairs) {
        const bool answers[] = {a == b, a != b, a<b, a> b, a <= b, a >= b};
        EXPECT_THAT(answers, testing::Each(false));
    }
    const bool answers[] = {one != 2, one<2, one <= 1, one >= 1, one == 1, Number(2)> one, nan != nan};
    EXPECT_THAT(answers, testing::Each(true));
    EXPECT_FALSE(nan == nan);
    EXPECT_FALSE(nan <= nan);
}

TEST(Number, ArithmeticIsThatOfDoublesWithoutSaturation) {
    Number largest;
    largest.SetMax();
    EXPECT_TRUE((largest + 1).IsMax());
    EXPECT_TRUE((-largest).IsMin());
    EXPECT_EQ(2e100, (largest + largest).GetDouble());
    EXPECT_EQ(6.0, ((Number(5) - 2) * 2).GetDouble());
    EXPECT_EQ(-2.5, (Number(5) / Number(-2)).GetDouble());
    EXPECT_TRUE(std::signbit((-Number(0)).GetDouble()));
    EXPECT_TRUE((largest * -10).IsNull()) << "-1e101 is null, however it came about";
    EXPECT_EQ(-1e101, *&Number::m_noNumber);
    EXPECT_EQ(-1e100, *&Number::m_minNumber);
    largest.SetDouble(std::nextafter(1e100, 0));
    EXPECT_FALSE(largest.IsMax());
    EXPECT_FALSE((-largest).IsMin());
}

TEST(Number, DivisionByZeroThrowsAFloatZeroAcrossTheLibraryEvenForNull) {
    for (const Number& dividend : {Number(1), Number(0), Number()}) {
        for (const double zero : {0.0, -0.0})
            EXPECT_THAT([&] { (void)(dividend / zero); }, testing::Throws<float>(testing::Eq(0.0F)));
    }
}

TEST(Number, PersistsBesideADateAndStaysWhenTheReadFails) {
    const TestFolder folder;
    RWFile file((folder / L"file").c_str(), L"w+b");
    Number number = -2.5;
    CDate date(29, 2, 2020);
    number.saveOn(file);
    date.saveOn(file);
    EXPECT_TRUE(file.SeekTo(0));
    EXPECT_EQ(std::string("\0\0\0\0\0\0\x04\xC0\x1D\x85\x25\0", 12), BytesOf(folder / L"file"));
    EXPECT_EQ(12u, number.binaryStoreSize() + date.binaryStoreSize());
    number = Number();
    date = CDate(1UL);
    for (int i = 0; i < 2; ++i) {  // the second time finds nothing
        number.restoreFrom(file);
        date.restoreFrom(file);
        EXPECT_EQ(-2.5, number.GetDouble());
        EXPECT_EQ(CDate(29, 2, 2020), date);
    }
}
