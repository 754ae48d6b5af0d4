#include "values/number_format.h"

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>
#include <random>
#include <tuple>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kGreatest = std::numeric_limits<double>::max();
constexpr double kTiniest = std::numeric_limits<double>::denorm_min();
constexpr tagQL_FLOATFORMAT kPlain = {0, L'.', 0};

// Formats into a buffer of just the size that the header promises to be enough, and looks after its fence.
std::wstring Format(double value, int places, const tagQL_FLOATFORMAT& format = kPlain) {
    const std::size_t size = FloatFormatBufferChars(static_cast<short>(places));
    const auto buffer = std::make_unique<wchar_t[]>(size + 1);
    buffer[size] = L'\xFDFD';
    EXPECT_EQ(buffer.get(), FloatFormatStringExt(value, buffer.get(), &format, static_cast<short>(places)));
    EXPECT_EQ(L'\xFDFD', buffer[size]) << value << ' ' << places;
    return buffer.get();
}

// By the C library's exact arithmetic, an exact half to the even digit; commas between the groups. Where the
// point is does not hang on the locale's sign for it.
std::wstring Grouped(double value, int places) {
    std::string digits(1500, '\0');
    digits.resize(
        static_cast<std::size_t>(std::snprintf(digits.data(), digits.size(), "%.*f", places, value)));
    std::wstring text(digits.begin(), digits.end());
    const std::size_t point = text.size() - (places > 0 ? static_cast<std::size_t>(places) + 1 : 0);
    if (places > 0) text[point] = L'.';
    for (std::size_t i = point; i > 3 && text[i - 4] != L'-'; i -= 3) text.insert(i - 3, 1, L',');
    return text.find_first_of(L"123456789") == text.npos ? text.substr(std::signbit(value)) : text;
}

std::vector<double> Sweep() {
    std::vector<double> values = {0,   kTiniest, kGreatest, 1e22,  1e23, 1e100,
                                  0.1, 2.675,    1e15,      1e308, 5e14, 99999999.995};
    for (int i = 0; i < 400; ++i) {
        values.push_back(i / 16.0);                   // halves of every place there is
        values.push_back((i * 12345.0 + 0.5) / 100);  // near halves of cents
    }
    for (double power = 1e-8; power < 1e24; power *= 10) {
        for (const double near : {power, power - 0.5, power - 0.125, power / 2, 5 * power / 8})
            values.insert(values.end(), {near, std::nextafter(near, 0), std::nextafter(near, kGreatest)});
    }
    std::mt19937_64 random(20240229);  // NOLINT: the same numbers every time
    for (int i = 0; i < 1000; ++i) {
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any)) values.push_back(any);
        values.push_back(static_cast<double>(random() >> (i % 50)) / 1000);
        values.push_back(static_cast<double>(random() % 2'000'000) / 64 +
                         1e8 * static_cast<double>(random() % 1'000'000));
    }
    return values;
}

}  // namespace

TEST(FloatFormat, AgreesWithExactDecimalArithmeticUnderALocaleWithADecimalComma) {
    std::setlocale(LC_ALL, "German");  // known on Windows
    for (const double value : Sweep()) {
        for (const int places : {0, 1, 2, 3, 8, 9, 17, 1100}) {
            ASSERT_EQ(Grouped(value, places), Format(value, places, {0, L'.', L','}))
                << value << " to " << places;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(FloatFormat, Edges) {
    constexpr tagQL_FLOATFORMAT kGrouped = {0, L'.', L','};
    constexpr tagQL_FLOATFORMAT kNoPoint = {0, 0, L','};
    constexpr tagQL_FLOATFORMAT kMoney = {L'$', L'.', L','};
    const struct {
        double value;
        int places;
        tagQL_FLOATFORMAT format;
        const wchar_t* text;
    } kCases[] = {{1234.5, 2, {0, L',', L'.'}, L"1.234,50"},
                  {-0.001, 2, kMoney, L"$-0.00"},
                  {-0.001, 2, kPlain, L"0.00"},
                  {-0.4, 1, kNoPoint, L"0"},
                  {1.96, 1, kNoPoint, L"2"},
                  {1.5, 1, kNoPoint, L"1"},
                  {-7.5, -3, kPlain, L"-8"},
                  {7.5, -32768, kMoney, L"$8"},
                  {1.5, 1, {0, L'5', 0}, L"15"},  // the last decimal looks like the separator
                  {-0.5, 1, {L'-', L'.', 0}, L"--0.5"},
                  {0, 2, {L'-', L'.', 0}, L"0.00"},  // the symbol is taken for the sign
                  {kInfinity, 2, kMoney, L"$inf.00"},
                  {-kInfinity, 3, kNoPoint, L"-inf"},
                  {std::nan(""), 1, kGrouped, L"nan.0"},
                  {-std::nan(""), 0, kMoney, L"$nan"}};
    for (const auto& [value, places, format, text] : kCases) EXPECT_EQ(text, Format(value, places, format));
    EXPECT_EQ(FloatFormatBufferChars(8), Format(-kGreatest, 8, kMoney).size() + 1)
        << "the longest text fills it";
    EXPECT_EQ(std::wstring(L"-inf.") + std::wstring(32767, L'0'), Format(-kInfinity, 32767));
}

TEST(FloatFormat, ShortFormChoosesDollarCommaAndPoint) {
    wchar_t buffer[FloatFormatBufferChars(2)];
    EXPECT_STREQ(L"$-1,234.50", FloatFormatString(-1234.5, buffer, true, true, 2));
    EXPECT_STREQ(L"1234.50", FloatFormatString(1234.5, buffer, false, false, 2));
    EXPECT_EQ(nullptr, FloatFormatString(1, nullptr, true, true, 2));
    EXPECT_STREQ(L"", FloatFormatStringExt(1, buffer, nullptr, 2));
}

// 0.29 * 100 alone would be cut to 28; places count from 0 to 8.
TEST(FudgeDouble, Cases) {
    const std::tuple<double, long, bool, double> kCases[] = {
        {2.675, 2, false, 2.67},       {-1.005, 2, true, -1.01}, {3.0, 2, true, 3.0},
        {0.99999, 0, false, 1},        {-0.5, 0, true, -1},      {0.29, 2, false, 0.29},
        {2.75, -1, true, 3},           {1.2e-8, 9, true, 1e-8},  {0.5, LONG_MIN, true, 1},
        {HUGE_VAL, 2, true, HUGE_VAL}, {kTiniest, 8, true, 0}};
    for (const auto& [value, places, round, result] : kCases)
        EXPECT_EQ(result, FudgeDouble(value, places, round)) << value << ' ' << places << ' ' << round;
    EXPECT_TRUE(std::isnan(FudgeDouble(std::nan(""), 2, true)));
    for (int places = 0; places <= 8; ++places) {  // what is nudged is 1e-5 of the last place's unit
        const double power = std::pow(10, places);
        EXPECT_EQ((power + 1) / power, FudgeDouble(1 + 0.499991 / power, places, true)) << places;
        EXPECT_EQ(1, FudgeDouble(1 + 0.499989 / power, places, true)) << places;
    }
}
