#pragma once

#include <algorithm>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <ctime>

#include "platform/export.h"
#include "rw/date.h"
#include "values/number.h"

// A date as a plain record of bytes.
struct tagQL_DATE {
    std::uint32_t day;    // 1 to 31
    std::uint32_t month;  // 1 to 12
    std::uint32_t year;   // four digits
};
static_assert(sizeof(tagQL_DATE) == 12 && offsetof(tagQL_DATE, month) == 4 &&
              offsetof(tagQL_DATE, year) == 8);

// The units of CDate::Add and CDate::Difference. Any other value is harmless there.
enum DateUnit : int {
    DATE_UNIT_DAYS = 0,
    DATE_UNIT_MONTHS = 1,
    DATE_UNIT_YEARS = 2,
};

// The date of an answer: a day of the proleptic Gregorian calendar without time of day, held as its Julian
// day number. The day number 0 is no date. The null date, 1 January 10000, marks an unanswered date: it is
// greater than every valid date and itself not valid. A plain value; distinct objects may be used from
// distinct threads.
//
//     CDate due(31, 1, 2024);
//     due.Add(1, DATE_UNIT_MONTHS);  // 29 February 2024
//
// Kept on purpose:
//  - -- moves a date one day forward, as ++ does; the previous day is `date -= 1`.
//  - A null date takes part in comparison and Difference like any other day.
//  - Amounts of 32000 units and more, either way, add nothing.
class QL_API CDate {
  public:
    static const RWDate nullDate;  // 1 January 10000

    CDate() = default;  // today by the local clock
    // The day of a record: as the next.
    constexpr explicit CDate(const tagQL_DATE& date) noexcept : CDate(date.day, date.month, date.year) {}
    // Day number 0 when the three form no date of the years 1 to 10000.
    constexpr CDate(unsigned day, unsigned month, unsigned year) noexcept : date_(day, month, year) {}
    // Takes any number as it is; of a wider type its lower 32 bits.
    constexpr explicit CDate(unsigned long dayNumber) noexcept
        : date_(static_cast<std::uint32_t>(dayNumber)) {}

    // A day number other than 0, up to 31 December 9999. A number before the year 1 is valid too.
    constexpr bool IsValid() const noexcept { return DayNumber() - 1 < kNullNumber - 1; }
    constexpr bool IsNull() const noexcept { return DayNumber() == kNullNumber; }
    constexpr void SetNull() noexcept { date_ = RWDate(kNullNumber); }

    constexpr std::uint32_t DayNumber() const noexcept { return date_.dayNumber(); }  // Julian
    constexpr unsigned Day() const noexcept { return date_.dayOfMonth(); }            // 0 for no date
    constexpr unsigned Month() const noexcept { return date_.month(); }  // 1 January; 0 for no date
    constexpr unsigned Year() const noexcept { return date_.year(); }  // 0 for no date and before the year 1

    // 1 Sunday to 7 Saturday; for no date as if 0 were a day like others.
    constexpr unsigned DayOfWeek() const noexcept { return date_.weekDay() % 7 + 1; }

    // "JAN" to "DEC", in no locale; "" for no date. The text lives as long as the library.
    const wchar_t* MonthStr() const noexcept;

    // Unchecked: a number that leaves 32 bits comes in again at the other end.
    constexpr CDate& operator++() noexcept { return *this += 1; }
    constexpr CDate& operator--() noexcept { return ++*this; }  // forward: see above
    constexpr CDate& operator+=(int days) noexcept;
    constexpr CDate& operator-=(int days) noexcept;

    // Order and equality of the day numbers.
    friend constexpr bool operator==(CDate a, CDate b) noexcept { return a.DayNumber() == b.DayNumber(); }
    friend constexpr auto operator<=>(CDate a, CDate b) noexcept { return a.DayNumber() <=> b.DayNumber(); }

    // Fills every field, the time of day with zero; tm_isdst is -1. No date fills all with 0.
    void extract(std::tm& fields) const;
    // Seconds since 1970, UTC, of local midnight at the start of the date by the process's time zone; -1 for
    // no date and where the C library cannot represent it.
    void extract(long long& seconds) const;

    void SetTBDate(const tagQL_DATE& date) noexcept;  // unchanged unless the record is a valid date
    void GetTBDate(tagQL_DATE* date) const noexcept;  // zeros for no date; nothing is written to null

    // The date so many units later, earlier for a negative amount. The fraction of the amount is cut off; an
    // amount not strictly between -32000 and 32000, the null number and not-a-number count as 0. A day that
    // its month does not have becomes the month's last: 31 January and a month, 29 February and a year -> 28
    // February. An unknown unit adds nothing. The null date when this one is not valid or the result lies
    // outside the years 1582 to 9999.
    CDate Add(const Number& amount, DateUnit unit) const noexcept;

    // How many whole units lie between the two dates, in whichever order; never negative. A month or year
    // that began on a day of the month is whole on the same day, not at the month's end: 31 January to 28
    // February -> 0 months, 29 February 2020 to 28 February 2021 -> 0 years. 0 for an unknown unit. For no
    // date Day, Month and Year are 0.
    inline Number Difference(const CDate& other, DateUnit unit) const noexcept;

    // Persists as the day number, 32 bits little-endian.
    std::size_t binaryStoreSize() const noexcept { return sizeof(std::uint32_t); }
    void saveOn(RWFile& file) const { date_.saveOn(file); }
    void saveOn(RWvostream& stream) const { date_.saveOn(stream); }
    void restoreFrom(RWFile& file) { date_.restoreFrom(file); }          // unchanged when the read fails
    void restoreFrom(RWvistream& stream) { date_.restoreFrom(stream); }  // unchanged when the read fails

  private:
    static constexpr std::uint32_t kNullNumber = RWDate(1, 1, 10000).dayNumber();

    // Whole ones. No date counts as the year 0: a later one, before the year 0, may look earlier.
    static constexpr int MonthsBetween(const RWDate::Calendar& from, const RWDate::Calendar& to) noexcept;
    static constexpr int YearsBetween(const RWDate::Calendar& from, const RWDate::Calendar& to) noexcept;

    RWDate date_;
};
static_assert(sizeof(CDate) == 4);

constexpr CDate& CDate::operator+=(int days) noexcept {
    date_ = RWDate(DayNumber() + static_cast<std::uint32_t>(days));
    return *this;
}

constexpr CDate& CDate::operator-=(int days) noexcept {
    date_ = RWDate(DayNumber() - static_cast<std::uint32_t>(days));
    return *this;
}

constexpr int CDate::MonthsBetween(const RWDate::Calendar& from, const RWDate::Calendar& to) noexcept {
    const int months = (to.year - from.year) * 12 + static_cast<int>(to.month) - static_cast<int>(from.month);
    return std::max(0, months - (to.day < from.day ? 1 : 0));
}

constexpr int CDate::YearsBetween(const RWDate::Calendar& from, const RWDate::Calendar& to) noexcept {
    const bool isShort = to.month < from.month || (to.month == from.month && to.day < from.day);
    return std::max(0, to.year - from.year - (isShort ? 1 : 0));
}

inline Number CDate::Difference(const CDate& other, DateUnit unit) const noexcept {
    const CDate& earlier = *this < other ? *this : other;
    const CDate& later = *this < other ? other : *this;
    switch (unit) {
        case DATE_UNIT_DAYS: return later.DayNumber() - earlier.DayNumber();
        case DATE_UNIT_MONTHS: return MonthsBetween(earlier.date_.calendar(), later.date_.calendar());
        case DATE_UNIT_YEARS: return YearsBetween(earlier.date_.calendar(), later.date_.calendar());
        default: return 0;
    }
}
