#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "logging/log_line.h"
#include "logging/log_outputs.h"
#include "rw/file.h"
#include "tools/qlutil/command.h"
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

// A log file must open: the library itself does not report one that does not.
bool CanBeWritten(const std::filesystem::path& file) {
    return RWFile(file.c_str(), L"ab").isValid();
}

void PutLine(QLLogLevel level, const std::wstring& text) {
    QLLoggerLevelInserter(level, "qlutil", 0) << text << LogMessageFinish();
}

Answer Write(const Arguments& arguments) {
    const std::wstring file(arguments[0]);
    const QLLogLevel level = RequireLevel(arguments[1]);
    if (!CanBeWritten(file)) return Answer::Failure(L"cannot open " + file);
    QLLogger::InitializeLog(file.c_str(), level);
    for (std::size_t i = 2; i < arguments.count(); ++i) PutLine(level, std::wstring(arguments[i]));
    QLLogger::CloseLogs();
    return Record{{L"file", file.c_str()}};
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
    if (!CanBeWritten(file)) return Answer::Failure(L"cannot open " + file);
    const Progress progress(L"writing " + file);
    QLLogger::InitializeLog(std::make_shared<QLLoggerOutputs::RollingFileOutput>(file.c_str(), L"qlutil", L"",
                                                                                 L"", backups, limit, 1u),
                            QLLOG_INFO);
    for (int i = 1; i <= lines; ++i) PutLine(QLLOG_INFO, L"line " + std::to_wstring(i));
    QLLogger::CloseLogs();
    return Record{{L"file", file.c_str()}, {L"backups", backups}, {L"lines", lines}};
}

constexpr SwitchRow kRollSwitches[] = {{L"max", true}, {L"backups", true}, {L"lines", true}};

constexpr Command kCommands[] = {
    {L"log write",
     L"FILE LEVEL TEXT...",
     L"Writes the texts as lines of a new log FILE.",
     {},
     3,
     kAnyNumber,
     Write},
    {L"log roll", L"FILE --max BYTES --backups N --lines N",
     L"Writes numbered lines into the rolling log FILE.", kRollSwitches, 1, 1, Roll},
};

}  // namespace

std::span<const Command> LogCommands() {
    return kCommands;
}
