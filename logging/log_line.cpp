#include "logging/log_line.h"

#include <atomic>
#include <charconv>
#include <ctime>
#include <new>
#include <utility>

#include "platform/win32.h"

namespace {

// Room for every number below.
constexpr std::size_t kNumberLength = 64;
constexpr std::size_t kTimeLength = 300;
constexpr int kStreamPrecision = 6;

template <class Text, class... Format>
void AppendNumber(Text& text, Format... numberAndFormat) {
    char digits[kNumberLength];
    const char* const end = std::to_chars(digits, digits + sizeof digits, numberAndFormat...).ptr;
    text.append(digits, end);
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
        text.append(ansi.begin(), ansi.end());
        return;
    }
    const int length = static_cast<int>(ansi.size());
    const std::size_t before = text.size();
    const int units = ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, ansi.data(), length, nullptr, 0);
    text.resize(before + static_cast<std::size_t>(units));
    ::MultiByteToWideChar(CP_ACP, MB_PRECOMPOSED, ansi.data(), length, text.data() + before, units);
}

// The bracketed time is the same for a whole second, and its making costs more than all the rest of a line.
struct TimeText {
    std::time_t second = -1;
    std::size_t length = 0;
    wchar_t text[kTimeLength] = {};
};

void Make(TimeText& made, std::time_t second) {
    const std::tm* const fields = std::localtime(&second);
    made.length = fields ? std::wcsftime(made.text, kTimeLength, L"[%c]", fields) : 0;
    made.second = second;
}

std::wstring_view TimeNow() {
    thread_local TimeText last;
    const std::time_t now = std::time(nullptr);
    if (now != last.second) Make(last, now);
    return {last.text, last.length};
}

}  // namespace
