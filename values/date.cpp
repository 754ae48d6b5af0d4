#include "values/date.h"

#include <algorithm>

namespace {

using Calendar = RWDate::Calendar;

constexpr int kFirstAddYear = 1582;
constexpr int kLastAddYear = 9999;
constexpr double kAddLimit = 32000;

constexpr const wchar_t* kMonthNames[] = {L"",    L"JAN", L"FEB", L"MAR", L"APR", L"MAY", L"JUN",
                                          L"JUL", L"AUG", L"SEP", L"OCT", L"NOV", L"DEC"};

// Not-a-number is outside every range.
int WholeCount(double amount) {
    return amount > -kAddLimit && amount < kAddLimit ? static_cast<int>(amount) : 0;
}

CDate Null() {
    return CDate(CDate::nullDate.dayNumber());
}

CDate Clamped(unsigned day, unsigned month, int year) {
    if (year < kFirstAddYear || year > kLastAddYear) return Null();
    return {std::min(day, RWDate::daysInMonth(month, year)), month, static_cast<unsigned>(year)};
}

CDate AddDays(const CDate& date, int days) {
    CDate sum = date;
    sum += days;
    return sum >= CDate(1, 1, kFirstAddYear) && sum.IsValid() ? sum : Null();
}

CDate AddMonths(const Calendar& date, int months) {
    const int sum = date.year * 12 + static_cast<int>(date.month) - 1 + months;
    // Below 0 the month is none, but the year is out of range.
    return Clamped(date.day, static_cast<unsigned>(sum % 12) + 1, sum / 12);
}

}  // namespace

constinit const RWDate CDate::nullDate(kNullNumber);

const wchar_t* CDate::MonthStr() const noexcept {
    return kMonthNames[Month()];
}

void CDate::extract(std::tm& fields) const {
    date_.extract(&fields);
}

void CDate::extract(long long& seconds) const {
    std::tm fields;
    extract(fields);
    seconds = DayNumber() ? ::_mktime64(&fields) : -1;
}

void CDate::SetTBDate(const tagQL_DATE& date) noexcept {
    const CDate made(date);
    if (made.IsValid()) *this = made;
}

void CDate::GetTBDate(tagQL_DATE* date) const noexcept {
    if (!date) return;
    const Calendar calendar = date_.calendar();
    *date = {calendar.day, calendar.month, static_cast<std::uint32_t>(std::max(calendar.year, 0))};
}

CDate CDate::Add(const Number& amount, DateUnit unit) const noexcept {
    if (!IsValid()) return Null();
    const int count = WholeCount(amount.GetDouble());
    switch (unit) {
        case DATE_UNIT_MONTHS: return AddMonths(date_.calendar(), count);
        case DATE_UNIT_YEARS: return AddMonths(date_.calendar(), count * 12);
        case DATE_UNIT_DAYS: return AddDays(*this, count);
        default: return AddDays(*this, 0);
    }
}
