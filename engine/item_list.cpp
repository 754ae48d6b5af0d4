#include "engine/item_list.h"

#include <algorithm>

#include "engine/entry_name.h"
#include "engine/name_encoding.h"

namespace ql::zip {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

}  // namespace

std::vector<std::string> SplitItems(std::string_view list) {
    std::vector<std::string> items;
    while (!list.empty()) {
        const bool quoted = list.front() == '"';
        if (quoted) list.remove_prefix(1);
        const std::size_t end = std::min(list.find_first_of(quoted ? "\"" : kBlanks), list.size());
        if (end > 0) items.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return items;
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

NamePatterns::Parts NamePatterns::Split(std::string_view name) {
    std::u32string folded = Folded(WithSlashes(name));
    if (folded.size() > 1 && folded.back() == U'/') folded.pop_back();
    const std::size_t last = folded.rfind(U'/') + 1;
    return {folded.substr(0, last), folded.substr(last)};
}

NamePatterns::NamePatterns(const std::vector<std::string>& items, bool anyDepth) : anyDepth_(anyDepth) {
    for (const std::string& item : items) patterns_.push_back(Split(item));
}

// A question mark cannot be a folder's: it stands for a character that the caller's code page lacks.
bool NamePatterns::FolderFits(std::u32string_view pattern, std::u32string_view folder) const {
    if (folder.size() < pattern.size() || (folder.size() > pattern.size() && !anyDepth_)) return false;
    return std::equal(pattern.begin(), pattern.end(), folder.begin(),
                      [](char32_t p, char32_t c) { return p == c || (p == U'?' && c != U'/'); });
}

bool NamePatterns::Match(std::string_view name) const {
    const Parts parts = Split(name);
    return std::any_of(patterns_.begin(), patterns_.end(), [&](const Parts& pattern) {
        return FolderFits(pattern.folder, parts.folder) && MatchesWildCards(pattern.name, parts.name);
    });
}

}  // namespace ql::zip
