#include "logging/log_line.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "platform/win32.h"
#include "tests/logging/recorder.h"

namespace {

// The part of a line that does not depend on time and thread, without its line feed; "?" when the rest is not
// as it should be.
std::wstring PlaceAndText(const std::wstring& call) {
    const std::wstring thread = L"][" + std::to_wstring(::GetCurrentThreadId()) + L"]";
    const std::size_t at = call.find(thread);
    if (!call.starts_with(L"4:[") || at == std::wstring::npos || call.back() != L'\n') return L"?";
    return call.substr(at + thread.size(), call.size() - at - thread.size() - 1);
}

template <class Insert>
std::vector<std::wstring> LinesOf(const char* file, Insert insert) {
    std::vector<std::wstring> lines = CallsDuring(QLLOG_INFO, [&] {
        QLLoggerLevelInserter line(QLLOG_INFO, file, -7);
        insert(line);
    });
    lines.pop_back();  // the close
    for (std::wstring& line : lines) line = PlaceAndText(line);
    return lines;
}

template <class Insert>
std::wstring LineOf(Insert insert) {
    const auto lines = LinesOf("a.cpp", [&](QLLoggerLevelInserter& line) {
        insert(line);
        line << LogMessageFinish();
    });
    return lines.size() == 1 ? lines[0] : L"not one line";
}

template <class Number>
std::wstring Printed(Number number) {
    const std::wstring line = LineOf([&](QLLoggerLevelInserter& inserter) { inserter << number; });
    return line.substr(line.find(L'-', line.find(L']')) + 1);
}

}  // namespace

TEST(LogLine, StartsWithTheLocalTimeInBrackets) {
    const Calls calls = CallsDuring(
        QLLOG_INFO, [] { QLLoggerLevelInserter(QLLOG_INFO, "a.cpp", 1) << L"x" << LogMessageFinish(); });
    const std::wstring& line = calls.at(0);
    // "%c" of the C locale: 07/21/26 14:02:33, or Tue Jul 21 14:02:33 2026 where the C library is another.
    const std::wstring time = line.substr(3, line.find(L']') - 3);
    EXPECT_GE(time.size(), 17u);
    EXPECT_EQ(2, std::count(time.begin(), time.end(), L':'));
}

TEST(LogLine, TakesTextOfEveryKind) {
    const RWWString wide(L"W");
    const std::wstring_view view = L"vx";
    const std::string narrow = "n";
    enum Plain { kPlain = 7 };
    EXPECT_EQ(L"[a.cpp:-7]-WC:\\f.txtvncw7", LineOf([&](QLLoggerLevelInserter& line) {
                  line << wide << QLFileName(L"C:\\f.txt") << view.substr(0, 1) << narrow << 'c' << L'w'
                       << kPlain;
              }));
    static_assert(!QLLoggable<int*>);
    static_assert(!QLLoggable<std::vector<int>>);
}

TEST(LogLine, EndsWithItsStatementAndFindsItsPlaceItself) {
    const Calls calls = CallsDuring(QLLOG_INFO, [] {
        QLLogLine(QLLOG_INFO) << L"one";
        QLLogLine(QLLOG_INFO) << L"two" << LogMessageFinish();
        QLLogLine(QLLOG_INFO, "C:\\build/x\\b.cpp", 3);
        QLLogLine(QLLOG_INFO, "C:\\build/x\\b.cpp", 3) << L"three";
        QLLogLine(QLLOG_INFO, nullptr, 3) << L"four";
    });
    ASSERT_EQ(5u, calls.size());
    EXPECT_TRUE(PlaceAndText(calls[0]).starts_with(L"[log_line_test.cpp:")) << PlaceAndText(calls[0]);
    EXPECT_EQ(L"[b.cpp:3]-three", PlaceAndText(calls[2]));
    EXPECT_EQ(L"[:3]-four", PlaceAndText(calls[3]));
}

TEST(LogLine, HoldsPlaceAndTextsInTheirOrder) {
    wchar_t writable[] = L"c";
    EXPECT_EQ(L"[a.cpp:-7]-abcd5", LineOf([&](QLLoggerLevelInserter& line) {
                  line << L"a" << std::wstring(L"b") << writable << "d" << 5;
              }));
    EXPECT_EQ(L"[a.cpp:-7]-x", LineOf([](QLLoggerLevelInserter& line) {
                  line << static_cast<const wchar_t*>(nullptr) << static_cast<const char*>(nullptr) << L"x";
              }));
}

TEST(LogLine, TakesTextsOfAnyLengthAndFileNamesOfNone) {
    const std::wstring text(100'000, L'\x20AC');
    EXPECT_EQ(L"[a.cpp:-7]-" + text, LineOf([&](QLLoggerLevelInserter& line) { line << text; }));
    const auto lines =
        LinesOf(nullptr, [](QLLoggerLevelInserter& line) { line << L"x" << LogMessageFinish(); });
    EXPECT_EQ((Calls{L"[:-7]-x"}), lines);
}

TEST(LogLine, FinishedTwiceRepeatsItsText) {
    const auto lines = LinesOf("a.cpp", [](QLLoggerLevelInserter& line) {
        LogMessageFinish finish;
        line << finish;
        line << L"one" << finish;
        line << L"two" << finish;
        line << L"never finished";
    });
    EXPECT_EQ((Calls{L"[a.cpp:-7]-one", L"[a.cpp:-7]-onetwo"}), lines);
}

TEST(LogLine, PrintsNumbersAsAStreamDoes) {
    EXPECT_EQ(L"1", Printed(true));
    EXPECT_EQ(L"0", Printed(false));
    EXPECT_EQ(L"-32768", Printed(std::numeric_limits<short>::min()));
    EXPECT_EQ(L"65535", Printed(std::numeric_limits<unsigned short>::max()));
    EXPECT_EQ(L"-2147483648", Printed(std::numeric_limits<int>::min()));
    EXPECT_EQ(L"4294967295", Printed(std::numeric_limits<unsigned>::max()));
    EXPECT_EQ(std::to_wstring(std::numeric_limits<long>::min()), Printed(std::numeric_limits<long>::min()));
    EXPECT_EQ(std::to_wstring(std::numeric_limits<unsigned long>::max()), Printed(~0ul));
    EXPECT_EQ(L"0.1", Printed(0.1f));
    EXPECT_EQ(L"1.23457e+08", Printed(123456789.0));
    EXPECT_EQ(L"123457", Printed(123456.7));
    EXPECT_EQ(L"1e-05", Printed(0.00001L));
    EXPECT_EQ(L"-0", Printed(-0.0));
    EXPECT_EQ(L"inf", Printed(HUGE_VAL));
    EXPECT_EQ(L"nan", Printed(std::copysign(std::numeric_limits<double>::quiet_NaN(), -1.0)));
    EXPECT_EQ(L"-9223372036854775808", Printed(std::numeric_limits<long long>::min()));
    EXPECT_EQ(L"18446744073709551615", Printed(std::numeric_limits<unsigned long long>::max()));
}
