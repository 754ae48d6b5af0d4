#include "values/date.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <tuple>

namespace {

namespace chrono = std::chrono;

using Ymd = std::tuple<int, unsigned, unsigned>;  // in the order of time

constexpr DateUnit kDays = DATE_UNIT_DAYS, kMonths = DATE_UNIT_MONTHS, kYears = DATE_UNIT_YEARS;
constexpr auto kNoUnit = static_cast<DateUnit>(3);
constexpr int kJulianDayOf1970 = 2440588;
constexpr const wchar_t* kMonthNames[] = {L"JAN", L"FEB", L"MAR", L"APR", L"MAY", L"JUN",
                                          L"JUL", L"AUG", L"SEP", L"OCT", L"NOV", L"DEC"};

chrono::sys_days SysDays(const CDate& date) {
    return chrono::sys_days(chrono::days(static_cast<int>(date.DayNumber()) - kJulianDayOf1970));
}

Ymd Fields(const CDate& date) {
    return {static_cast<int>(date.Year()), date.Month(), date.Day()};
}

Ymd Fields(const chrono::year_month_day& date) {
    return {static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
            static_cast<unsigned>(date.day())};
}

Ymd LocalDay(std::time_t time) {
    const std::tm local = *std::localtime(&time);
    return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
}

CDate Null() {
    CDate date(0UL);
    date.SetNull();
    return date;
}

// A sum by the standard calendar, the day held within its month. Amounts that are too great and units that
// are none add nothing; dates out of range become null.
Ymd Sum(const CDate& date, double amount, DateUnit unit) {
    const int count = std::abs(amount) < 32000 ? static_cast<int>(amount) : 0;
    chrono::year_month_day sum(SysDays(date) + chrono::days(unit == kDays ? count : 0));
    sum += chrono::months(unit == kMonths ? count : 0);
    sum += chrono::years(unit == kYears ? count : 0);
    if (!sum.ok()) sum = sum.year() / sum.month() / chrono::last;
    const int year = static_cast<int>(sum.year());
    return year < 1582 || year > 9999 ? Fields(Null()) : Fields(sum);
}

// The greatest count of months that does not lead past the other date, were every month endless.
int MonthsBetween(const CDate& date, const CDate& other) {
    const auto monthOf = [](const CDate& of) { return static_cast<int>(of.Year() * 12 + of.Month()); };
    return monthOf(other) - monthOf(date) - (other.Day() < date.Day());
}

}  // namespace

TEST(Date, EveryDayFrom1582To10000AgreesWithTheStandardCalendar) {
    const chrono::sys_days first = chrono::year(1582) / 1 / 1, last = chrono::year(10000) / 12 / 31;
    std::uint32_t number = CDate(1, 1, 1582).DayNumber();
    for (chrono::sys_days day = first; day <= last; day += chrono::days(1), ++number) {
        const CDate date(static_cast<unsigned long>(number));
        const auto [year, month, dayOfMonth] = Fields(chrono::year_month_day(day));
        ASSERT_EQ(Fields(date), std::tie(year, month, dayOfMonth)) << number;
        ASSERT_EQ(SysDays(date), day);
        ASSERT_EQ(CDate(dayOfMonth, month, static_cast<unsigned>(year)), date);
        ASSERT_EQ(date.DayOfWeek(), chrono::weekday(day).c_encoding() + 1) << number;
        ASSERT_EQ(date.IsValid(), year <= 9999);
        ASSERT_EQ(date.IsNull(), Ymd(10000, 1, 1) == Fields(date));
        ASSERT_STREQ(kMonthNames[month - 1], date.MonthStr());
    }
    EXPECT_EQ(number, CDate(31, 12, 10000).DayNumber() + 1);
    EXPECT_EQ(CDate::nullDate.dayNumber(), Null().DayNumber());
    EXPECT_GT(Null(), CDate(31, 12, 9999));
    EXPECT_EQ(CDate(0UL), CDate(29, 2, 1900)) << "three numbers that form no date";
    EXPECT_FALSE(CDate(0UL).IsValid());
    EXPECT_EQ(Ymd(0, 0, 0), Fields(CDate(0UL)));
    EXPECT_STREQ(L"", CDate(0UL).MonthStr());
}

TEST(Date, StepsWrapAndDecrementMovesForward) {
    CDate date(10, 5, 2021);
    EXPECT_EQ(CDate(11, 5, 2021), --date);
    EXPECT_EQ(CDate(30, 4, 2021), date -= 11);
    CDate last(0xFFFFFFFFUL);
    EXPECT_EQ(0U, (++last).DayNumber());
    EXPECT_EQ(0xFFFFFFFFU, (last -= 1).DayNumber());
    EXPECT_EQ(0x7FFFFFFFU, (last += std::numeric_limits<int>::min()).DayNumber());
    EXPECT_EQ(0xFFFFFFFFU, (last -= std::numeric_limits<int>::min()).DayNumber());
}

TEST(Date, RecordIsTakenOnlyWhenValid) {
    CDate date(29, 2, 2020);
    for (const tagQL_DATE& bad : {tagQL_DATE{31, 2, 2020}, tagQL_DATE{1, 1, 10000}}) {
        date.SetTBDate(bad);
        EXPECT_EQ(CDate(29, 2, 2020), date);
    }
    tagQL_DATE record;
    date.GetTBDate(&record);
    EXPECT_EQ(Ymd(2020, 2, 29), Ymd(record.year, record.month, record.day));
    EXPECT_EQ(date, CDate(record));
    CDate(1UL).GetTBDate(&record);
    EXPECT_EQ(0U, record.year);
    date.GetTBDate(nullptr);
}

TEST(DateAdd, AgreesWithTheStandardCalendar) {
    std::vector<CDate> dates = {CDate(1, 1, 1582),   CDate(31, 12, 9999), CDate(1, 1, 9999),
                                CDate(31, 12, 9998), CDate(1, 1, 1581),   CDate(31, 12, 1581),
                                CDate(1UL),          CDate(0UL)};
    for (CDate date(1, 1, 1804); date <= CDate(31, 12, 2203); date += 5) dates.push_back(date);
    const double amounts[] = {
        0.9,     1.0,     -1.0,     -2.0,    5.0,      12.0,     -13.0,        25.0,
        -1199.0, 31999.9, -31999.9, 32000.0, -32000.0, HUGE_VAL, std::nan(""), Number().GetDouble()};
    for (const CDate& date : dates) {
        for (const double amount : amounts) {
            for (const DateUnit unit : {kDays, kMonths, kYears, kNoUnit, static_cast<DateUnit>(-1)}) {
                ASSERT_EQ(Sum(date, amount, unit), Fields(date.Add(amount, unit)))
                    << date.DayNumber() << " + " << amount << " to " << unit;
            }
        }
    }
    EXPECT_EQ(Null(), Null().Add(-1, kDays));
}

TEST(DateDifference, EveryDayOfACycleAgreesWithAPlainModel) {
    for (CDate date(1, 1, 1804); date <= CDate(31, 12, 2203); ++date) {
        for (const int span : {0, 1, 27, 28, 29, 30, 31, 59, 365, 366, 1461, 14609}) {
            CDate other = date;
            other += span;
            const int months = MonthsBetween(date, other);
            ASSERT_EQ(months, date.Difference(other, kMonths).GetDouble()) << date.DayNumber();
            ASSERT_EQ(months / 12, other.Difference(date, kYears).GetDouble()) << date.DayNumber();
        }
    }
}

TEST(DateDifference, Edges) {
    const CDate none(0UL), last2020(31, 12, 2020);
    const std::tuple<CDate, CDate, DateUnit, double> kCases[] = {
        {Null(), CDate(1, 1, 9999), kYears, 1},
        {none, CDate(0xFFFFFFFFUL), kDays, 4294967295.0},
        {none, last2020, kYears, 2020},
        {none, last2020, kMonths, 2020 * 12 + 12},
        {none, CDate(60UL), kMonths, 0},
        {CDate(1UL), CDate(60UL), kMonths, 1},  // 25 November and 23 January, before the year 1
        {none, last2020, kNoUnit, 0}};
    for (const auto& [one, other, unit, count] : kCases) {
        EXPECT_EQ(count, one.Difference(other, unit).GetDouble()) << one.DayNumber() << ' ' << unit;
        EXPECT_EQ(count, other.Difference(one, unit).GetDouble());
    }
}

TEST(DateExtract, TellsLocalMidnight) {
    long long seconds = 0;
    for (CDate date(2, 1, 1970); date < CDate(1, 1, 2038); date += 37) {
        date.extract(seconds);
        EXPECT_EQ(Fields(date), LocalDay(static_cast<std::time_t>(seconds)));
        EXPECT_GT(Fields(date), LocalDay(static_cast<std::time_t>(seconds - 1))) << date.DayNumber();
    }
    CDate(0UL).extract(seconds);
    EXPECT_EQ(-1, seconds);
}

TEST(Date, DefaultIsTodayByTheLocalClock) {
    const Ymd before = LocalDay(std::time(nullptr)), made = Fields(CDate());
    EXPECT_TRUE(made == before || made == LocalDay(std::time(nullptr)));
}
