#include "text/xml_char_ref.h"

#include <cstdint>

#include "platform/win32.h"
#include "text/hex_digit.h"

namespace {

template <class Unit>
bool TakeReference(const Unit** cursor, unsigned long* value) noexcept {
    const Unit* at = cursor ? *cursor : nullptr;
    if (!at || at[0] != '&' || at[1] != '#') return false;
    at += 2;
    const bool isHexadecimal = *at == 'x' || *at == 'X';
    if (isHexadecimal) ++at;
    const std::uint32_t base = isHexadecimal ? 16 : 10;
    const auto digit = [&at] { return ql::HexDigit(static_cast<char32_t>(*at)); };
    std::uint32_t number = 0;
    for (; digit() < base; ++at) number = number * base + digit();
    if (*at != ';') return false;
    if (value) *value = number;
    *cursor = at + 1;
    return true;
}

// Of a code page of many bytes: the fewest that the system takes for a character, one of those that it never
// does.
int LengthOfCharacter(const char* at, int most) {
    for (int length = 1; length <= most && at[length - 1] != '\0'; ++length) {
        if (::MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, at, length, nullptr, 0) != 0) return length;
    }
    return 1;
}

}  // namespace

bool IsXmlCharEntityRefW(const wchar_t** cursor, unsigned long* value) {
    return TakeReference(cursor, value);
}

bool IsXmlCharEntityRefA(const char** cursor, unsigned long* value) {
    return TakeReference(cursor, value);
}

int AnsiWithEntitiesCharLength(const char* text) {
    if (!text) return 0;
    CPINFO page = {};
    const int most = ::GetCPInfo(CP_ACP, &page) ? static_cast<int>(page.MaxCharSize) : 1;
    int length = 0;
    for (; *text; ++length) {
        if (TakeReference(&text, nullptr)) continue;
        const bool isAscii = static_cast<unsigned char>(*text) < 0x80;
        text += isAscii || most == 1 ? 1 : LengthOfCharacter(text, most);
    }
    return length;
}
