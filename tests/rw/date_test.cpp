#include "rw/date.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "rw/file.h"
#include "rw/virtual_streams.h"
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
}

TEST(Date, IsTheCalendarsDayByItsPartsAndByItsNumber) {
    for (const int year : {-1, 0, 1, 4, 1899, 1900, 2000, 2023, 2024, 9999, 10000, 10001}) {
        for (unsigned place = 0; place < 14 * 33; ++place) ExpectCalendarsDay(year, place / 33, place % 33);
    }
}

TEST(Date, GoesThroughAFileAndStaysWhereThatEnds) {
    const TestFolder folder;
    RWFile file((folder / L"dates").c_str(), L"w+b");
    RWDate(31, 12, 2023).saveOn(file);
    EXPECT_TRUE(file.isValid());
    EXPECT_TRUE(RWFileOstream(file).flush().good());
    RWDate date(1, 1, 1);
    for (int i = 0; i < 2; ++i) {
        file.SeekTo(4 * i);
        date.restoreFrom(file);
        EXPECT_EQ(12u, date.month()) << i;
    }
}

}  // namespace
