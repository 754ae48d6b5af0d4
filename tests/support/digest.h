#pragma once

#include <cstdint>
#include <string_view>

// FNV-1a of 64 bits. Names and texts that registries, files and programs in the field hold must stay as they
// are: one that is missing, misspelt or changed shows in the digest of the whole table.
inline std::uint64_t DigestOf(std::wstring_view text) {
    std::uint64_t digest = 0xcbf29ce484222325;
    for (const wchar_t unit : text) digest = (digest ^ static_cast<std::uint64_t>(unit)) * 0x100000001b3;
    return digest;
}
