// Dates beside the standard calendar on the same serial day numbers, and grouped fixed-point text beside fmt,
// the C library and std::to_chars.
#include <benchmark/benchmark.h>
#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <locale>
#include <random>
#include <string>
#include <vector>

#include "values/date.h"
#include "values/number_format.h"

namespace {

namespace chrono = std::chrono;

constexpr std::size_t kCount = 1024;  // of inputs, and of what one iteration works on
constexpr int kJulianDayOf1970 = 2440588;

struct Fields {
    unsigned day;
    unsigned month;
    unsigned year;
};

const std::vector<Fields>& Inputs() {
    static const std::vector<Fields> inputs = [] {
        std::mt19937 random(1);  // NOLINT: the same dates every time
        std::vector<Fields> made(kCount);
        for (Fields& fields : made) fields = {random() % 28 + 1, random() % 12 + 1, random() % 200 + 1900};
        return made;
    }();
    return inputs;
}

std::vector<CDate> Dates() {
    std::vector<CDate> dates;
    for (const auto& [day, month, year] : Inputs()) dates.emplace_back(day, month, year);
    return dates;
}

std::vector<chrono::sys_days> SysDays() {
    std::vector<chrono::sys_days> days;
    for (const CDate& date : Dates())
        days.emplace_back(chrono::days(static_cast<int>(date.DayNumber()) - kJulianDayOf1970));
    return days;
}

// Runs one step on every input, round and round; the time is that of one step.
template <class Input, class Step>
void Run(benchmark::State& state, const std::vector<Input>& inputs, Step step) {
    std::size_t i = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(step(inputs[i], inputs[(i + 1) % kCount]));
        i = (i + 1) % kCount;
    }
}

chrono::sys_days ToSysDays(const Fields& fields) {
    const chrono::year_month_day date(chrono::year(static_cast<int>(fields.year)),
                                      chrono::month(fields.month), chrono::day(fields.day));
    return date.ok() ? chrono::sys_days(date) : chrono::sys_days();
}

void MakeOurs(benchmark::State& state) {
    Run(state, Inputs(), [](const Fields& f, const Fields&) { return CDate(f.day, f.month, f.year); });
}

void MakeChrono(benchmark::State& state) {
    Run(state, Inputs(), [](const Fields& f, const Fields&) { return ToSysDays(f); });
}

// By up to eleven months, either way.
int MonthsToAdd(unsigned number) {
    return static_cast<int>(number % 23) - 11;
}

void AddMonthsOurs(benchmark::State& state) {
    Run(state, Dates(), [](const CDate& date, const CDate& other) {
        return date.Add(MonthsToAdd(other.DayNumber()), DATE_UNIT_MONTHS);
    });
}

void AddMonthsChrono(benchmark::State& state) {
    Run(state, SysDays(), [](chrono::sys_days day, chrono::sys_days other) {
        const auto number = static_cast<unsigned>(other.time_since_epoch().count() + kJulianDayOf1970);
        const chrono::year_month_day sum = chrono::year_month_day(day) + chrono::months(MonthsToAdd(number));
        return chrono::sys_days(sum.ok() ? sum : sum.year() / sum.month() / chrono::last);
    });
}

void DifferenceOurs(benchmark::State& state) {
    Run(state, Dates(), [](const CDate& date, const CDate& other) {
        return date.Difference(other, DATE_UNIT_MONTHS).GetDouble();
    });
}

void DifferenceChrono(benchmark::State& state) {
    Run(state, SysDays(), [](chrono::sys_days day, chrono::sys_days other) {
        const chrono::year_month_day earlier(std::min(day, other));
        const chrono::year_month_day later(std::max(day, other));
        const auto months = (later.year() / later.month() - earlier.year() / earlier.month()).count();
        return static_cast<double>(later.day() < earlier.day() ? months - 1 : months);
    });
}

void DifferenceDaysOurs(benchmark::State& state) {
    Run(state, Dates(), [](const CDate& date, const CDate& other) {
        return date.Difference(other, DATE_UNIT_DAYS).GetDouble();
    });
}

void DifferenceDaysChrono(benchmark::State& state) {
    Run(state, SysDays(), [](chrono::sys_days day, chrono::sys_days other) {
        return static_cast<double>((std::max(day, other) - std::min(day, other)).count());
    });
}

void DayOfWeekOurs(benchmark::State& state) {
    Run(state, Dates(), [](const CDate& date, const CDate&) { return date.DayOfWeek(); });
}

void DayOfWeekChrono(benchmark::State& state) {
    Run(state, SysDays(),
        [](chrono::sys_days day, chrono::sys_days) { return chrono::weekday(day).c_encoding() + 1; });
}

// Amounts of money of one to nine digits before the point, every third negative.
std::vector<double> Amounts() {
    std::mt19937 random(2);  // NOLINT: the same amounts every time
    std::vector<double> amounts(kCount);
    for (std::size_t i = 0; i < kCount; ++i) {
        double power = 1000;
        for (std::size_t digits = i % 9; digits > 0; --digits) power *= 10;
        amounts[i] = static_cast<double>(random()) / 4294967296.0 * power / 100 * (i % 3 == 0 ? -1 : 1);
    }
    return amounts;
}

void FormatOurs(benchmark::State& state) {
    std::array<wchar_t, FloatFormatBufferChars(2)> buffer;
    Run(state, Amounts(), [&](double value, double) {
        FloatFormatString(value, buffer.data(), true, false, 2);
        benchmark::ClobberMemory();
        return buffer.data();
    });
}

// fmt groups whole numbers only, so it is given cents; for a double its grouping needs a locale.
void FormatFmtGroupDigits(benchmark::State& state) {
    std::array<char, FloatFormatBufferChars(2)> buffer;
    Run(state, Amounts(), [&](double value, double) {
        const auto cents = static_cast<unsigned long long>(std::nearbyint(std::fabs(value) * 100));
        *fmt::format_to(buffer.data(), FMT_COMPILE("{}{}.{:02}"), value < 0 ? "-" : "",
                        fmt::group_digits(cents / 100), cents % 100) = '\0';
        benchmark::ClobberMemory();
        return buffer.data();
    });
}

struct Commas : std::numpunct<char> {
    char do_thousands_sep() const override { return ','; }
    std::string do_grouping() const override { return "\3"; }
};

void FormatFmtLocale(benchmark::State& state) {
    const std::locale commas(std::locale::classic(), new Commas);
    std::array<char, FloatFormatBufferChars(2)> buffer;
    Run(state, Amounts(), [&](double value, double) {
        *fmt::format_to(buffer.data(), commas, "{:.2Lf}", value) = '\0';
        benchmark::ClobberMemory();
        return buffer.data();
    });
}

// Writes a plain number of two decimals with commas between its groups.
void Group(const char* from, const char* end, wchar_t* to) {
    if (*from == '-') *to++ = static_cast<wchar_t>(*from++);
    const char* const point = end - 3;
    while (from != end) {
        *to++ = static_cast<wchar_t>(*from++);
        if (from < point && (point - from) % 3 == 0) *to++ = L',';
    }
    *to = L'\0';
}

void FormatToChars(benchmark::State& state) {
    std::array<char, FloatFormatBufferChars(2)> plain;
    std::array<wchar_t, FloatFormatBufferChars(2)> buffer;
    Run(state, Amounts(), [&](double value, double) {
        const char* const end =
            std::to_chars(plain.begin(), plain.end(), value, std::chars_format::fixed, 2).ptr;
        Group(plain.data(), end, buffer.data());
        benchmark::ClobberMemory();
        return buffer.data();
    });
}

#ifdef _WIN32
void FormatSnprintf(benchmark::State& state) {
    const _locale_t locale = ::_create_locale(LC_ALL, "C");
    std::array<char, FloatFormatBufferChars(2)> plain;
    std::array<wchar_t, FloatFormatBufferChars(2)> buffer;
    Run(state, Amounts(), [&](double value, double) {
        const int length = ::_snprintf_l(plain.data(), plain.size(), "%.2f", locale, value);
        Group(plain.data(), plain.data() + length, buffer.data());
        benchmark::ClobberMemory();
        return buffer.data();
    });
    ::_free_locale(locale);
}
#endif

BENCHMARK(MakeOurs)->Name("make a date/ours");
BENCHMARK(MakeChrono)->Name("make a date/std::chrono");
BENCHMARK(AddMonthsOurs)->Name("add months/ours");
BENCHMARK(AddMonthsChrono)->Name("add months/std::chrono");
BENCHMARK(DifferenceOurs)->Name("difference in months/ours");
BENCHMARK(DifferenceChrono)->Name("difference in months/std::chrono");
BENCHMARK(DifferenceDaysOurs)->Name("difference in days/ours");
BENCHMARK(DifferenceDaysChrono)->Name("difference in days/std::chrono");
BENCHMARK(DayOfWeekOurs)->Name("day of week/ours");
BENCHMARK(DayOfWeekChrono)->Name("day of week/std::chrono");
BENCHMARK(FormatOurs)->Name("grouped, 2 decimals/ours");
BENCHMARK(FormatFmtGroupDigits)->Name("grouped, 2 decimals/fmt group_digits");
BENCHMARK(FormatFmtLocale)->Name("grouped, 2 decimals/fmt with a locale");
BENCHMARK(FormatToChars)->Name("grouped, 2 decimals/std::to_chars, a loop");
#ifdef _WIN32
BENCHMARK(FormatSnprintf)->Name("grouped, 2 decimals/_snprintf_l, a loop");
#endif

}  // namespace
