#include "logging/log_line.h"

#include <charconv>
#include <cmath>
#include <ctime>
#include <cwchar>
#include <memory>
#include <new>
#include <optional>
#include <string_view>

#include "logging/log_ending.h"
#include "platform/failure.h"
#include "platform/last_error.h"
#include "platform/module.h"
#include "platform/win32.h"

namespace {

// Room for every number below.
constexpr std::size_t kNumberLength = 64;
constexpr int kStreamPrecision = 6;

// Whether all of it was ASCII; the rest must be converted.
bool AppendAscii(ql::LineText& text, std::string_view narrow) {
    wchar_t* wide = text.Extend(narrow.size());
    unsigned char all = 0;
    for (const char unit : narrow) {
        const auto byte = static_cast<unsigned char>(unit);
        all = static_cast<unsigned char>(all | byte);
        *wide++ = byte;
    }
    return all <= 0x7F;
}

template <class... Format>
void AppendNumber(ql::LineText& text, Format... numberAndFormat) {
    char digits[kNumberLength];
    const char* const end = std::to_chars(digits, digits + sizeof digits, numberAndFormat...).ptr;
    AppendAscii(text, {digits, end});
}

// A stream tells no sign of what is no number.
template <class Float>
void AppendFloat(ql::LineText& text, Float number) {
    if (std::isnan(number)) return text.Append(L"nan");
    AppendNumber(text, number, std::chars_format::general, kStreamPrecision);
}

// Neither a text's zero nor a byte that must be converted.
constexpr bool IsAsciiByte(char byte) {
    return static_cast<signed char>(byte) > 0;
}

// Appends the ASCII that a text begins with. The answer is where that ends: the text's zero, or what must be
// converted. Counting a text's length first would cost as much again.
const char* AppendAsciiOf(ql::LineText& text, const char* narrow) {
    constexpr std::size_t kStretch = 64;
    for (;;) {
        wchar_t* const wide = text.Extend(kStretch);
        std::size_t count = 0;
        for (; count < kStretch && IsAsciiByte(narrow[count]); ++count) {
            wide[count] = static_cast<unsigned char>(narrow[count]);
        }
        text.CutTo(text.size() - kStretch + count);
        narrow += count;
        if (count < kStretch) return narrow;
    }
}

void AppendConverted(ql::LineText& text, std::string_view ansi) {
    const ql::LastErrorKept lastError;
    const int length = static_cast<int>(ansi.size());
    const int units = ::MultiByteToWideChar(CP_ACP, 0, ansi.data(), length, nullptr, 0);
    wchar_t* const wide = text.Extend(static_cast<std::size_t>(units));
    ::MultiByteToWideChar(CP_ACP, 0, ansi.data(), length, wide, units);
}

// Every ANSI code page of the system begins with ASCII; most texts are no more than that.
void AppendAnsi(ql::LineText& text, std::string_view ansi) {
    const std::size_t before = text.size();
    if (AppendAscii(text, ansi)) return;
    text.CutTo(before);
    AppendConverted(text, ansi);
}

void AppendAnsi(ql::LineText& text, const char* ansi) {
    const char* const rest = AppendAsciiOf(text, ansi);
    if (*rest) AppendConverted(text, rest);
}

// How a thread's lines begin: the bracketed time, the thread's number and the bracket that opens the place.
// That is the same for a whole second, and asking for the time and making its text cost more than all the
// rest of a line. So each thread asks once in a tick of the system, which is what the clock itself is good
// for.
class LineHead {
  public:
    // A fiber keeps its head when it goes on on another thread.
    void Update() {
        const DWORD tick = ::GetTickCount(), thread = ::GetCurrentThreadId();
        if (tick == tick_ && thread == thread_) return;
        const __time64_t now = ::_time64(nullptr);
        if (now != second_ || thread != thread_) Make(now, thread);
        tick_ = tick;
    }

    DWORD Tick() const noexcept { return tick_; }
    std::wstring_view Time() const noexcept { return Whole().substr(0, timeLength_); }
    std::wstring_view Whole() const noexcept { return text_.View(); }

  private:
    void Make(__time64_t second, DWORD thread) {
        constexpr std::size_t kLongestTime = 300;
        const std::tm* const fields = ::_localtime64(&second);
        text_.CutTo(0);
        wchar_t* const time = text_.Extend(kLongestTime);
        timeLength_ = fields ? std::wcsftime(time, kLongestTime, L"[%c]", fields) : 0;
        text_.CutTo(timeLength_);
        text_.Append(L"[");
        AppendNumber(text_, thread);
        text_.Append(L"][");
        second_ = second;
        thread_ = thread;
    }

    DWORD tick_ = 0;
    DWORD thread_ = 0;  // no thread's number
    __time64_t second_ = -1;
    std::size_t timeLength_ = 0;
    ql::LineText text_;
};

void WINAPI DeleteHead(void* head) noexcept {
    delete static_cast<LineHead*>(head);
}

// Where each thread keeps its head. The compiler's own memory by thread ends the process where there is none
// left. At the process's end it stays: lines may come still.
class HeadSlot {
  public:
    HeadSlot() noexcept : index_(::FlsAlloc(DeleteHead)) {}
    ~HeadSlot() {
        if (!ql::ProcessIsEnding()) ::FlsFree(index_);
    }
    HeadSlot(const HeadSlot&) = delete;
    HeadSlot& operator=(const HeadSlot&) = delete;

    // The calling thread's; null when there is no memory for one, which may be in disorder at the end.
    LineHead* Own() const noexcept {
        if (void* const head = ::FlsGetValue(index_)) return static_cast<LineHead*>(head);
        if (ql::ProcessIsEnding()) return nullptr;
        std::unique_ptr<LineHead> made(new (std::nothrow) LineHead);
        return made && ::FlsSetValue(index_, made.get()) ? made.release() : nullptr;
    }

  private:
    const DWORD index_;
};

const HeadSlot g_heads;

// The head of the calling thread's lines as of now.
class CurrentHead {
  public:
    CurrentHead() {
        const ql::LastErrorKept lastError;
        LineHead* const own = g_heads.Own();
        LineHead& head = own ? *own : alone_.emplace();
        head.Update();
        head_ = &head;
    }
    CurrentHead(const CurrentHead&) = delete;
    CurrentHead& operator=(const CurrentHead&) = delete;

    const LineHead* operator->() const noexcept { return head_; }

  private:
    std::optional<LineHead> alone_;
    const LineHead* head_;
};

const char* FileNameAlone(const char* path) noexcept {
    return path ? path + std::string_view(path).find_last_of("\\/") + 1 : nullptr;
}

}  // namespace

// Adds to the text, or marks the line as one for which there was no memory.
template <class Change>
QLLoggerLevelInserter& QLLoggerLevelInserter::Add(Change change) noexcept {
    isBroken_ = !ql::Completes([&] { change(line_); }) || isBroken_;
    return *this;
}

QLLoggerLevelInserter::QLLoggerLevelInserter(QLLogLevel level, const char* file, int line) noexcept
    : timeLength_(0), level_(level) {
    Add([&](ql::LineText& text) {
        const CurrentHead head;
        tick_ = head->Tick();
        timeLength_ = head->Time().size();
        text.Append(head->Whole());
        if (file) AppendAnsi(text, file);
        *text.Extend(1) = L':';
        AppendNumber(text, line);
        text.Append(L"]-");
    });
    placeLength_ = line_.size() - timeLength_;
}

QLLoggerLevelInserter::~QLLoggerLevelInserter() = default;

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(std::wstring_view added) noexcept {
    return Add([added](ql::LineText& text) { text.Append(added); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const wchar_t* text) noexcept {
    return text ? *this << std::wstring_view(text) : *this;
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const std::wstring& text) noexcept {
    return *this << std::wstring_view(text);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const RWWString& text) noexcept {
    return *this << text.view();
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const QLFileName& name) noexcept {
    return Add([&name](ql::LineText& text) { text.Append(name.GetPathAndFileName().view()); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(wchar_t character) noexcept {
    return *this << std::wstring_view(&character, 1);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(std::string_view ansi) noexcept {
    return Add([ansi](ql::LineText& text) { AppendAnsi(text, ansi); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const char* text) noexcept {
    if (!text) return *this;
    return Add([text](ql::LineText& line) { AppendAnsi(line, text); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const std::string& text) noexcept {
    return *this << std::string_view(text);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(char character) noexcept {
    return *this << std::string_view(&character, 1);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(short number) noexcept {
    return *this << static_cast<long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned short number) noexcept {
    return *this << static_cast<unsigned long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(int number) noexcept {
    return *this << static_cast<long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned int number) noexcept {
    return *this << static_cast<unsigned long>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long number) noexcept {
    return Add([number](ql::LineText& text) { AppendNumber(text, number); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned long number) noexcept {
    return Add([number](ql::LineText& text) { AppendNumber(text, number); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long long number) noexcept {
    return Add([number](ql::LineText& text) { AppendNumber(text, number); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(unsigned long long number) noexcept {
    return Add([number](ql::LineText& text) { AppendNumber(text, number); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(float number) noexcept {
    return *this << static_cast<double>(number);
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(double number) noexcept {
    return Add([number](ql::LineText& text) { AppendFloat(text, number); });
}

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(long double number) noexcept {
    return Add([number](ql::LineText& text) { AppendFloat(text, number); });
}

void QLLoggerLevelInserter::operator<<(const LogMessageFinish&) noexcept {
    Close();
}

// The time that a line tells is that of its end; within a tick there is no other.
void QLLoggerLevelInserter::UpdateTime() {
    const CurrentHead head;
    const std::wstring_view time = head->Time();
    line_.ReplaceFront(timeLength_, time);
    timeLength_ = time.size();
    tick_ = head->Tick();
}

void QLLoggerLevelInserter::Close() noexcept {
    isEmitted_ = true;
    if (!isBroken_ && line_.size() == timeLength_ + placeLength_) return;
    Add([this](ql::LineText& text) {
        if (::GetTickCount() != tick_) UpdateTime();
        *text.Extend(1) = L'\n';
    });
    if (isBroken_) return ql::CountLostLines(ql::LostTo::kMemory, 1);
    QLLogger::PutLine(level_, line_.View());
    line_.CutTo(line_.size() - 1);
}

QLLogLine::QLLogLine(QLLogLevel level, const char* file, int line) noexcept
    : QLLoggerLevelInserter(level, FileNameAlone(file), line) {}

QLLogLine::~QLLogLine() {
    if (!IsEmitted()) Close();
}
