#include "engine/item_filter.h"

#include <algorithm>

#include "engine/name_encoding.h"
#include "engine/result.h"
#include "engine/windows_text.h"

namespace ql::zip {
namespace {

NamePatterns Patterns(const char* items) {
    return NamePatterns(SplitItems(Utf8FromAnsi(items)), true);
}

// "MM/DD/YY".
DosTime ParseDate(const char* text) {
    const std::string_view date = text ? text : "";
    Require(date.size() == 8 && date[2] == '/' && date[5] == '/', Result::kBadRequest);
    const auto number = [&](std::size_t at) {
        const std::string_view digits = date.substr(at, 2);
        Require(digits.find_first_not_of("0123456789") == digits.npos, Result::kBadRequest);
        return (digits[0] - '0') * 10 + (digits[1] - '0');
    };
    const int month = number(0), day = number(3), year = number(6);
    Require(month >= 1 && month <= 12 && day >= 1 && day <= 31, Result::kBadRequest);
    return ToDosTime({ZipFullYear(year), month, day, 0, 0, 0});
}

}  // namespace

ItemFilter::ItemFilter(const ZIPCMDSTRUCT& command) {
    if (command.includeOnlyFollowingFlag) only_ = Patterns(command.lpszIncludeFollowing);
    if (command.excludeFollowingFlag) without_ = Patterns(command.lpszExcludeFollowing);
    if (command.afterDateFlag) since_ = ParseDate(command.lpszDate);
}

bool ItemFilter::Admits(const DiskItem& item) const {
    return item.time >= since_ && (!only_ || only_->Match(item.name)) &&
           !(without_ && without_->Match(item.name));
}

StoredSuffixes::StoredSuffixes(const ZIPCMDSTRUCT& command) {
    if (!command.dontCompressTheseSuffixesFlag) return;
    std::string list = Utf8FromAnsi(command.lpszStoreSuffixes);
    std::ranges::replace_if(
        list, [](char c) { return c == ',' || c == ';' || c == ':'; }, ' ');
    for (const std::string& suffix : SplitItems(list))
        suffixes_.push_back(Folded(suffix.front() == '.' ? suffix : "." + suffix));
}

bool StoredSuffixes::Cover(std::u32string_view foldedName) const {
    return std::any_of(suffixes_.begin(), suffixes_.end(),
                       [=](const std::u32string& suffix) { return foldedName.ends_with(suffix); });
}

}  // namespace ql::zip
