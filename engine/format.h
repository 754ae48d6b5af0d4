#pragma once

// Signatures, sizes and flags of the archive format, and its little-endian numbers.
#include <cstddef>
#include <cstdint>

#include "engine/file_access.h"

namespace ql::zip {

constexpr std::uint32_t kLocalSignature = 0x04034b50;
constexpr std::uint32_t kRecordSignature = 0x02014b50;
constexpr std::uint32_t kEndSignature = 0x06054b50;
constexpr std::uint32_t kEnd64Signature = 0x06064b50;
constexpr std::uint32_t kLocator64Signature = 0x07064b50;

constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kRecordSize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEnd64Size = 56;
constexpr std::size_t kLocator64Size = 20;
constexpr std::size_t kMaxComment = 0xffff;

// A field with this value has its true one among the 64-bit fields.
constexpr std::uint32_t kIn64 = 0xffffffff;
constexpr std::uint32_t kCountIn64 = 0xffff;

constexpr std::uint16_t kExtra64 = 0x0001;
constexpr std::uint16_t kExtraUnicodePath = 0x7075;

constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;

constexpr std::uint16_t kFlagEncrypted = 0x0001;
constexpr std::uint16_t kFlagDescriptor = 0x0008;
constexpr std::uint16_t kFlagStrongEncryption = 0x0040;
constexpr std::uint16_t kFlagUtf8 = 0x0800;
constexpr std::uint16_t kFlagMasked = 0x2000;

constexpr std::uint16_t kVersion = 20;
// Who made a member.
constexpr std::uint8_t kHostUnix = 3;
// Attributes are those of Windows, names are as flagged: programs take names of the older "FAT" for code page
// 437 whatever the flag says.
constexpr std::uint16_t kMadeByNtfs = 11 << 8 | kVersion;

constexpr std::uint16_t Get16(const std::uint8_t* at) {
    return static_cast<std::uint16_t>(at[0] | at[1] << 8);
}
constexpr std::uint32_t Get32(const std::uint8_t* at) {
    return Get16(at) | static_cast<std::uint32_t>(Get16(at + 2)) << 16;
}
constexpr std::uint64_t Get64(const std::uint8_t* at) {
    return Get32(at) | static_cast<std::uint64_t>(Get32(at + 4)) << 32;
}

constexpr void Put16(std::uint8_t* at, std::uint32_t value) {
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
}
constexpr void Put32(std::uint8_t* at, std::uint32_t value) {
    Put16(at, value);
    Put16(at + 2, value >> 16);
}

}  // namespace ql::zip
