#include "values/number_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

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

// A whole number of any size, nine decimal digits a limb, the lowest first.
class Decimal {
  public:
    explicit Decimal(std::uint64_t value) {
        for (; value != 0; value /= kBase) limbs_.push_back(static_cast<std::uint32_t>(value % kBase));
    }

    void Multiply(std::uint32_t factor, std::uint32_t add = 0) {
        std::uint64_t carry = add;
        for (std::uint32_t& limb : limbs_) {
            carry += std::uint64_t{limb} * factor;
            limb = static_cast<std::uint32_t>(carry % kBase);
            carry /= kBase;
        }
        if (carry != 0) limbs_.push_back(static_cast<std::uint32_t>(carry));
    }

    bool Halve() {  // answers the bit that falls off
        std::uint32_t carry = 0;
        for (auto limb = limbs_.rbegin(); limb != limbs_.rend(); ++limb) {
            const std::uint32_t whole = *limb + carry * kBase;
            *limb = whole / 2;
            carry = whole % 2;
        }
        return carry != 0;
    }

    bool IsOdd() const { return !limbs_.empty() && limbs_.front() % 2 != 0; }

    std::wstring Text(std::size_t atLeast) const {
        std::wstring text;
        for (const std::uint32_t limb : limbs_) {
            const std::wstring digits = std::to_wstring(limb);
            text.insert(0, std::wstring(9 - digits.size(), L'0') + digits);
        }
        text.erase(0, std::min(text.find_first_not_of(L'0'), text.size()));
        if (text.size() < atLeast) text.insert(0, atLeast - text.size(), L'0');
        return text;
    }

  private:
    static constexpr std::uint32_t kBase = 1'000'000'000;
    std::vector<std::uint32_t> limbs_;
};

// |value| with so many decimals: the exact binary fraction, rounded half to even.
std::wstring ExactDecimals(double value, int places) {
    int exponent = 0;
    const double mantissa = std::frexp(std::fabs(value), &exponent);
    Decimal digits(static_cast<std::uint64_t>(std::ldexp(mantissa, 53)));
    for (int i = 0; i < places; ++i) digits.Multiply(10);
    for (exponent -= 53; exponent > 0; --exponent) digits.Multiply(2);
    bool half = false;
    bool more = false;
    for (; exponent < 0; ++exponent) {
        more = more || half;
        half = digits.Halve();
    }
    if (half && (more || digits.IsOdd())) digits.Multiply(1, 1);
    std::wstring text = digits.Text(static_cast<std::size_t>(places) + 1);
    if (places > 0) text.insert(text.size() - static_cast<std::size_t>(places), 1, L'.');
    return text;
}

// The text as the steps of the format make it from the plain decimals, by insertion and removal.
std::wstring Model(double value, int places, const tagQL_FLOATFORMAT& format) {
    const std::wstring symbol = format.leadingSymbol ? std::wstring(1, format.leadingSymbol) : L"";
    std::wstring number = (std::signbit(value) ? L"-" : L"") + ExactDecimals(value, places);
    auto point = static_cast<int>(std::min(number.find(L'.'), number.size()));
    std::wstring decimals = number.substr(static_cast<std::size_t>(point));
    number.erase(static_cast<std::size_t>(point));
    for (int at = point - 3;
         format.groupSeparator && at > 0 && number[static_cast<std::size_t>(at) - 1] != L'-'; at -= 3)
        number.insert(static_cast<std::size_t>(at), 1, format.groupSeparator);
    if (!decimals.empty()) decimals[0] = format.decimalSeparator;
    std::wstring text = symbol + number + (format.decimalSeparator ? decimals : L"");
    if (text.starts_with(L"-0") &&
        text.find_first_not_of(std::wstring(L"-0") + format.decimalSeparator) == text.npos)
        text.erase(0, 1);
    return text;
}

std::vector<double> Sweep() {
    std::vector<double> values = {0.0,
                                  5e14,
                                  1e15,
                                  1e15 - 0.125,
                                  1e15 + 0.125,
                                  1e16,
                                  123456789012345678.0,
                                  9007199254740993.0,
                                  1e22,
                                  1e23,
                                  1e100,
                                  1e308,
                                  kGreatest,
                                  kTiniest,
                                  2.2250738585072014e-308,
                                  0.1,
                                  1e-5,
                                  5e-324,
                                  99999999.5,
                                  99999999.995,
                                  999999999999999.9,
                                  0.3,
                                  2.675,
                                  1.005};
    for (int i = 0; i < 400; ++i) values.push_back(i / 16.0);  // halves of every place there is
    for (int i = 1; i < 400; ++i) values.push_back((i * 12345.0 + 0.5) / 100);  // near halves of cents
    for (double power = 1e-8; power < 1e24; power *= 10) {
        for (const double near : {power, power - 0.5, power * 0.999999999, power / 2, 5 * power / 8})
            values.insert(values.end(), {near, std::nextafter(near, 0), std::nextafter(near, kGreatest)});
    }
    std::mt19937_64 random(20240229);  // NOLINT: the same numbers every time
    for (int i = 0; i < 3000; ++i) {
        const double any = std::bit_cast<double>(random());
        if (std::isfinite(any)) values.push_back(any);
        values.push_back(static_cast<double>(random() >> (i % 50)) / 1000);
        values.push_back(static_cast<double>(random() % 2'000'000) / 64 +
                         1e8 * static_cast<double>(random() % 1'000'000));
    }
    return values;
}

}  // namespace

TEST(FloatFormat, AgreesWithExactDecimalArithmetic) {
    constexpr tagQL_FLOATFORMAT kFormats[] = {kPlain, {0, L'.', L','}, {L'$', L',', L'.'}, {0, 0, L'\x2019'}};
    const std::vector<double> values = Sweep();
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double value = i % 3 == 0 ? -values[i] : values[i];
        for (const int places : {0, 1, 2, 3, 8, 9, 17}) {
            const tagQL_FLOATFORMAT& format =
                kFormats[(i + static_cast<std::size_t>(places)) % std::size(kFormats)];
            ASSERT_EQ(Model(value, places, format), Format(value, places, format))
                << value << " to " << places;
        }
    }
    for (const double value : {kTiniest, kGreatest, -1e308, 1 / 3.0}) {
        for (const int places : {330, 1073, 1074, 1075, 32767})
            EXPECT_TRUE(Model(value, places, kFormats[1]) == Format(value, places, kFormats[1]))
                << value << ' ' << places;
    }
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
    } kCases[] = {
        {1234567.891, 2, kGrouped, L"1,234,567.89"},
        {1234567.891, 0, kGrouped, L"1,234,568"},
        {-123.4, 1, kGrouped, L"-123.4"},
        {-123456.4, 1, kGrouped, L"-123,456.4"},
        {1234.5, 2, {0, L',', L'.'}, L"1.234,50"},
        {-1234.5, 2, kMoney, L"$-1,234.50"},
        {-0.001, 2, kMoney, L"$-0.00"},
        {-0.001, 2, kPlain, L"0.00"},
        {-0.0, 0, kPlain, L"0"},
        {-0.4, 1, kNoPoint, L"0"},
        {-0.06, 1, kPlain, L"-0.1"},
        {1.96, 1, kNoPoint, L"2"},
        {1.5, 1, kNoPoint, L"1"},
        {0.125, 2, kPlain, L"0.12"},
        {0.375, 2, kPlain, L"0.38"},
        {2.5, 0, kPlain, L"2"},
        {-7.5, -3, kPlain, L"-8"},
        {7.5, -32768, kMoney, L"$8"},
        {1.5, 1, {0, L'5', 0}, L"15"},  // the last decimal looks like the separator
        {-0.5, 1, {L'-', L'.', 0}, L"--0.5"},
        {0, 2, {L'-', L'.', 0}, L"0.00"},  // the symbol is taken for the sign
        {kInfinity, 2, kMoney, L"$inf.00"},
        {-kInfinity, 0, kGrouped, L"-inf"},
        {-kInfinity, 3, kNoPoint, L"-inf"},
        {std::nan(""), 1, kGrouped, L"nan.0"},
        {-std::nan(""), 0, kMoney, L"$nan"},
    };
    for (const auto& [value, places, format, text] : kCases) EXPECT_EQ(text, Format(value, places, format));
    EXPECT_EQ(std::wstring(L"-inf.") + std::wstring(32767, L'0'), Format(-kInfinity, 32767));
}

TEST(FloatFormat, LongestTextFillsTheLargeEnoughBuffer) {
    constexpr tagQL_FLOATFORMAT kLong = {L'$', L'.', L','};
    for (const int places : {1, 8, 300}) {
        EXPECT_EQ(FloatFormatBufferChars(static_cast<short>(places)),
                  Format(-kGreatest, places, kLong).size() + 1);
    }
}

TEST(FloatFormat, ShortFormChoosesDollarCommaAndPoint) {
    wchar_t buffer[FloatFormatBufferChars(2)];
    EXPECT_STREQ(L"$-1,234.50", FloatFormatString(-1234.5, buffer, true, true, 2));
    EXPECT_STREQ(L"1234.50", FloatFormatString(1234.5, buffer, false, false, 2));
    EXPECT_STREQ(L"0.00", FloatFormatString(-0.001, buffer, false, false, 2));
    EXPECT_EQ(nullptr, FloatFormatString(1, nullptr, true, true, 2));
    EXPECT_STREQ(L"", FloatFormatStringExt(1, buffer, nullptr, 2));
}

TEST(FudgeDouble, Cases) {
    const struct {
        double value;
        long places;
        bool round;
        double result;
    } kCases[] = {
        {2.675, 2, true, 2.68},
        {2.675, 2, false, 2.67},
        {-1.005, 2, true, -1.01},
        {3.0, 2, true, 3.0},
        {0.99999, 0, false, 1},
        {0.9999, 0, false, 0},
        {-0.5, 0, true, -1},
        {2.4, 0, true, 2},
        {0.123456785, 8, true, 0.12345679},
        {0.29, 2, false, 0.29},  // 0.29 * 100 alone would be cut to 28
        {1e300, 2, true, 1e300},
        {2.75, -1, true, 3},  // places below 0 count as 0
        {0.123456789, 9, false, 0.12345678},
        {0.5, std::numeric_limits<long>::max(), false, 0.5},
        {0.5, std::numeric_limits<long>::min(), true, 1},
        {kInfinity, 2, true, kInfinity},
        {-kInfinity, 0, false, -kInfinity},
        {kTiniest, 8, true, 0},
    };
    for (const auto& [value, places, round, result] : kCases)
        EXPECT_EQ(result, FudgeDouble(value, places, round)) << value << ' ' << places << ' ' << round;
    EXPECT_TRUE(std::isnan(FudgeDouble(std::nan(""), 2, true)));
}
