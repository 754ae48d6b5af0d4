#include <algorithm>
#include <chrono>
#include <deque>
#include <filesystem>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "logging/log_line.h"
#include "logging/log_outputs.h"
#include "platform/win32.h"
#include "text/unicode.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/log_reader.h"
#include "tools/qlutil/progress.h"

namespace {

constexpr int kAllLevels = QLLOG_ERROR | QLLOG_WARNING | QLLOG_INFO | QLLOG_DEBUG;
constexpr int kMostLines = 10'000'000;

struct LevelRow {
    std::wstring_view name;
    QLLogLevel level;
};
constexpr LevelRow kLevels[] = {
    {L"error", QLLOG_ERROR}, {L"warning", QLLOG_WARNING}, {L"info", QLLOG_INFO}, {L"debug", QLLOG_DEBUG}};

QLLogLevel RequireLevel(std::wstring_view word) {
    for (const LevelRow& row : kLevels) {
        if (row.name == word) return row.level;
    }
    const auto number = ToInt(word);
    if (number && *number > 0 && *number <= kAllLevels) return static_cast<QLLogLevel>(*number);
    throw WrongCall(L"LEVEL must be error, warning, info, debug or 1 to 15");
}

void PutLine(QLLogLevel level, const std::wstring& text) {
    QLLoggerLevelInserter(level, "qlutil", 0) << text << LogMessageFinish();
}

// Lines that the log lost are a failure, and why it lost them stands in the log.
Answer Written(const std::wstring& file, Record record) {
    const std::uint32_t lost = QLLogger::LostLines();
    if (lost == 0) return Answer(std::move(record));
    return Answer(std::move(record),
                  std::to_wstring(lost) + L" lines were lost: " + file + L" cannot take them");
}

Answer Write(const Arguments& arguments) {
    const std::wstring file(arguments[0]);
    const QLLogLevel level = RequireLevel(arguments[1]);
    std::error_code error;
    if (!arguments.Has(L"anew") && std::filesystem::exists(file, error) &&
        !std::filesystem::is_empty(file, error))
        return Answer::Failure(file + L" is there already; --anew empties it");
    const auto output = std::make_shared<QLLoggerOutputs::FileOutput>(file.c_str());
    if (!output->IsOpen()) return Answer::Failure(L"cannot open " + file);
    QLLogger::InitializeLog(output, level);
    for (std::size_t i = 2; i < arguments.count(); ++i) PutLine(level, std::wstring(arguments[i]));
    QLLogger::CloseLogs();
    return Written(file, {{L"file", file.c_str()}});
}

int RequireValue(const Arguments& arguments, std::wstring_view name, int least, int most) {
    const std::wstring shown = L"--" + std::wstring(name);
    const auto value = arguments.Value(name);
    if (!value) throw WrongCall(shown + L" is missing");
    const int number = RequireInt(*value, shown);
    if (number < least || number > most) throw WrongCall(shown + L" is out of range");
    return number;
}

Answer Roll(const Arguments& arguments) {
    const std::wstring file(arguments[0]);
    const int limit = RequireValue(arguments, L"max", 0, std::numeric_limits<int>::max());
    const int backups = RequireValue(arguments, L"backups", 0, 1000);
    const int lines = RequireValue(arguments, L"lines", 0, kMostLines);
    const auto output = std::make_shared<QLLoggerOutputs::RollingFileOutput>(file.c_str(), L"qlutil", L"",
                                                                             L"", backups, limit, 1u);
    if (!output->IsOpen()) return Answer::Failure(L"cannot open " + file);
    const Progress progress(L"writing " + file);
    QLLogger::InitializeLog(output, QLLOG_INFO);
    for (int i = 1; i <= lines; ++i) PutLine(QLLOG_INFO, L"line " + std::to_wstring(i));
    QLLogger::CloseLogs();
    return Written(file, {{L"file", file.c_str()}, {L"backups", backups}, {L"lines", lines}});
}

// What of a log is asked for.
struct Wanted {
    std::int64_t since = 0;
    std::int64_t until = std::numeric_limits<std::int64_t>::max();
    std::string thread;
    std::string place;
    std::string text;

    bool Has(const ReadEntry& entry) const {
        return entry.order >= since && entry.order <= until && (thread.empty() || entry.thread == thread) &&
               entry.place.find(place) != std::string::npos && entry.text.find(text) != std::string::npos;
    }
};

// Of a time in digits, 20261121190857.
bool IsOfCalendarAndClock(std::int64_t time) {
    const auto twoDigits = [time](std::int64_t unit) { return static_cast<int>(time / unit % 100); };
    const std::chrono::year year(static_cast<int>(time / 1'00'00'00'00'00));
    return (year / twoDigits(1'00'00'00'00) / twoDigits(1'00'00'00)).ok() && twoDigits(1'00'00) < 24 &&
           twoDigits(1'00) < 60 && twoDigits(1) < 60;
}

// "2026-11-21T19:08:57"; what is left out at the end is the earliest or the latest there is.
std::int64_t RequireTime(std::wstring_view text, std::wstring_view name, std::wstring_view leftOut) {
    constexpr std::wstring_view kForm = L"0000-00-00T00:00:00";
    enum : std::size_t { kDay = 10, kMinute = 16 };
    bool fits = text.size() == kForm.size() || text.size() == kDay || text.size() == kMinute;
    std::wstring whole(text);
    whole += leftOut.substr(std::min(text.size(), leftOut.size()));
    std::int64_t time = 0;
    for (std::size_t i = 0; fits && i < kForm.size(); ++i) {
        const bool isDigit = whole[i] >= L'0' && whole[i] <= L'9';
        fits = kForm[i] == L'0' ? isDigit : whole[i] == kForm[i];
        if (isDigit) time = time * 10 + (whole[i] - L'0');
    }
    if (!fits || !IsOfCalendarAndClock(time))
        throw WrongCall(L"--" + std::wstring(name) + L" must be a time such as 2026-11-21T19:08:57");
    return time;
}

Wanted WantedBy(const Arguments& arguments) {
    const auto valueOf = [&](std::wstring_view name) { return arguments.Value(name).value_or(L""); };
    Wanted wanted;
    if (arguments.Has(L"since"))
        wanted.since = RequireTime(valueOf(L"since"), L"since", L"0000-01-01T00:00:00");
    if (arguments.Has(L"until"))
        wanted.until = RequireTime(valueOf(L"until"), L"until", L"9999-12-31T23:59:59");
    if (arguments.Has(L"thread")) {
        const int number = RequireInt(valueOf(L"thread"), L"--thread");
        wanted.thread = std::to_string(number);
    }
    wanted.place = ql::ToUtf8(valueOf(L"place"));
    wanted.text = ql::ToUtf8(valueOf(L"grep"));
    return wanted;
}

std::optional<int> Count(const Arguments& arguments, std::wstring_view name) {
    if (!arguments.Has(name)) return std::nullopt;
    return RequireValue(arguments, name, 0, std::numeric_limits<int>::max());
}

// The text of a log, in which something else may have written.
RWWString Text(const std::string& bytes) {
    if (std::optional<std::wstring> text = ql::FromUtf8(bytes)) return RWWString(std::move(*text));
    std::wstring text;
    for (const char byte : bytes) text += (byte & 0x80) ? L'\xFFFD' : static_cast<wchar_t>(byte);
    return RWWString(std::move(text));
}

Node TextOrNull(const std::string& bytes) {
    return bytes.empty() ? Node(nullptr) : Node(Text(bytes));
}

Node NumberOrNull(const std::string& digits) {
    double number = 0;
    for (const char digit : digits) number = number * 10 + (digit - '0');
    return digits.empty() ? Node(nullptr) : Node(number);
}

Node TimeOrNull(std::int64_t time) {
    if (time == 0) return nullptr;
    std::wstring text = L"0000-00-00T00:00:00";
    for (auto unit = text.rbegin(); unit != text.rend(); ++unit) {
        if (*unit != L'0') continue;
        *unit = static_cast<wchar_t>(L'0' + time % 10);
        time /= 10;
    }
    return Node(RWWString(std::move(text)));
}

// Logs have millions of entries: what is made for one is handed on, not copied.
Record RecordOf(const ReadEntry& entry) {
    Record record;
    record.reserve(5);
    record.emplace_back(L"time", TimeOrNull(entry.time));
    record.emplace_back(L"thread", NumberOrNull(entry.thread));
    record.emplace_back(L"place", TextOrNull(entry.place));
    record.emplace_back(L"text", Text(entry.text));
    record.emplace_back(L"file", entry.file->c_str());
    return record;
}

// Shows what is wanted of the logs, the last ones alone where so asked, and then perhaps what comes.
class Show {
  public:
    explicit Show(const Arguments& arguments)
        : wanted_(WantedBy(arguments)),
          last_(Count(arguments, L"last")),
          left_(Count(arguments, L"count").value_or(std::numeric_limits<int>::max())),
          follows_(arguments.Has(L"follow")) {
        for (const std::wstring_view file : arguments.all()) {
            const bool exists = logs_.Add(std::filesystem::path(file), follows_);
            if (!exists && !follows_ && missing_.empty()) missing_ = file;
        }
    }

    const std::wstring& missing() const { return missing_; }

    std::optional<Record> Next() {
        if (left_ == 0) return std::nullopt;
        if (last_) KeepLast(static_cast<std::size_t>(*std::exchange(last_, std::nullopt)));
        if (!kept_.empty()) {
            const Record record = RecordOf(kept_.front());
            kept_.pop_front();
            --left_;
            return record;
        }
        const ReadEntry* entry = NextWanted();
        for (; !entry && follows_; entry = NextWanted()) {
            ::Sleep(kPause);
            logs_.Continue();
        }
        if (!entry) return std::nullopt;
        --left_;
        return RecordOf(*entry);
    }

  private:
    static constexpr unsigned long kPause = 50;

    const ReadEntry* NextWanted() {
        const ReadEntry* entry = logs_.Next();
        while (entry && !wanted_.Has(*entry)) entry = logs_.Next();
        return entry;
    }

    void KeepLast(std::size_t count) {
        while (const ReadEntry* const entry = NextWanted()) {
            kept_.push_back(*entry);
            if (kept_.size() > count) kept_.pop_front();
        }
    }

    const Wanted wanted_;
    std::optional<int> last_;
    int left_;
    const bool follows_;
    std::wstring missing_;
    MergedLogs logs_;
    std::deque<ReadEntry> kept_;
};

Answer ShowLogs(const Arguments& arguments) {
    const auto show = std::make_shared<Show>(arguments);
    if (!show->missing().empty()) return Answer::Failure(L"there is no log " + show->missing());
    const std::size_t shown =
        arguments.count() > 1 ? 5 : 4;  // whose entry it is only where there are several
    return Feed{[show] { return show->Next(); }, shown, arguments.Has(L"follow")};
}

constexpr SwitchRow kWriteSwitches[] = {{L"anew"}};
constexpr SwitchRow kShowSwitches[] = {{L"thread", true}, {L"place", true}, {L"since", true},
                                       {L"until", true},  {L"grep", true},  {L"last", true},
                                       {L"follow"},       {L"count", true}};
constexpr SwitchRow kRollSwitches[] = {{L"max", true}, {L"backups", true}, {L"lines", true}};

constexpr Command kCommands[] = {
    {L"log write", L"FILE LEVEL TEXT... [--anew]",
     L"Writes the texts as lines of a new log FILE; LEVEL is error, warning, info, debug or a sum of 1, 2, 4 "
     L"and 8.",
     kWriteSwitches, 3, kAnyNumber, Write},
    {L"log roll", L"FILE --max BYTES --backups N --lines N",
     L"Writes numbered lines into the rolling log FILE.", kRollSwitches, 1, 1, Roll},
    {L"log show",
     L"FILE... [--thread N] [--place TEXT] [--since T] [--until T] [--grep TEXT] [--last N] [--follow] "
     L"[--count N]",
     L"Shows the entries of the logs and their backups by time, such as 2026-11-21T19:08:57; --follow goes "
     L"on.",
     kShowSwitches, 1, kAnyNumber, ShowLogs},
};

}  // namespace

std::span<const Command> LogCommands() {
    return kCommands;
}
