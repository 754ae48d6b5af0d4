#pragma once

#include <cstdint>
#include <ctime>

#include "platform/export.h"

class RWFile;
class RWvistream;
class RWvostream;

// A calendar day in the proleptic Gregorian calendar (no gap in October 1582), held as its Julian day number:
// consecutive days have consecutive numbers. 0 is no date. Persists as the number, 32 bits little-endian. A
// plain value.
class QL_API RWDate {
  public:
    static constexpr unsigned kFirstYear = 1;
    static constexpr unsigned kLastYear = 10000;

    RWDate();  // today by the local clock
    RWDate(unsigned day, unsigned month,
           unsigned year);  // number 0 when they form no date of the years above
    explicit RWDate(std::uint32_t dayNumber) noexcept : dayNumber_(dayNumber) {}

    std::uint32_t dayNumber() const noexcept { return dayNumber_; }
    unsigned dayOfMonth() const noexcept;  // this and the next two are 0 for number 0
    unsigned month() const noexcept;       // 1 to 12
    unsigned year() const noexcept;
    unsigned weekDay() const noexcept { return dayNumber_ % 7 + 1; }  // 1 Monday to 7 Sunday

    // Fills every field; the time of day is zero, daylight saving is left to the C library to find out. All
    // fields are zero (and the month's day is none) for number 0.
    void extract(std::tm* fields) const;

    void saveOn(RWFile& file) const;
    void saveOn(RWvostream& stream) const;
    void restoreFrom(RWFile& file);        // unchanged when the read fails
    void restoreFrom(RWvistream& stream);  // unchanged when the read fails

  private:
    std::uint32_t dayNumber_;
};
