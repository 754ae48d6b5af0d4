#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ql::zip {

// The names of an item list: separated by blanks, those with blanks in double quotes.
std::vector<std::string> SplitItems(std::string_view list);

bool HasWildCard(std::string_view name);

// Whether the name (without folders) fits the pattern, case aside: "*" stands for any characters, "?" for
// one, "*.*" for every name. In a time of at most the product of the lengths.
bool MatchesWildCards(std::u32string_view foldedPattern, std::u32string_view foldedName);

// Names with folders and, in their last part, wild cards; held against names in an archive.
class NamePatterns {
  public:
    // `anyDepth`: a pattern also stands for names in folders below its own (without a folder: everywhere).
    NamePatterns(const std::vector<std::string>& items, bool anyDepth);
    bool Match(std::string_view name) const;

  private:
    // A folded name: its folder (with the slash at the end; empty for none) and its last part.
    struct Parts {
        std::u32string folder, name;
    };
    static Parts Split(std::string_view name);
    bool FolderFits(std::u32string_view pattern, std::u32string_view folder) const;

    std::vector<Parts> patterns_;
    bool anyDepth_;
};

}  // namespace ql::zip
