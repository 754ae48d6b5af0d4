#include "rw/date.h"

#include "platform/win32.h"
#include "rw/file.h"
#include "rw/virtual_streams.h"

static_assert(RWDate(1, 1, 2000).dayNumber() == 2451545);
static_assert(RWDate(2451605).dayOfMonth() == 1 && RWDate(2451605).month() == 3);

// A host may take them by reference.
constexpr unsigned RWDate::kFirstYear;
constexpr unsigned RWDate::kLastYear;

namespace {

RWDate Today() {
    SYSTEMTIME now = {};
    ::GetLocalTime(&now);
    return {now.wDay, now.wMonth, now.wYear};
}

int DayOfYear(const RWDate::Calendar& date) {
    unsigned day = date.day - 1;
    for (unsigned month = 1; month < date.month; ++month) day += RWDate::daysInMonth(month, date.year);
    return static_cast<int>(day);
}

}  // namespace

RWDate::RWDate() : RWDate(Today()) {}

void RWDate::extract(std::tm* fields) const {
    *fields = {};
    if (!dayNumber_) return;
    const Calendar date = calendar();
    fields->tm_mday = static_cast<int>(date.day);
    fields->tm_mon = static_cast<int>(date.month) - 1;
    fields->tm_year = date.year - 1900;
    fields->tm_wday = static_cast<int>(weekDay() % 7);
    fields->tm_yday = DayOfYear(date);
    fields->tm_isdst = -1;
}

void RWDate::saveOn(RWFile& file) const {
    RWFileOstream stream(file);
    saveOn(stream);
}

void RWDate::saveOn(RWvostream& stream) const {
    stream << dayNumber_;
}

void RWDate::restoreFrom(RWFile& file) {
    RWFileIstream stream(file);
    restoreFrom(stream);
}

void RWDate::restoreFrom(RWvistream& stream) {
    std::uint32_t number = 0;
    if ((stream >> number).good()) dayNumber_ = number;
}
