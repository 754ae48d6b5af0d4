#include "engine/member_selection.h"

#include <algorithm>

#include "engine/item_list.h"

namespace ql::zip {
namespace {

using Places = std::vector<std::size_t>;

// Without wild cards only members of the same last part come into question.
Places WithoutWildCards(const Archive& archive, const std::string& item, bool anyDepth) {
    Places exact = archive.Index().WithPath(archive.Entries(), item);
    if (!exact.empty()) return exact;
    Places fitting = archive.Index().WithLastPart(archive.Entries(), item);
    const NamePatterns pattern({item}, anyDepth);
    std::erase_if(fitting, [&](std::size_t i) { return !pattern.Match(archive.Entries()[i].name); });
    return fitting;
}

Places Fitting(const Archive& archive, const NamePatterns& patterns) {
    Places fitting;
    for (std::size_t i = 0; i < archive.Entries().size(); ++i) {
        if (patterns.Match(archive.Entries()[i].name)) fitting.push_back(i);
    }
    return fitting;
}

}  // namespace

Places SelectMembers(const Archive& archive, const std::vector<std::string>& items, bool anyDepth) {
    Places selected;
    std::vector<std::string> patterns;
    for (const std::string& item : items) {
        if (HasWildCard(item)) {
            patterns.push_back(item);
            continue;
        }
        const Places found = WithoutWildCards(archive, item, anyDepth);
        selected.insert(selected.end(), found.begin(), found.end());
    }
    if (!patterns.empty()) {
        const Places found = Fitting(archive, NamePatterns(patterns, anyDepth));
        selected.insert(selected.end(), found.begin(), found.end());
    }
    std::sort(selected.begin(), selected.end());
    selected.erase(std::unique(selected.begin(), selected.end()), selected.end());
    return selected;
}

}  // namespace ql::zip
