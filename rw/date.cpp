#include "rw/date.h"

#include "platform/win32.h"
#include "rw/file.h"
#include "rw/virtual_streams.h"

namespace {

// Day numbers are counted from 1 March of a year divisible by 400, so that the leap day is a year's last and
// the months' lengths repeat in fives. 1 March 0000 has the Julian day number 1721120.
constexpr std::int64_t kEpoch = 1721120;
constexpr std::int64_t kDaysPerEra = 146097;  // 400 years

struct Calendar {
    unsigned day = 0;
    unsigned month = 0;
    std::int64_t year = 0;
};

constexpr std::int64_t DayNumber(unsigned day, unsigned month, std::int64_t year) {
    const std::int64_t marchYear = month > 2 ? year : year - 1;
    const std::int64_t marchMonth = month > 2 ? month - 3 : month + 9;
    return kEpoch + marchYear * 365 + marchYear / 4 - marchYear / 100 + marchYear / 400 +
           (153 * marchMonth + 2) / 5 + day - 1;
}

constexpr Calendar FromDayNumber(std::uint32_t dayNumber) {
    // Twelve eras further back lies before day number 1, so that the divisions below never meet a negative
    // number.
    const std::int64_t days = static_cast<std::int64_t>(dayNumber) - kEpoch + 12 * kDaysPerEra;
    const std::int64_t era = days / kDaysPerEra;
    const std::int64_t dayOfEra = days % kDaysPerEra;
    const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const std::int64_t marchMonth = (5 * dayOfYear + 2) / 153;
    const auto day = static_cast<unsigned>(dayOfYear - (153 * marchMonth + 2) / 5 + 1);
    const auto month = static_cast<unsigned>(marchMonth < 10 ? marchMonth + 3 : marchMonth - 9);
    return {day, month, (era - 12) * 400 + yearOfEra + (month <= 2 ? 1 : 0)};
}

static_assert(DayNumber(1, 1, 2000) == 2451545);
static_assert(FromDayNumber(2451545).year == 2000 && FromDayNumber(2451605).day == 1);

constexpr std::uint32_t CheckedDayNumber(unsigned day, unsigned month, unsigned year) {
    if (year < RWDate::kFirstYear || year > RWDate::kLastYear || month < 1 || month > 12 || day < 1 ||
        day > 31)
        return 0;
    const auto number = static_cast<std::uint32_t>(DayNumber(day, month, year));
    return FromDayNumber(number).day == day ? number : 0;
}

std::uint32_t Today() {
    SYSTEMTIME now = {};
    ::GetLocalTime(&now);
    return CheckedDayNumber(now.wDay, now.wMonth, now.wYear);
}

}  // namespace

RWDate::RWDate() : dayNumber_(Today()) {}

RWDate::RWDate(unsigned day, unsigned month, unsigned year)
    : dayNumber_(CheckedDayNumber(day, month, year)) {}

unsigned RWDate::dayOfMonth() const noexcept {
    return dayNumber_ ? FromDayNumber(dayNumber_).day : 0;
}

unsigned RWDate::month() const noexcept {
    return dayNumber_ ? FromDayNumber(dayNumber_).month : 0;
}

unsigned RWDate::year() const noexcept {
    if (!dayNumber_) return 0;
    const std::int64_t year = FromDayNumber(dayNumber_).year;
    return year > 0 ? static_cast<unsigned>(year) : 0;  // numbers before the year 1 have none
}

void RWDate::extract(std::tm* fields) const {
    *fields = {};
    if (!dayNumber_) return;
    const Calendar date = FromDayNumber(dayNumber_);
    fields->tm_mday = static_cast<int>(date.day);
    fields->tm_mon = static_cast<int>(date.month) - 1;
    fields->tm_year = static_cast<int>(date.year - 1900);
    fields->tm_wday = static_cast<int>(weekDay() % 7);
    fields->tm_yday = static_cast<int>(dayNumber_ - DayNumber(1, 1, date.year));
    fields->tm_isdst = -1;
}

void RWDate::saveOn(RWFile& file) const {
    file.Write(dayNumber_);
}

void RWDate::saveOn(RWvostream& stream) const {
    stream << dayNumber_;
}

void RWDate::restoreFrom(RWFile& file) {
    std::uint32_t number = 0;
    if (file.Read(number)) dayNumber_ = number;
}

void RWDate::restoreFrom(RWvistream& stream) {
    std::uint32_t number = 0;
    if ((stream >> number).good()) dayNumber_ = number;
}
