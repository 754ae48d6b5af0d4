#include "values/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

namespace {

constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8};
constexpr double kNudges[] = {1e-5, 1e-6, 1e-7, 1e-8, 1e-9, 1e-10, 1e-11, 1e-12, 1e-13};
constexpr int kMaxTablePlaces = 8;
static_assert(std::size(kPowersOfTen) == kMaxTablePlaces + 1 && std::size(kNudges) == kMaxTablePlaces + 1);

constexpr int kMaxWholeDigits = 309;  // of the greatest double
constexpr int kMaxDecimals = 1074;    // of the smallest: a double has no digits but zeros after them

// A product of doubles that is exact as the sum of the two, by halving the factors' digits (Veltkamp,
// Dekker).
struct ExactProduct {
    double high;
    double low;  // at most half a unit in the last place of high
};

struct Halves {
    explicit Halves(double value) {
        const double scaled = value * 134217729;  // 2^27 + 1
        high = scaled - (scaled - value);
        low = value - high;
    }
    double high;
    double low;
};

ExactProduct Multiply(double a, double b) {
    const Halves x(a);
    const Halves y(b);
    const double product = a * b;
    return {product, ((x.high * y.high - product) + x.high * y.low + x.low * y.high) + x.low * y.low};
}

// The digits of a number that is not negative, rounded to so many decimals; at most kMaxDecimals of them are
// told, the others are zeros.
class PlainDigits {
  public:
    PlainDigits(double value, int places) {
        if (places > kMaxTablePlaces || !Shorten(value, places)) Print(value, std::min(places, kMaxDecimals));
    }

    std::string_view whole() const { return whole_; }
    std::string_view decimals() const { return decimals_; }

  private:
    static constexpr int kHalfDigits = 8;
    static constexpr double kHalfLimit = 1e8;

    bool Shorten(double value, int places);
    void Print(double value, int places);
    static char* WriteBefore(char* end, int number, int atLeast);  // answers the first of the digits

    char text_[kMaxWholeDigits + 1 + kMaxDecimals];
    std::string_view whole_;
    std::string_view decimals_;
};

// The ordinary number: scaled by its places it stays below 1e15, where the exact product leaves no doubt
// about the rounding. Works in halves of eight digits, which 32-bit registers hold.
bool PlainDigits::Shorten(double value, int places) {
    const auto [scaled, error] = Multiply(value, kPowersOfTen[places]);
    if (!(scaled < 1e15)) return false;
    auto upper = static_cast<int>(scaled * (1 / kHalfLimit));
    const double rest = scaled - upper * kHalfLimit;  // above -0.5, should the reciprocal be too great
    auto lower = static_cast<int>(rest);
    const double fraction = rest - lower;
    const bool isHalf = fraction == 0.5;
    if (isHalf ? error > 0 || (error == 0 && lower % 2 != 0) : fraction > 0.5) ++lower;
    // lower may now be 1e8, or was left there by a reciprocal a little too small: both carry.
    if (lower >= static_cast<int>(kHalfLimit)) {
        lower -= static_cast<int>(kHalfLimit);
        ++upper;
    }
    char* const end = std::end(text_);
    char* const start =
        upper == 0 ? WriteBefore(end, lower, places + 1)
                   : WriteBefore(WriteBefore(end, lower, kHalfDigits), upper, places + 1 - kHalfDigits);
    const auto point = static_cast<std::size_t>(end - start - places);
    const std::string_view all(start, end);
    whole_ = all.substr(0, point);
    decimals_ = all.substr(point);
    return true;
}

char* PlainDigits::WriteBefore(char* end, int number, int atLeast) {
    auto left = static_cast<unsigned>(number);
    for (; left != 0 || atLeast > 0; left /= 10, --atLeast) *--end = static_cast<char>('0' + left % 10);
    return end;
}

void PlainDigits::Print(double value, int places) {
    const char* const end =
        std::to_chars(text_, std::end(text_), value, std::chars_format::fixed, places).ptr;
    const std::string_view all(text_, static_cast<std::size_t>(end - text_));
    const std::size_t point = std::min(all.find('.'), all.size());
    whole_ = all.substr(0, point);
    decimals_ = all.substr(std::min(point + 1, all.size()));
}

wchar_t* AppendGrouped(wchar_t* end, std::string_view digits, wchar_t separator) {
    constexpr std::size_t kGroup = 3;
    std::size_t at = separator ? (digits.size() - 1) % kGroup + 1 : digits.size();
    end = std::copy_n(digits.begin(), at, end);
    for (; at < digits.size(); at += kGroup) {
        *end++ = separator;
        end = std::copy_n(digits.begin() + at, kGroup, end);
    }
    return end;
}

wchar_t* AppendDecimals(wchar_t* end, std::string_view decimals, int places) {
    end = std::copy(decimals.begin(), decimals.end(), end);
    return std::fill_n(end, places - static_cast<int>(decimals.size()), L'0');
}

// "-0" ends the text or stands before the separator.
bool IsNegativeZero(std::wstring_view text) {
    return text.starts_with(L"-0") && text.find_first_not_of(L'0', 3) == std::wstring_view::npos;
}

// Writes from the buffer's start on; returns the end.
wchar_t* Write(double value, wchar_t* buffer, const tagQL_FLOATFORMAT& format, int places) {
    wchar_t* end = buffer;
    if (format.leadingSymbol) *end++ = format.leadingSymbol;
    if (std::signbit(value) && !std::isnan(value)) *end++ = L'-';
    const PlainDigits digits(std::fabs(value), places);
    end = AppendGrouped(end, digits.whole(), format.groupSeparator);
    if (format.decimalSeparator) {
        *end++ = format.decimalSeparator;
        end = AppendDecimals(end, digits.decimals(), places);
    }
    return end[-1] == format.decimalSeparator ? end - 1 : end;
}

}  // namespace

double FudgeDouble(double value, long places, bool round) noexcept {
    double whole = 0;
    if (std::modf(value, &whole) == 0) return value;
    const long clamped = std::clamp(places, 0L, static_cast<long>(kMaxTablePlaces));
    const double power = kPowersOfTen[clamped];
    double scaled = (value + std::copysign(kNudges[clamped], value)) * power;
    if (round) scaled += std::copysign(0.5, scaled);
    return std::trunc(scaled) / power;
}

wchar_t* FloatFormatStringExt(double value, wchar_t* buffer, const tagQL_FLOATFORMAT* format,
                              short places) noexcept {
    if (!buffer) return nullptr;
    wchar_t* end = format ? Write(value, buffer, *format, std::max<int>(places, 0)) : buffer;
    if (IsNegativeZero({buffer, end})) end = std::copy(buffer + 1, end, buffer);
    *end = L'\0';
    return buffer;
}

wchar_t* FloatFormatString(double value, wchar_t* buffer, bool thousands, bool currency,
                           short places) noexcept {
    const tagQL_FLOATFORMAT format = {currency ? L'$' : L'\0', L'.', thousands ? L',' : L'\0'};
    return FloatFormatStringExt(value, buffer, &format, places);
}
