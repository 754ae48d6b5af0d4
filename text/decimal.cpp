#include "text/decimal.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <iterator>
#include <limits>

namespace {

// Every one of these is a double of its own.
constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                   1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Every whole number below it is a double of its own.
constexpr std::uint64_t kInexact = std::uint64_t{1} << std::numeric_limits<double>::digits;

// No double, and no point between two, has more digits than this; of those behind it only whether one is not
// zero counts.
constexpr std::size_t kTellingDigits = 800;

constexpr bool IsDigit(wchar_t unit) {
    return unit >= L'0' && unit <= L'9';
}

// The number as it is read: its digits without leading zeros as a whole number, and a power of ten.
class Digits {
  public:
    explicit Digits(std::wstring_view text) noexcept : text_(text) {}

    std::size_t position() const noexcept { return next_; }
    bool Take(std::wstring_view units) noexcept {
        if (next_ >= text_.size() || units.find(text_[next_]) == std::wstring_view::npos) return false;
        ++next_;
        return true;
    }

    // Each answers whether there was a digit.
    bool TakeWhole() noexcept {
        return TakeDigits([this](unsigned digit) { Add(digit); });
    }
    bool TakeFraction() noexcept {
        return TakeDigits([this](unsigned digit) {
            Add(digit);
            --power_;
        });
    }
    bool TakeExponent(bool isNegative) noexcept {
        constexpr long long kHuge = 100'000'000'000'000'000;  // no text makes up for more
        long long exponent = 0;
        const bool isTaken =
            TakeDigits([&](unsigned digit) { exponent = std::min(exponent * 10 + digit, kHuge); });
        power_ += isNegative ? -exponent : exponent;
        return isTaken;
    }

    double Value() const noexcept {
        const auto size = static_cast<std::size_t>(power_ < 0 ? -power_ : power_);
        if (whole_ < kInexact && size < std::size(kPowersOfTen)) {
            // Both sides are exact, and a single operation on them rounds correctly.
            const auto whole = static_cast<double>(whole_);
            return power_ < 0 ? whole / kPowersOfTen[size] : whole * kPowersOfTen[size];
        }
        return FromCharacters();
    }

  private:
    template <class Use>
    bool TakeDigits(Use use) noexcept {
        const std::size_t first = next_;
        for (; next_ < text_.size() && IsDigit(text_[next_]); ++next_)
            use(static_cast<unsigned>(text_[next_] - L'0'));
        return next_ > first;
    }

    void Add(unsigned digit) noexcept {
        if (count_ == 0 && digit == 0) return;
        if (count_ == kTellingDigits) {
            if (digit != 0) telling_[kTellingDigits - 1] = '1';
            ++power_;
            return;
        }
        if (whole_ < kInexact) whole_ = whole_ * 10 + digit;
        telling_[count_++] = static_cast<char>('0' + digit);
    }

    double FromCharacters() const noexcept {
        char number[kTellingDigits + 24];
        char* end = std::copy_n(telling_, count_, number);
        *end++ = 'e';
        end = std::to_chars(end, std::end(number), power_).ptr;
        // Stays where there is no digit, and beyond the range of double.
        const bool isGreat = count_ > 0 && static_cast<long long>(count_) + power_ > 0;
        double value = isGreat ? std::numeric_limits<double>::infinity() : 0.0;
        std::from_chars(number, end, value);
        return value;
    }

    std::wstring_view text_;
    std::size_t next_ = 0;
    std::uint64_t whole_ = 0;  // of all digits where it is below kInexact
    std::size_t count_ = 0;
    long long power_ = 0;
    char telling_[kTellingDigits];
};

}  // namespace

Decimal ReadDecimal(std::wstring_view text) noexcept {
    Digits digits(text);
    const bool isNegative = digits.Take(L"-");
    bool isValid = digits.TakeWhole();
    if (isValid && digits.Take(L".")) isValid = digits.TakeFraction();
    if (isValid && digits.Take(L"eE")) {
        const bool isSmaller = digits.Take(L"-");
        if (!isSmaller) digits.Take(L"+");
        isValid = digits.TakeExponent(isSmaller);
    }
    const double value = isValid ? digits.Value() : 0.0;
    return {isNegative ? -value : value, digits.position(), isValid};
}
