#include "engine/member_index.h"

#include <bit>

#include "engine/archive.h"
#include "engine/entry_name.h"
#include "engine/name_encoding.h"

namespace ql::zip {
namespace {

std::string_view WithoutLastSlash(std::string_view name) {
    if (!name.empty() && IsSeparator(name.back())) name.remove_suffix(1);
    return name;
}

}  // namespace

MemberIndex::MemberIndex(const std::vector<Entry>& entries)
    : first_(std::bit_ceil(entries.size() + 1)), next_(entries.size()) {
    // From the last on, so that each chain is in the order of the list.
    for (std::size_t i = entries.size(); i-- > 0;) {
        std::uint32_t& first = first_[FoldedHash(LastPart(entries[i].name)) & (first_.size() - 1)];
        next_[i] = first;
        first = static_cast<std::uint32_t>(i + 1);
    }
}

std::vector<std::size_t> MemberIndex::WithLastPart(const std::vector<Entry>& entries,
                                                   std::string_view name) const {
    std::vector<std::size_t> found;
    if (first_.empty()) return found;
    const std::string_view part = LastPart(name);
    for (std::uint32_t i = first_[FoldedHash(part) & (first_.size() - 1)]; i != 0; i = next_[i - 1]) {
        if (IsSameFolded(LastPart(entries[i - 1].name), part)) found.push_back(i - 1);
    }
    return found;
}

std::vector<std::size_t> MemberIndex::WithPath(const std::vector<Entry>& entries,
                                               std::string_view path) const {
    std::vector<std::size_t> found = WithLastPart(entries, path);
    std::erase_if(found, [&](std::size_t i) {
        return !IsSameFolded(WithoutLastSlash(entries[i].name), WithoutLastSlash(path));
    });
    return found;
}

}  // namespace ql::zip
