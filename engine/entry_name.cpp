#include "engine/entry_name.h"

#include <algorithm>
#include <iterator>

#include "engine/name_encoding.h"

namespace ql::zip {
namespace {

constexpr std::size_t kMaxPart = 255;
constexpr std::size_t kMaxName = 4096;

constexpr std::u32string_view kDevices[] = {U"CON", U"PRN", U"AUX", U"NUL", U"CLOCK$", U"CONIN$", U"CONOUT$"};
constexpr std::u32string_view kNumberedDevices[] = {U"COM", U"LPT"};
// The raised digits name the same ports.
constexpr std::u32string_view kPortNumbers = U"0123456789\u00b9\u00b2\u00b3";

bool IsDevice(std::u32string_view part) {
    std::u32string_view stem = part.substr(0, part.find(U'.'));
    stem = stem.substr(0, stem.find_last_not_of(U' ') + 1);
    if (std::find(std::begin(kDevices), std::end(kDevices), stem) != std::end(kDevices)) return true;
    return stem.size() == 4 && kPortNumbers.find(stem[3]) != std::u32string_view::npos &&
           std::find(std::begin(kNumberedDevices), std::end(kNumberedDevices), stem.substr(0, 3)) !=
               std::end(kNumberedDevices);
}

bool IsForbidden(char32_t c) {
    return c < 0x20 || c == 0x7f || std::u32string_view(U"<>:\"|?*").find(c) != std::u32string_view::npos;
}

bool IsSafePart(std::u32string_view part) {
    return !part.empty() && part.size() <= kMaxPart && part.back() != U'.' && part.back() != U' ' &&
           std::none_of(part.begin(), part.end(), IsForbidden) && !IsDevice(part);
}

}  // namespace

bool IsSafeEntryName(std::string_view name) {
    if (name.empty() || name.size() > kMaxName) return false;
    std::u32string folded = Folded(WithSlashes(name));
    if (folded.back() == U'/') folded.pop_back();
    std::u32string_view rest = folded;
    for (std::size_t slash; (slash = rest.find(U'/')) != std::u32string_view::npos;
         rest.remove_prefix(slash + 1)) {
        if (!IsSafePart(rest.substr(0, slash))) return false;
    }
    return IsSafePart(rest);
}

std::string WithSlashes(std::string_view name) {
    std::string result(name);
    std::replace(result.begin(), result.end(), '\\', '/');
    return result;
}

std::string_view LastPart(std::string_view name) {
    while (!name.empty() && IsSeparator(name.back())) name.remove_suffix(1);
    return name.substr(name.find_last_of("/\\") + 1);
}

bool IsLongName(std::string_view fileName) {
    const std::size_t dot = fileName.find('.');
    const std::string_view stem = fileName.substr(0, dot);
    const std::string_view extension = dot == std::string_view::npos ? "" : fileName.substr(dot + 1);
    return CodePoints(stem).size() > 8 || CodePoints(extension).size() > 3 ||
           extension.find('.') != std::string_view::npos || fileName.find(' ') != std::string_view::npos;
}

}  // namespace ql::zip
