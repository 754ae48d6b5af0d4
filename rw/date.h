#pragma once

#include <cstdint>
#include <ctime>

#include "platform/export.h"

class RWFile;
class RWvistream;
class RWvostream;

// A calendar day in the proleptic Gregorian calendar (no gap in October 1582), held as its Julian day number:
// consecutive days have consecutive numbers. 0 is no date. Every 32-bit number is safe; those before the year
// 1 and after the year 10000 can be made from a number only. Persists as the number, 32 bits little-endian. A
// plain value.
class QL_API RWDate {
  public:
    // What a date made of day, month and year may have.
    static constexpr unsigned kFirstYear = 1;
    static constexpr unsigned kLastYear = 10000;

    // Day and month are 0 for no date. The year may be 0 or negative here.
    struct Calendar {
        unsigned day = 0;    // 1 to 31
        unsigned month = 0;  // 1 to 12
        int year = 0;        // as the calendar is carried back: 0 comes before 1
    };

    RWDate();  // today by the local clock

    // No date when the three form none of those years.
    constexpr RWDate(unsigned day, unsigned month, unsigned year) noexcept
        : dayNumber_(IsDate(day, month, year) ? NumberOf(day, month, year) : 0) {}

    constexpr explicit RWDate(std::uint32_t dayNumber) noexcept : dayNumber_(dayNumber) {}  // any number

    constexpr std::uint32_t dayNumber() const noexcept { return dayNumber_; }  // 0 for no date
    constexpr Calendar calendar() const noexcept;  // the next three at the price of one
    constexpr unsigned dayOfMonth() const noexcept { return calendar().day; }  // 0 for no date
    constexpr unsigned month() const noexcept { return calendar().month; }     // 0 for no date
    constexpr unsigned year() const noexcept;  // 0 for no date and before the year 1
    constexpr unsigned weekDay() const noexcept { return dayNumber_ % 7 + 1; }  // 1 Monday to 7 Sunday

    // For a month of 1 to 12.
    static constexpr unsigned daysInMonth(unsigned month, int year) noexcept;

    // Fills every field; the time of day is zero, daylight saving is left to the C library to find out. All
    // fields are zero (and the month's day is none) for number 0.
    void extract(std::tm* fields) const;

    // Write and read the number. A write that fails shows in the stream, on a file in nothing.
    void saveOn(RWFile& file) const;
    void saveOn(RWvostream& stream) const;
    void restoreFrom(RWFile& file);        // unchanged when the read fails
    void restoreFrom(RWvistream& stream);  // unchanged when the read fails

  private:
    static constexpr bool IsDate(unsigned day, unsigned month, unsigned year) noexcept;
    static constexpr std::uint32_t NumberOf(unsigned day, unsigned month, unsigned year) noexcept;

    // Days are counted from 1 March -4800, the start of a 400-year cycle: the leap day is then a year's last
    // and no number is negative.
    static constexpr std::uint32_t kDaysBeforeNumberZero = 32044;
    static constexpr int kYearsBeforeZero = 4800;
    static constexpr std::uint32_t kDaysPerCycle = 146097;
    static constexpr std::uint32_t kDaysPerFourYears = 1461;
    static constexpr std::uint32_t kDaysFromMarchToDecember = 306;

    std::uint32_t dayNumber_;
};

constexpr unsigned RWDate::daysInMonth(unsigned month, int year) noexcept {
    constexpr unsigned char kDays[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeapDay = month == 2 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return isLeapDay ? 29 : kDays[month];
}

constexpr bool RWDate::IsDate(unsigned day, unsigned month, unsigned year) noexcept {
    return year >= kFirstYear && year <= kLastYear && month >= 1 && month <= 12 && day >= 1 &&
           day <= daysInMonth(month, static_cast<int>(year));
}

// Months are counted from March, 3 to 14; the lengths of 31 and 30 days then follow a straight line. Years
// stay below 14801, so that no product leaves 32 bits.
constexpr std::uint32_t RWDate::NumberOf(unsigned day, unsigned month, unsigned year) noexcept {
    const bool endsYear = month <= 2;
    const std::uint32_t marchYear = year + kYearsBeforeZero - (endsYear ? 1 : 0);
    const std::uint32_t marchMonth = month + (endsYear ? 12 : 0);
    const std::uint32_t century = marchYear / 100;
    const std::uint32_t daysToYear = kDaysPerFourYears * marchYear / 4 - century + century / 4;
    const std::uint32_t daysToMonth = (979 * marchMonth - 2919) / 32;
    return daysToYear + daysToMonth + day - 1 - kDaysBeforeNumberZero;
}

// The way back multiplies by scaled reciprocals, each exact over the range that stands beside it: a year of a
// century is the upper half of a 64-bit product whose lower half still holds the day of the year.
constexpr RWDate::Calendar RWDate::calendar() const noexcept {
    if (dayNumber_ == 0) return {};
    // Whole cycles come off a number so great that four times it would overflow.
    const std::uint32_t cycles = dayNumber_ < (1U << 29) ? 0 : dayNumber_ / kDaysPerCycle;
    const std::uint32_t days =
        dayNumber_ - cycles * kDaysPerCycle + kDaysBeforeNumberZero;  // below 2^29 + 32044

    const std::uint32_t quarterDays = 4 * days + 3;                      // below 2^31 + 128179
    const std::uint32_t century = quarterDays / kDaysPerCycle;           // 0 to 14699
    const std::uint32_t dayOfCentury = quarterDays % kDaysPerCycle / 4;  // 0 to 36524

    constexpr std::uint32_t kPerQuarterDay = 2939745;  // 2^32 / 1461, rounded up
    const std::uint64_t scaled = std::uint64_t{kPerQuarterDay} * (4 * dayOfCentury + 3);
    const auto yearOfCentury = static_cast<std::uint32_t>(scaled >> 32);                      // 0 to 99
    const std::uint32_t dayOfYear = static_cast<std::uint32_t>(scaled) / kPerQuarterDay / 4;  // 0 to 365

    const std::uint32_t monthAndDay = 2141 * dayOfYear + 197913;  // the month in units of 2^16, below 2^20
    const std::uint32_t marchMonth = monthAndDay >> 16;           // 3 to 14
    const bool endsYear = dayOfYear >= kDaysFromMarchToDecember;
    const std::uint32_t marchYear = 400 * cycles + 100 * century + yearOfCentury;
    return {(monthAndDay & 0xFFFF) / 2141 + 1, endsYear ? marchMonth - 12 : marchMonth,
            static_cast<int>(marchYear) - kYearsBeforeZero + (endsYear ? 1 : 0)};
}

constexpr unsigned RWDate::year() const noexcept {
    const int year = calendar().year;
    return year > 0 ? static_cast<unsigned>(year) : 0;
}
