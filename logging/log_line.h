#pragma once

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>

#include "logging/line_text.h"
#include "logging/logger.h"
#include "platform/export.h"

class _bstr_t;  // NOLINT(bugprone-reserved-identifier): the system's own name

// Inserted into a line, emits it.
class LogMessageFinish {};

// Builds one line of the log. Used by one thread at a time.
//
//     QLLoggerLevelInserter(QLLOG_INFO, __FILE__, __LINE__) << L"opened " << count << L" files" <<
//     LogMessageFinish();
//
// gives "[07/21/26 14:02:33][1234][host.cpp:17]-opened 3 files" and a line feed: the local time of the finish
// in the C locale's own form of it ("%c"), the thread that began the line, the place, the text.
//
// Kept on purpose:
//  - a line without text is not emitted;
//  - the text is not cleared by finishing: a second finish emits it again, with what was inserted since;
//  - destroying an unfinished line emits nothing.
class QL_API QLLoggerLevelInserter {
  public:
    // The file name is ANSI text; null is the empty name.
    QLLoggerLevelInserter(QLLogLevel level, const char* file, int line);
    virtual ~QLLoggerLevelInserter();
    QLLoggerLevelInserter(const QLLoggerLevelInserter&) = delete;
    QLLoggerLevelInserter& operator=(const QLLoggerLevelInserter&) = delete;

    // Texts are appended as they are, ANSI texts after conversion; null appends nothing.
    QLLoggerLevelInserter& operator<<(const wchar_t* text);
    QLLoggerLevelInserter& operator<<(const std::wstring& text);
    QLLoggerLevelInserter& operator<<(const _bstr_t& text);
    QLLoggerLevelInserter& operator<<(const char* text);

    // Numbers as a stream prints them by default, in no locale: six significant digits, a bool as 1 or 0.
    template <std::same_as<bool> Bool>  // nothing converts to it
    QLLoggerLevelInserter& operator<<(Bool flag) {
        return *this << (flag ? L"1" : L"0");
    }
    QLLoggerLevelInserter& operator<<(short number);
    QLLoggerLevelInserter& operator<<(unsigned short number);
    QLLoggerLevelInserter& operator<<(int number);
    QLLoggerLevelInserter& operator<<(unsigned int number);
    QLLoggerLevelInserter& operator<<(long number);
    QLLoggerLevelInserter& operator<<(unsigned long number);
    QLLoggerLevelInserter& operator<<(float number);
    QLLoggerLevelInserter& operator<<(double number);
    QLLoggerLevelInserter& operator<<(long double number);

    void operator<<(const LogMessageFinish& finish);

  protected:
    void Close();  // emits the line

  private:
    // The whole line from the start: the finish has but the time to put in its place.
    ql::LineText line_;
    std::size_t timeLength_;
    std::size_t prefixLength_ = 0;
    QLLogLevel level_;
};
