#pragma once

#include <cstdint>

#include "platform/win32.h"

namespace ql {

// How a volume tells its files apart. A volume that numbers none answers 0 for each.
struct FileNumber {
    std::uint32_t volume;
    std::uint64_t index;
};

enum class Sameness { kSame, kDifferent, kUnknown };

constexpr Sameness Compare(const FileNumber& a, const FileNumber& b) noexcept {
    if (a.volume != b.volume || a.index != b.index) return Sameness::kDifferent;
    return a.index != 0 ? Sameness::kSame : Sameness::kUnknown;
}

// Whether two open files lie at one place, by whatever names they were opened.
bool LieAtOnePlace(HANDLE a, HANDLE b);

// Whether two open files are one: by their numbers, and where those say nothing by their places.
bool AreOneFile(HANDLE a, HANDLE b);

}  // namespace ql
