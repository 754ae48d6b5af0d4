#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "tools/qlutil/answer.h"
#include "tools/qlutil/arguments.h"

inline constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

// How much of the library runs around a command. A command that shows the library's own start starts it
// itself.
enum class Library { kStarted, kLeftToCommand };

// One row of the program: what is typed, what is shown about it, and what it does.
struct Command {
    std::wstring_view name;  // one word, or two with a blank between
    std::wstring_view arguments;
    std::wstring_view summary;
    std::span<const SwitchRow> switches;
    std::size_t fewest;
    std::size_t most;
    Answer (*run)(const Arguments& arguments);
    Library library = Library::kStarted;
};

// The families; each is a table in the source of its own name.
std::span<const Command> SessionCommands();
std::span<const Command> NameCommands();
std::span<const Command> TextCommands();
std::span<const Command> JsonCommands();
std::span<const Command> PreferenceCommands();
std::span<const Command> DirectoryCommands();
std::span<const Command> LogCommands();
std::span<const Command> ValueCommands();
std::span<const Command> FileCommands();
std::span<const Command> ProcessorCommands();
std::span<const Command> SwitchCommands();
std::span<const Command> ZipCommands();
std::span<const Command> DisplayCommands();
std::span<const Command> KeyCommands();
std::span<const Command> ShellCommands();
std::span<const Command> VersionCommands();
std::span<const Command> MachineCommands();

struct CommandMatch {
    const Command* command;  // null when no command has that name
    std::size_t words;       // how many words its name takes
};
CommandMatch FindCommand(std::span<const std::wstring_view> words);

// "qlutil NAME ARGUMENTS", what it does, and an example.
std::wstring UsageOf(const Command& command);

// The usage of one command, of one family ("text") or, for no words, of all; empty for an unknown name.
std::wstring HelpFor(std::span<const std::wstring_view> words);

// Levenshtein's distance: the fewest letters to insert, remove or replace.
std::size_t EditDistance(std::wstring_view a, std::wstring_view b);

// The known name that is closest to a mistyped one.
std::wstring NearestName(std::wstring_view typed);
