#include "logging/log_line.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <regex>

#include "logging/line_memory.h"
#include "logging/line_text.h"
#include "platform/win32.h"
#include "tests/logging/recorder.h"

namespace {

using namespace std::string_literals;

// The part of a line behind its local time and thread, without its line feed; "?" when the rest is not as it
// should be. The time is the "%c" of the C locale: 07/21/26 14:02:33, or Tue Jul 21 14:02:33 2026 where the C
// library is another.
std::wstring PlaceAndText(const std::wstring& call) {
    const std::wregex head(LR"(4:\[[^\]]{9,}\d\d:\d\d:\d\d[^\]]*\]\[)" +
                           std::to_wstring(::GetCurrentThreadId()) + L"\\]");
    std::wsmatch found;
    const bool hasHead =
        std::regex_search(call, found, head, std::regex_constants::match_continuous) && call.back() == L'\n';
    return hasHead ? std::wstring(found[0].second, call.end() - 1) : L"?";
}

template <class Log>
Calls LinesOf(Log log) {
    Calls lines = CallsDuring(QLLOG_INFO, log);
    lines.pop_back();  // the close
    for (std::wstring& line : lines) line = PlaceAndText(line);
    return lines;
}

// Of one line, with a blank behind each.
template <class... Number>
std::wstring Printed(Number... numbers) {
    const Calls lines = LinesOf([&] {
        QLLoggerLevelInserter line(QLLOG_INFO, "", 0);
        ((line << numbers << ' '), ...);
        line << LogMessageFinish();
    });
    return lines.at(0).substr(std::wcslen(L"[:0]-"));
}

#ifdef _WIN32
// A fiber that goes back to the last visitor after each line.
void WINAPI LogForever(void* visitor) {
    for (;; ::SwitchToFiber(*static_cast<void**>(visitor))) QLLogLine(QLLOG_INFO) << L"x";
}
#endif

}  // namespace

TEST(LogLine, EndsWithItsStatementAndFindsItsPlaceItself) {
    const Calls lines = LinesOf([] {
        ::SetLastError(ERROR_ACCESS_DENIED);
        QLLogLine(QLLOG_INFO) << L"one " << ::GetLastError();
        EXPECT_EQ(DWORD{ERROR_ACCESS_DENIED}, ::GetLastError());
        QLLogLine(QLLOG_INFO, "C:\\build/x\\b.cpp", 3);
        QLLogLine(QLLOG_INFO, "C:\\build/x\\b.cpp", 3) << L"two" << LogMessageFinish();
    });
    ASSERT_EQ(2u, lines.size());
    EXPECT_TRUE(std::regex_match(lines[0], std::wregex(LR"(\[log_line_test\.cpp:\d+\]-one 5)"))) << lines[0];
    EXPECT_EQ(L"[b.cpp:3]-two", lines[1]);
}

TEST(LogLine, TellsTheTimeOfItsEnd) {
    const Calls lines = CallsDuring(QLLOG_INFO, [] {
        QLLogLine late(QLLOG_INFO);
        QLLogLine(QLLOG_INFO) << L"x";
        ::Sleep(1100);
        late << L"x";
    });
    EXPECT_NE(lines[0].substr(0, lines[0].find(L']')), lines[1].substr(0, lines[1].find(L']')));
}

#ifdef _WIN32
TEST(LogLine, TellsTheThreadThatAFiberRunsOn) {
    void* back = nullptr;
    void* const fiber = ::CreateFiber(0, LogForever, &back);
    const auto visit = [&] {
        back = ::ConvertThreadToFiber(nullptr);
        const Calls lines = CallsDuring(QLLOG_INFO, [fiber] { ::SwitchToFiber(fiber); });
        EXPECT_NE(L"?", PlaceAndText(lines[0])) << lines[0];
        ::ConvertFiberToThread();
    };
    visit();
    std::thread(visit).join();
    ::DeleteFiber(fiber);
}
#endif

TEST(LogLine, HoldsPlaceAndTextsOfEveryKindInTheirOrder) {
    wchar_t writable[] = L"l";
    enum Plain { kPlain = 7 };
    const std::wstring text(100'000, L'\x20AC');
    const Calls lines = LinesOf([&] {
        QLLoggerLevelInserter(QLLOG_INFO, "a.cpp", -7)
            << RWWString(L"W") << QLFileName(L"C:\\f.txt") << std::wstring_view(L"v\0x", 2)
            << std::string("n\0", 2) << "N" << 'c' << L'w' << kPlain << static_cast<const wchar_t*>(nullptr)
            << static_cast<const char*>(nullptr) << writable << text << std::wstring(17, L'\0')
            << LogMessageFinish();
    });
    EXPECT_EQ((Calls{L"[a.cpp:-7]-WC:\\f.txtv\u2400n\u2400Ncw7l" + text + std::wstring(17, L'\u2400')}),
              lines);
    static_assert(!QLLoggable<int*>);
    static_assert(!QLLoggable<std::vector<int>>);
}

// Beyond the room in the object and back, with fronts that shrink and grow.
TEST(LineText, ChangesAtBothEnds) {
    for (const std::size_t size : {0u, 5u, 319u, 320u, 1000u}) {
        for (const std::wstring& front : {L""s, L"[x]"s, L"front"s, std::wstring(400, L'f')}) {
            ql::LineText text;
            for (const std::wstring& piece : {L"front"s, std::wstring(size, L'r'), L"ended"s})
                text.Append(piece);
            text.ReplaceFront(5, front);
            text.CutTo(text.size() - 2);
            EXPECT_EQ(front + std::wstring(size, L'r') + L"end", text.View()) << size << front.size();
        }
    }
}

// A block is used again when all of its lines are done.
TEST(LineMemory, FillsABlockAfterTheOther) {
    constexpr std::size_t kLine = 64, kLines = ql::LineBlock::kBytes / kLine;
    struct Kept {
        ql::LineMemory memory{nullptr};
        std::vector<ql::LineMemory::Place> lines;
    };
    static auto& kept = *new std::vector<Kept*>;  // the log's memory is never freed
    auto& [memory, lines] = *kept.emplace_back(new Kept);
    memory.Stock();
    const auto take = [&memory = memory, &lines = lines](std::size_t count) {
        for (; count > 0; --count) lines.push_back(memory.Take(kLine - 1));
    };
    take(2 * kLines);
    for (const std::size_t i : {std::size_t{1}, kLines - 1, kLines, 2 * kLines - 1})
        EXPECT_EQ(lines[i / kLines * kLines].at + i % kLines * kLine, lines[i].at) << i;
    ql::LineBlock* const first = lines[0].block;
    for (std::size_t i = 1; i < kLines; ++i) memory.GiveBack(first);
    take(kLines);
    EXPECT_NE(first, lines.back().block) << "a line of it is left";
    memory.GiveBack(first);
    take(40 * kLines);
    EXPECT_EQ(lines[0].at, lines[3 * kLines].at);
    EXPECT_EQ(1, std::ranges::count(lines, true, &ql::LineMemory::Place::isStockLow));
    EXPECT_EQ(nullptr, memory.Take(ql::LineBlock::kBytes / 8).at);
}

TEST(LogLine, FinishedTwiceRepeatsItsText) {
    const Calls lines = LinesOf([] {
        QLLoggerLevelInserter line(QLLOG_INFO, nullptr, 1);
        for (const wchar_t* text : {L"", L"one", L"two"}) line << text << LogMessageFinish();
        line << L"never finished";
    });
    EXPECT_EQ((Calls{L"[:1]-one", L"[:1]-onetwo"}), lines);
}

TEST(LogLine, PrintsNumbersAsAStreamDoes) {
    using std::numeric_limits;
    EXPECT_EQ(L"1 0 -32768 65535 -2147483648 4294967295 ",
              Printed(true, false, numeric_limits<short>::min(), numeric_limits<unsigned short>::max(),
                      numeric_limits<int>::min(), numeric_limits<unsigned>::max()));
    EXPECT_EQ(L"-2147483648 4294967295 -9223372036854775808 18446744073709551615 ",
              Printed(-2147483647L - 1, 4294967295ul, numeric_limits<long long>::min(), ~0ull));
    EXPECT_EQ(L"0.1 1.23457e+08 123457 1e-05 ", Printed(0.1f, 123456789.0, 123456.7, 0.00001L));
    EXPECT_EQ(L"-0 inf nan ", Printed(-0.0, HUGE_VAL, std::copysign(std::nan(""), -1.0)));
}
