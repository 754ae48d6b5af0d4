#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "logging/line_text.h"
#include "logging/logger.h"
#include "names/file_name.h"
#include "platform/export.h"
#include "rw/wide_string.h"

class _bstr_t;  // NOLINT(bugprone-reserved-identifier): the system's own name

// Inserted into a line, emits it.
class LogMessageFinish {};

// What a line takes: text of every kind and numbers.
template <class Value>
concept QLLoggable =
    std::convertible_to<const Value&, const wchar_t*> || std::convertible_to<const Value&, std::wstring> ||
    std::convertible_to<const Value&, std::wstring_view> || std::convertible_to<const Value&, const char*> ||
    std::convertible_to<const Value&, std::string_view> || std::convertible_to<const Value&, long double> ||
    std::derived_from<Value, QLFileName> || std::same_as<Value, _bstr_t>;

// Builds one line of the log. Used by one thread at a time. Nothing throws: a line for which there is no
// memory is lost and counted.
//
//     QLLoggerLevelInserter(QLLOG_INFO, __FILE__, __LINE__) << L"opened " << count << L" files" <<
//     LogMessageFinish();
//
// gives "[07/21/26 14:02:33][1234][host.cpp:17]-opened 3 files" and a line feed: the local time of the finish
// in the form of the C run-time's locale ("%c"; this one is that of "C", as long as the host calls no
// setlocale), the thread that began the line, the place, the text. A zero within a text is shown as U+2400:
// outputs take a line up to its first zero. The calling thread's last error stays what it was: a line may
// tell that of the call before it.
//
// Kept on purpose:
//  - a line without text is not emitted;
//  - the text is not cleared by finishing: a second finish emits it again, with what was inserted since;
//  - destroying an unfinished line emits nothing: QLLogLine, below, cannot forget its end.
class QL_API QLLoggerLevelInserter {
  public:
    // The file name is ANSI text; null is the empty name.
    QLLoggerLevelInserter(QLLogLevel level, const char* file, int line) noexcept;
    virtual ~QLLoggerLevelInserter();
    QLLoggerLevelInserter(const QLLoggerLevelInserter&) = delete;
    QLLoggerLevelInserter& operator=(const QLLoggerLevelInserter&) = delete;

    // Texts are appended as they are, ANSI texts after conversion; null appends nothing.
    QLLoggerLevelInserter& operator<<(const wchar_t* text) noexcept;
    QLLoggerLevelInserter& operator<<(std::wstring_view text) noexcept;
    QLLoggerLevelInserter& operator<<(const std::wstring& text) noexcept;
    QLLoggerLevelInserter& operator<<(const RWWString& text) noexcept;
    QLLoggerLevelInserter& operator<<(const QLFileName& name) noexcept;  // path and file name
    QLLoggerLevelInserter& operator<<(const _bstr_t& text) noexcept;
    QLLoggerLevelInserter& operator<<(wchar_t character) noexcept;
    QLLoggerLevelInserter& operator<<(const char* text) noexcept;
    QLLoggerLevelInserter& operator<<(std::string_view text) noexcept;
    QLLoggerLevelInserter& operator<<(const std::string& text) noexcept;
    QLLoggerLevelInserter& operator<<(char character) noexcept;

    // 1 or 0.
    template <std::same_as<bool> Bool>  // nothing converts to it
    QLLoggerLevelInserter& operator<<(Bool flag) noexcept {
        return *this << (flag ? L'1' : L'0');
    }

    // Numbers as a stream prints them by default, in no locale: six significant digits of those with a point.
    QLLoggerLevelInserter& operator<<(short number) noexcept;
    QLLoggerLevelInserter& operator<<(unsigned short number) noexcept;
    QLLoggerLevelInserter& operator<<(int number) noexcept;
    QLLoggerLevelInserter& operator<<(unsigned int number) noexcept;
    QLLoggerLevelInserter& operator<<(long number) noexcept;
    QLLoggerLevelInserter& operator<<(unsigned long number) noexcept;
    QLLoggerLevelInserter& operator<<(float number) noexcept;
    QLLoggerLevelInserter& operator<<(double number) noexcept;
    QLLoggerLevelInserter& operator<<(long long number) noexcept;
    QLLoggerLevelInserter& operator<<(unsigned long long number) noexcept;
    QLLoggerLevelInserter& operator<<(long double number) noexcept;

    template <class Value>
    requires(!QLLoggable<Value>) QLLoggerLevelInserter& operator<<(const Value&) =
        delete;  // the line does not take this type

    void operator<<(const LogMessageFinish& finish) noexcept;  // emits the line

  protected:
    void Close() noexcept;                                  // emits the line
    bool IsEmitted() const noexcept { return isEmitted_; }  // at least once

  private:
    template <class Change>
    QLLoggerLevelInserter& Add(Change change) noexcept;
    void UpdateTime();

    // The whole line from the start: the finish has but the time to put in its place.
    ql::LineText line_;
    std::size_t timeLength_;
    std::size_t placeLength_;  // of what stands between the time and the text
    unsigned long tick_ = 0;   // of the system, when the time was told
    QLLogLevel level_;
    bool isBroken_ = false;  // there was no memory for a part of it
    bool isEmitted_ = false;
};

// A line that ends with its statement and finds its place itself.
//
//     QLLogLine(QLLOG_ERROR) << L"cannot open " << name;
//
// gives "[07/21/26 14:02:33][1234][host.cpp:17]-cannot open C:\\Docs\\Letter.docx": of the source's path its
// file name alone. Finished by hand, it is not emitted once more.
class QL_API QLLogLine : public QLLoggerLevelInserter {
  public:
    // The caller's place by default; a file as __FILE__ gives it, null is the empty name.
    explicit QLLogLine(QLLogLevel level, const char* file = __builtin_FILE(),
                       int line = __builtin_LINE()) noexcept;
    ~QLLogLine() override;
};
