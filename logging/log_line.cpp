#include "logging/log_line.h"

#include <algorithm>
#include <charconv>
#include <ctime>
#include <utility>

#include "platform/win32.h"

namespace {

// Room for every number below.
constexpr std::size_t kNumberLength = 64;
constexpr std::size_t kTimeLength = 300;
constexpr int kStreamPrecision = 6;

// A string's own append of narrow characters would take memory for a copy of them. Whether all were ASCII.
template <class Text>
bool AppendWidened(Text& text, std::string_view narrow) {
    constexpr std::size_t kPiece = 64;
    wchar_t wide[kPiece];
    unsigned char all = 0;
    for (std::size_t at = 0; at < narrow.size(); at += kPiece) {
        const std::string_view piece = narrow.substr(at, kPiece);
        for (std::size_t i = 0; i < piece.size(); ++i) {
            const auto byte = static_cast<unsigned char>(piece[i]);
            all = static_cast<unsigned char>(all | byte);
            wide[i] = byte;
        }
        text.append(wide, piece.size());
    }
    return all <= 0x7F;
}

template <class Text, class... Format>
void AppendNumber(Text& text, Format... numberAndFormat) {
    char digits[kNumberLength];
    const char* const end = std::to_chars(digits, digits + sizeof digits, numberAndFormat...).ptr;
    AppendWidened(text, {digits, end});
}

template <class Text, class Float>
void AppendFloat(Text& text, Float number) {
    AppendNumber(text, number, std::chars_format::general, kStreamPrecision);
}

// Every ANSI code page of the system begins with ASCII; most texts are no more than that.
template <class Text>
void AppendAnsi(Text& text, std::string_view ansi) {
    const std::size_t before = text.size();
    if (AppendWidened(text, ansi)) return;
    const int length = static_cast<int>(ansi.size());
    const int units = ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, ansi.data(), length, nullptr, 0);
    text.resize(before + static_cast<std::size_t>(units));
    ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, ansi.data(), length, text.data() + before, units);
}

// The bracketed time is the same for a whole second, and asking for the time and making its text cost more
// than all the rest of a line. So each thread asks once in a tick of the system, which is what the clock
// itself is good for.
struct TimeText {
    DWORD tick = 0;
    __time64_t second = -1;
    std::size_t length = 0;
    wchar_t text[kTimeLength] = {};
};

void Make(TimeText& made, __time64_t second) {
    const std::tm* const fields = ::_localtime64(&second);
    made.length = fields ? std::wcsftime(made.text, kTimeLength, L"[%c]", fields) : 0;
    made.second = second;
}

std::wstring_view TimeNow() {
    thread_local TimeText last;
    const DWORD tick = ::GetTickCount();
    if (tick != last.tick || last.length == 0) {
        last.tick = tick;
        const __time64_t now = ::_time64(nullptr);
        if (now != last.second) Make(last, now);
    }
    return {last.text, last.length};
}

}  // namespace

QLLoggerLevelInserter::QLLoggerLevelInserter(QLLogLevel level, const char* file, int line) : level_(level) {
    const std::wstring_view time = TimeNow();
    timeLength_ = time.size();
    line_.reserve(kUsualLine - 1);
    line_.append(time).append(1, L'[');
    AppendNumber(line_, ::GetCurrentThreadId());
    line_.append(L"][");
    if (file) AppendAnsi(line_, file);
    line_.append(1, L':');
    AppendNumber(line_, line);
    line_.append(L"]-");
    prefixLength_ = line_.size();
}

QLLoggerLevelInserter::~QLLoggerLevelInserter() = default;

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const wchar_t* text) {
    if (text) line_ += text;
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const std::wstring& text) {
    line_ += text;
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const char* text) {
    if (text) AppendAnsi(line_, text);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(short number) {
    return *this << static_cast<long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned short number) {
    return *this << static_cast<unsigned long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(int number) {
    return *this << static_cast<long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned int number) {
    return *this << static_cast<unsigned long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long number) {
    AppendNumber(line_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned long number) {
    AppendNumber(line_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(float number) {
    return *this << static_cast<double>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(double number) {
    AppendFloat(line_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long double number) {
    AppendFloat(line_, number);
    return *this;
}

void QLLoggerLevelInserter::operator<<(const LogMessageFinish&) {
    Close();
}

void QLLoggerLevelInserter::Close() {
    if (line_.size() == prefixLength_) return;
    const std::wstring_view time = TimeNow();
    line_.replace(0, timeLength_, time);
    prefixLength_ += time.size() - timeLength_;
    timeLength_ = time.size();
    line_ += L'\n';
    QLLogger::PutLine(level_, line_);
    line_.pop_back();
}
