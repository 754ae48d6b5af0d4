#include "engine/dos_time.h"

#include <algorithm>

namespace ql::zip {
namespace {

constexpr int kFirstYear = 1980, kLastYear = 2107;
constexpr DosTime kEarliest = 1u << 21 | 1u << 16;
constexpr DosTime kLatest = 127u << 25 | 12u << 21 | 31u << 16 | 23u << 11 | 59u << 5 | 29u;

void AppendTwoDigits(std::string& text, int value) {
    text += static_cast<char>('0' + value / 10);
    text += static_cast<char>('0' + value % 10);
}

}  // namespace

DosTime ToDosTime(const CalendarTime& time) {
    if (time.year < kFirstYear) return kEarliest;
    if (time.year > kLastYear) return kLatest;
    return static_cast<DosTime>((time.year - kFirstYear) << 9 | time.month << 5 | time.day) << 16 |
           static_cast<DosTime>(time.hour << 11 | time.minute << 5 | std::min(time.second, 59) / 2);
}

CalendarTime FromDosTime(DosTime time) {
    const auto bits = [time](int shift, unsigned mask) { return static_cast<int>(time >> shift & mask); };
    return {kFirstYear + bits(25, 0x7f),
            bits(21, 0xf),
            bits(16, 0x1f),
            bits(11, 0x1f),
            bits(5, 0x3f),
            bits(0, 0x1f) * 2};
}

std::string DosTimeText(DosTime time) {
    const CalendarTime t = FromDosTime(time);
    const int fields[] = {t.month, t.day, t.year % 100, t.hour, t.minute, t.second};
    std::string text;
    for (int i = 0; i < 6; ++i) {
        AppendTwoDigits(text, fields[i]);
        if (i < 5) text += "// ::"[i];
    }
    return text;
}

}  // namespace ql::zip
