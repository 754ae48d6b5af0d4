#pragma once

#include <cstddef>

#include "platform/export.h"

class RWFile;
class RWvistream;
class RWvostream;

// The number of an answer: a double, of which one value is null (unanswered) and two more mark unbounded
// limits. A plain value; distinct objects may be used from distinct threads.
//
// Kept on purpose:
//  - A null is neither equal nor unequal to anything, itself included: all six comparisons answer false, also
//    !=. An unanswered value meets no condition.
//  - Null spreads through +, -, * and /, but dividing by zero throws before null is looked at, a float of
//    value 0.
//  - The two limits are markers only: arithmetic and comparison take them as ordinary numbers, and nothing
//    saturates.
//  - A result that happens to be -1e101 is null.
class QL_API Number {
  public:
    // The doubles that stand for null and the two limits; stored answers hold them.
    static constexpr double m_noNumber = -1e101;
    static constexpr double m_maxNumber = 1e100;
    static constexpr double m_minNumber = -1e100;

    constexpr Number() noexcept = default;                       // null
    constexpr Number(double value) noexcept : m_value(value) {}  // not explicit: a double is a number

    // As it is kept, also where it stands for null or a limit.
    constexpr double GetDouble() const noexcept { return m_value; }
    constexpr void SetDouble(double value) noexcept { m_value = value; }

    // Whether it is one of the three, exactly; and making it so.
    constexpr bool IsNull() const noexcept { return m_value == m_noNumber; }
    constexpr void SetNull() noexcept { m_value = m_noNumber; }
    constexpr bool IsMax() const noexcept { return m_value == m_maxNumber; }
    constexpr void SetMax() noexcept { m_value = m_maxNumber; }
    constexpr bool IsMin() const noexcept { return m_value == m_minNumber; }
    constexpr void SetMin() noexcept { m_value = m_minNumber; }

    // Null stays null; the negation of 0 is negative zero, that of the largest value the smallest.
    constexpr Number operator-() const noexcept { return IsNull() ? *this : Number(-m_value); }

    // Null when either is null.
    friend constexpr Number operator+(Number a, Number b) noexcept {
        return AreAnswered(a, b) ? Number(a.m_value + b.m_value) : Number();
    }
    friend constexpr Number operator-(Number a, Number b) noexcept {
        return AreAnswered(a, b) ? Number(a.m_value - b.m_value) : Number();
    }
    friend constexpr Number operator*(Number a, Number b) noexcept {
        return AreAnswered(a, b) ? Number(a.m_value * b.m_value) : Number();
    }

    // False when either is null.
    friend constexpr bool operator==(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value == b.m_value;
    }
    friend constexpr bool operator!=(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value != b.m_value;
    }
    friend constexpr bool operator<(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value < b.m_value;
    }
    friend constexpr bool operator>(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value > b.m_value;
    }
    friend constexpr bool operator<=(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value <= b.m_value;
    }
    friend constexpr bool operator>=(Number a, Number b) noexcept {
        return AreAnswered(a, b) && a.m_value >= b.m_value;
    }

    // Persists as the double, 64 bits little-endian.
    std::size_t binaryStoreSize() const noexcept { return sizeof m_value; }
    void saveOn(RWFile& file) const;
    void saveOn(RWvostream& stream) const;
    void restoreFrom(RWFile& file);        // unchanged when the read fails
    void restoreFrom(RWvistream& stream);  // unchanged when the read fails

  private:
    static constexpr bool AreAnswered(Number a, Number b) noexcept { return !a.IsNull() && !b.IsNull(); }

    double m_value = m_noNumber;
};
static_assert(sizeof(Number) == 8);

// Throws a float of value 0 when the divisor is 0 or negative zero, whatever the dividend: the one exception
// that leaves this library, but for std::bad_alloc where copies and constructors say so. Otherwise null when
// either is null.
QL_API Number operator/(Number dividend, Number divisor);
