#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace ql::zip {

struct Entry;

// Finds members by the last part of their names, case aside, in the time of a look-up. Holds places in the
// list that it was made of, not the list.
class MemberIndex {
  public:
    MemberIndex() = default;
    explicit MemberIndex(const std::vector<Entry>& entries);

    // In the order of the list: the members of that last part, which may be a whole path or the part alone.
    std::vector<std::size_t> WithLastPart(const std::vector<Entry>& entries, std::string_view name) const;

    // Those of exactly that path.
    std::vector<std::size_t> WithPath(const std::vector<Entry>& entries, std::string_view path) const;

  private:
    std::vector<std::uint32_t> first_;  // by hash: a member's place and one, 0 for none
    std::vector<std::uint32_t> next_;   // by place: the next member of that hash, likewise
};

}  // namespace ql::zip
