#include "rw/date.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <tuple>

#include "rw/file.h"
#include "tests/support/test_folder.h"

namespace {

// Julian day numbers begin so many days before those of the system's clock.
constexpr int kClockBegins = 2440588;

void ExpectCalendarsDay(int year, unsigned month, unsigned day) {
    const auto expected = std::chrono::year(year) / static_cast<int>(month) / static_cast<int>(day);
    SCOPED_TRACE(std::to_string(year) + "-" + std::to_string(month) + "-" + std::to_string(day));
    const RWDate date(day, month, static_cast<unsigned>(year));
    if (!expected.ok() || year < 1 || year > 10000) {
        EXPECT_EQ(0u, date.dayNumber());
        return;
    }
    const std::chrono::sys_days days(expected);
    EXPECT_EQ(days.time_since_epoch().count() + kClockBegins, std::int64_t{date.dayNumber()});
    const RWDate::Calendar parts = RWDate(date.dayNumber()).calendar();
    EXPECT_EQ(expected,
              std::chrono::year(parts.year) / static_cast<int>(parts.month) / static_cast<int>(parts.day));
    EXPECT_EQ(std::chrono::weekday(days).iso_encoding(), date.weekDay());
    std::tm fields;
    date.extract(&fields);
    EXPECT_EQ((days - std::chrono::sys_days(expected.year() / 1 / 1)).count(), fields.tm_yday);
    EXPECT_EQ(expected, std::chrono::year(fields.tm_year + 1900) / (fields.tm_mon + 1) / fields.tm_mday);
    EXPECT_EQ(std::chrono::weekday(days).c_encoding(), static_cast<unsigned>(fields.tm_wday));
    EXPECT_EQ(0, fields.tm_hour);
    EXPECT_EQ(-1, fields.tm_isdst);
}

TEST(Date, IsTheCalendarsDayByItsPartsAndByItsNumber) {
    for (const int year : {-1, 0, 1, 4, 1899, 1900, 2000, 2023, 2024, 9999, 10000, 10001}) {
        for (unsigned place = 0; place < 14 * 33; ++place) ExpectCalendarsDay(year, place / 33, place % 33);
    }
}

TEST(Date, OfANumberAloneMayBeNoneOrLieFarAway) {
    std::tm fields;
    RWDate(0u).extract(&fields);
    EXPECT_EQ(0, fields.tm_mday);
    EXPECT_EQ(0u, RWDate(0u).dayOfMonth() + RWDate(0u).month() + RWDate(0u).year());
    EXPECT_EQ(0u, RWDate(1721425).year()) << "31 December of the year before 1";
    EXPECT_NE(0u, RWDate().dayNumber());
    constexpr std::uint32_t kCycle = 146097;  // of 400 years, which are alike
    for (std::uint32_t number = kCycle + 1; number > kCycle; number += 65521) {
        const RWDate::Calendar date = RWDate(number).calendar();
        const RWDate::Calendar before = RWDate(number - kCycle).calendar();
        ASSERT_EQ(std::tuple(before.year + 400, before.month, before.day),
                  std::tuple(date.year, date.month, date.day))
            << number;
    }
}

TEST(Date, GoesThroughAFileAndStaysWhereThatEnds) {
    const TestFolder folder;
    RWFile file((folder / L"dates").c_str(), L"w+b");
    RWDate(29, 2, 2000).saveOn(file);
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(std::string("\x94\x68\x25\0", 4), BytesOf(folder / L"dates"));
    RWDate date(1, 1, 1);
    for (int i = 0; i < 2; ++i) {
        file.SeekTo(4 * i);
        date.restoreFrom(file);
        EXPECT_EQ(2451604u, date.dayNumber()) << i;
    }
}

}  // namespace
