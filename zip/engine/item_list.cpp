#include "zip/engine/item_list.h"

#include <algorithm>

#include "zip/engine/entry_name.h"
#include "zip/engine/name_encoding.h"

namespace ql::zip {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Folder (with its slash at the end, empty for none) and last part of a name.
std::pair<std::u32string, std::u32string> Split(std::string_view name) {
    std::u32string folded = Folded(WithSlashes(name));
    if (folded.size() > 1 && folded.back() == U'/') folded.pop_back();
    const std::size_t last = folded.rfind(U'/') + 1;
    return {folded.substr(0, last), folded.substr(last)};
}

}  // namespace

std::vector<std::string> SplitItems(std::string_view list) {
    std::vector<std::string> items;
    for (;;) {
        list.remove_prefix(std::min(list.find_first_not_of(kBlanks), list.size()));
        if (list.empty()) return items;
        const bool quoted = list.front() == '"';
        if (quoted) list.remove_prefix(1);
        const std::size_t end = std::min(list.find_first_of(quoted ? "\"" : kBlanks), list.size());
        if (end > 0) items.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
}

bool HasWildCard(std::string_view name) {
    return name.find_first_of("*?") != std::string_view::npos;
}

bool MatchesWildCards(std::u32string_view pattern, std::u32string_view name) {
    if (pattern == U"*.*") return true;
    std::size_t p = 0, n = 0, star = std::u32string_view::npos, starName = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == U'*') {
            star = p++;
            starName = n;
        } else if (p < pattern.size() && (pattern[p] == U'?' || pattern[p] == name[n])) {
            ++p, ++n;
        } else if (star != std::u32string_view::npos) {
            p = star + 1;
            n = ++starName;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(U'*', p) == std::u32string_view::npos;
}

NamePatterns::NamePatterns(const std::vector<std::string>& items, bool anyDepth) : anyDepth_(anyDepth) {
    for (const std::string& item : items) {
        auto [folder, name] = Split(item);
        patterns_.push_back({std::move(folder), std::move(name)});
    }
}

bool NamePatterns::FolderFits(const Pattern& pattern, std::u32string_view folder) const {
    return anyDepth_ ? folder.starts_with(pattern.folder) : folder == pattern.folder;
}

bool NamePatterns::Match(std::string_view name) const {
    const auto [folder, last] = Split(name);
    return std::any_of(patterns_.begin(), patterns_.end(), [&](const Pattern& pattern) {
        return FolderFits(pattern, folder) && MatchesWildCards(pattern.name, last);
    });
}

}  // namespace ql::zip
