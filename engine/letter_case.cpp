#include "engine/letter_case.h"

#include <cstddef>
#include <numeric>
#include <vector>

#include "platform/win32.h"

namespace ql::zip {
namespace {

constexpr std::size_t kUnits = 0x10000;

std::vector<wchar_t> MakeTable() {
    std::vector<wchar_t> units(kUnits), upper(kUnits);
    std::iota(units.begin(), units.end(), L'\0');
    upper = units;
    constexpr int kCount = static_cast<int>(kUnits) - 1;  // without the zero, which ends texts
    ::LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &units[1], kCount, &upper[1], kCount, nullptr,
                    nullptr, 0);
    return upper;
}

}  // namespace

char32_t WithoutCase(char32_t c) {
    if (c < 0x80) return c >= U'a' && c <= U'z' ? c - U'a' + U'A' : c;
    if (c >= kUnits) return c;
    static const std::vector<wchar_t> table = MakeTable();
    return static_cast<char32_t>(table[c]);
}

}  // namespace ql::zip
