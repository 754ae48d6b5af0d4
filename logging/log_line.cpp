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

// A string's own append of narrow characters would take memory for a copy of them.
template <class Text>
void AppendAscii(Text& text, std::string_view ascii) {
    const std::size_t before = text.size();
    text.resize(before + ascii.size());
    std::copy(ascii.begin(), ascii.end(), text.begin() + static_cast<std::ptrdiff_t>(before));
}

template <class Text, class... Format>
void AppendNumber(Text& text, Format... numberAndFormat) {
    char digits[kNumberLength];
    const char* const end = std::to_chars(digits, digits + sizeof digits, numberAndFormat...).ptr;
    AppendAscii(text, {digits, end});
}

template <class Text, class Float>
void AppendFloat(Text& text, Float number) {
    AppendNumber(text, number, std::chars_format::general, kStreamPrecision);
}

bool IsAscii(std::string_view text) noexcept {
    for (const char c : text) {
        if (static_cast<unsigned char>(c) > 0x7F) return false;
    }
    return true;
}

// Every ANSI code page of the system begins with ASCII; most texts are no more than that.
template <class Text>
void AppendAnsi(Text& text, std::string_view ansi) {
    if (IsAscii(ansi)) {
        AppendAscii(text, ansi);
        return;
    }
    const int length = static_cast<int>(ansi.size());
    const std::size_t before = text.size();
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

QLLoggerLevelInserter::QLLoggerLevelInserter(QLLogLevel level, const char* file, int line)
    : level_(level), threadId_(::GetCurrentThreadId()), file_(file ? file : "", &arena_), line_(line) {
    text_.reserve(kUsualText - 1);
}

QLLoggerLevelInserter::~QLLoggerLevelInserter() = default;

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const wchar_t* text) {
    if (text) text_ += text;
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const std::wstring& text) {
    text_ += text;
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const char* text) {
    if (text) AppendAnsi(text_, text);
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
    AppendNumber(text_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned long number) {
    AppendNumber(text_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(float number) {
    return *this << static_cast<double>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(double number) {
    AppendFloat(text_, number);
    return *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long double number) {
    AppendFloat(text_, number);
    return *this;
}

void QLLoggerLevelInserter::operator<<(const LogMessageFinish&) {
    Close();
}

void QLLoggerLevelInserter::Close() {
    if (text_.empty()) return;
    constexpr std::size_t kPunctuationAndNumbers = 40;
    const std::wstring_view time = TimeNow();
    std::shared_ptr<WriteLogMessage> message = QLLogger::NewLine(level_);
    std::wstring& line = message->text_;
    line.reserve(time.size() + file_.size() + text_.size() + kPunctuationAndNumbers);
    line.append(time).append(1, L'[');
    AppendNumber(line, threadId_);
    line.append(L"][");
    AppendAnsi(line, file_);
    line.append(1, L':');
    AppendNumber(line, line_);
    line.append(L"]-").append(text_).append(1, L'\n');
    QLLogger::PushEvent(std::move(message));
}
