#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "settings/scopes.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/text_file.h"

namespace {

void Say(std::wstring_view message) {
    WriteToStream(Stream::kError, L"qlutil: " + std::wstring(message) + L'\n');
}

bool PrintText(std::wstring_view text) {
    if (text.empty() || WriteToStream(Stream::kOutput, text)) return true;
    Say(L"cannot write to standard output");
    return false;
}

ExitStatus Help(std::span<const std::wstring_view> words) {
    const std::wstring help = HelpFor(words);
    if (!help.empty()) return PrintText(help) ? kDone : kFailed;
    Say(L"there is no command \"" + std::wstring(words.front()) + L"\"; did you mean \"" +
        NearestName(words.front()) + L"\"?");
    return kWrongCall;
}

ExitStatus Answered(const Command& command, const Arguments& arguments, bool json) {
    const Answer answer = command.run(arguments);
    const ExitStatus printed = Render(answer, json, PrintText) ? kDone : kFailed;
    if (!answer.message.empty()) Say(answer.message);
    return answer.status == kDone ? printed : answer.status;
}

// What a command finds while it is printed needs the library as the command itself does.
ExitStatus RunCommand(const Command& command, const Arguments& arguments, bool json) {
    if (command.library == Library::kLeftToCommand) return Answered(command, arguments, json);
    const QLLibraryScope library;
    const QLThreadScope thread;
    if (library.ok() && thread.ok()) return Answered(command, arguments, json);
    Say(L"the library did not start");
    return kFailed;
}

ExitStatus Execute(const Command& command, std::span<const std::wstring_view> words, bool json) try {
    const Arguments arguments(words, command.switches);
    if (arguments.count() < command.fewest) throw WrongCall(L"an argument is missing");
    if (arguments.count() > command.most) throw WrongCall(L"there are too many arguments");
    return RunCommand(command, arguments, json);
} catch (const WrongCall& wrong) {
    Say(wrong.why());
    WriteToStream(Stream::kError, L"usage: " + UsageOf(command));
    return kWrongCall;
}

// --json counts wherever it stands before a bare "--".
bool TakeJsonSwitch(std::vector<std::wstring_view>& words) {
    for (auto word = words.begin(); word != words.end() && *word != L"--"; ++word) {
        if (*word != L"--json") continue;
        words.erase(word);
        return true;
    }
    return false;
}

// What people type who do not know a program yet.
bool AsksForHelp(std::wstring_view word) {
    return word == L"help" || word == L"--help" || word == L"-h" || word == L"/?";
}

// For a family's name alone ("text") its commands; for anything else the nearest name.
ExitStatus UnknownCommand(std::span<const std::wstring_view> words) {
    const std::wstring family = HelpFor(words.first(1));
    std::wstring typed(words.front());
    if (words.size() > 1 && !family.empty()) typed += L' ' + std::wstring(words[1]);
    Say(L"unknown command \"" + typed + L"\"; did you mean \"" + NearestName(typed) + L"\"?");
    if (!family.empty()) WriteToStream(Stream::kError, L"usage:\n" + family);
    return kWrongCall;
}

ExitStatus Run(std::vector<std::wstring_view> words) {
    const bool json = TakeJsonSwitch(words);
    if (words.size() == 1 && words.front() == L"--version") words = {L"version"};
    if (words.empty()) {
        WriteToStream(Stream::kError, HelpFor({}));
        return kWrongCall;
    }
    const std::span<const std::wstring_view> all(words);
    if (AsksForHelp(words.front())) return Help(all.subspan(1));
    const CommandMatch match = FindCommand(all);
    // Behind a command's name "help" may be meant as it stands.
    const bool afterName = words.size() > 1 && words.back() != L"help" && AsksForHelp(words.back());
    if (afterName && !HelpFor(all.first(words.size() - 1)).empty()) return Help(all.first(words.size() - 1));
    return match.command ? Execute(*match.command, all.subspan(match.words), json) : UnknownCommand(all);
}

}  // namespace

int wmain(int count, wchar_t** words) try {
    return Run({words + 1, words + count});
} catch (const std::exception& unexpected) {
    const std::string what = unexpected.what();
    Say(L"failed: " + std::wstring(what.begin(), what.end()));
    return kFailed;
}
