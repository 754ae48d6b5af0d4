#include "tools/qlutil/command.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "tools/qlutil/examples.h"

namespace {

constexpr std::wstring_view kGeneralUsage =
    L"usage: qlutil [--json] COMMAND [ARGUMENTS]\n"
    L"       qlutil help [COMMAND]\n"
    L"\n"
    L"With --json the answer is one JSON value on one line. Everything after a bare -- is an argument.\n"
    L"Exit status: 0 done; 1 absent, invalid or failed; 2 the call is wrong.\n";

const std::vector<const Command*>& AllCommands() {
    static const std::vector<const Command*> all = [] {
        std::vector<const Command*> commands;
        for (const auto& family :
             {SessionCommands(), NameCommands(), TextCommands(), JsonCommands(), PreferenceCommands(),
              DirectoryCommands(), LogCommands(), ValueCommands(), FileCommands(), ProcessorCommands(),
              SwitchCommands(), ZipCommands(), DisplayCommands(), KeyCommands(), ShellCommands(),
              VersionCommands(), MachineCommands()}) {
            for (const Command& command : family) commands.push_back(&command);
        }
        return commands;
    }();
    return all;
}

std::wstring Joined(std::span<const std::wstring_view> words) {
    std::wstring joined;
    for (std::wstring_view word : words) {
        if (!joined.empty()) joined += L' ';
        joined += word;
    }
    return joined;
}

const Command* Named(std::wstring_view name) {
    const auto& all = AllCommands();
    const auto found =
        std::find_if(all.begin(), all.end(), [&](const Command* c) { return c->name == name; });
    return found == all.end() ? nullptr : *found;
}

}  // namespace

std::size_t EditDistance(std::wstring_view a, std::wstring_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

CommandMatch FindCommand(std::span<const std::wstring_view> words) {
    for (std::size_t count = std::min<std::size_t>(2, words.size()); count > 0; --count) {
        if (const Command* command = Named(Joined(words.first(count)))) return {command, count};
    }
    return {nullptr, 0};
}

std::wstring UsageOf(const Command& command) {
    std::wstring usage = L"qlutil " + std::wstring(command.name);
    if (!command.arguments.empty()) usage += L' ' + std::wstring(command.arguments);
    usage += L"\n    " + std::wstring(command.summary) + L'\n';
    const std::wstring_view example = ExampleOf(command.name);
    return example.empty() ? usage : usage + L"    Example: qlutil " + std::wstring(example) + L'\n';
}

std::wstring HelpFor(std::span<const std::wstring_view> words) {
    const std::wstring wanted = Joined(words);
    std::wstring help;
    for (const Command* command : AllCommands()) {
        const bool inFamily = command->name.starts_with(wanted + L' ');
        if (wanted.empty() || command->name == wanted || inFamily) help += UsageOf(*command);
    }
    if (!wanted.empty()) return help;
    return std::wstring(kGeneralUsage) + L'\n' + help;
}

std::wstring NearestName(std::wstring_view typed) {
    const auto& all = AllCommands();
    const auto nearest = std::min_element(all.begin(), all.end(), [&](const Command* a, const Command* b) {
        return EditDistance(typed, a->name) < EditDistance(typed, b->name);
    });
    return std::wstring((*nearest)->name);
}
