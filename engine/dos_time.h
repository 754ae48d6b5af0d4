#pragma once

#include <cstdint>
#include <string>

namespace ql::zip {

// A local time as archives keep it: the date in the upper half, two-second steps. Later times are greater
// numbers.
using DosTime = std::uint32_t;

struct CalendarTime {
    int year, month, day, hour, minute, second;
};

// Years outside 1980 to 2107 become the first or the last moment that fits.
DosTime ToDosTime(const CalendarTime& time);
CalendarTime FromDosTime(DosTime time);

// "MM/DD/YY HH:MM:SS"; fields that are no date stand as they are.
std::string DosTimeText(DosTime time);

}  // namespace ql::zip
