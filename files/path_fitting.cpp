#include "files/path_fitting.h"

#include <string_view>

namespace ql {

namespace {

constexpr std::wstring_view kEllipsis = L"...";
constexpr std::size_t kNone = std::wstring::npos;

}  // namespace

bool ShortenPath(std::wstring& text) {
    const std::size_t begin = text.find(L'\\') + 1;
    if (begin == 0) return false;
    std::size_t end = text.find(L'\\', begin);
    if (end != kNone && text.find(kEllipsis) == begin) end = text.find(L'\\', end + 1);
    // An ellipsis further to the left hides the one that is there: nothing would change, again and again.
    if (end == kNone || text.compare(begin, end - begin, kEllipsis) == 0) return false;
    text.replace(begin, end - begin, kEllipsis);
    return true;
}

std::optional<std::size_t> EllipsisEnd(const std::wstring& text) noexcept {
    const std::size_t begin = text.find(L'\\') + 1;
    if (begin == 0 || text.find(kEllipsis) != begin) return std::nullopt;
    return begin + kEllipsis.size();
}

}  // namespace ql
