#pragma once

// Signatures, sizes, fields and flags of the archive format, and its little-endian numbers.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/file_access.h"

namespace ql::zip {

constexpr std::uint32_t kLocalSignature = 0x04034b50;
constexpr std::uint32_t kRecordSignature = 0x02014b50;
constexpr std::uint32_t kEndSignature = 0x06054b50;
constexpr std::uint32_t kEnd64Signature = 0x06064b50;
constexpr std::uint32_t kLocator64Signature = 0x07064b50;

constexpr std::size_t kSignatureSize = 4;
constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kRecordSize = 46;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kEnd64Size = 56;
constexpr std::size_t kLocator64Size = 20;
constexpr std::size_t kExtraHeaderSize = 4;

// Where the fields of each header stand. The fields from the version needed to the size of the name follow
// one another in the same way in a local header and in the directory's record.
namespace common {
constexpr std::size_t kVersion = 0, kFlags = 2, kMethod = 4, kTime = 6, kCrc = 10, kPackedSize = 14,
                      kSize = 18, kNameSize = 22, kEnd = 24;
}
namespace local {
constexpr std::size_t kCommon = 4, kFlags = kCommon + common::kFlags, kMethod = kCommon + common::kMethod,
                      kCrc = kCommon + common::kCrc, kPackedSize = kCommon + common::kPackedSize,
                      kSize = kCommon + common::kSize, kNameSize = kCommon + common::kNameSize,
                      kExtraSize = 28;
}
namespace record {
constexpr std::size_t kMadeBy = 4, kHost = 5, kCommon = 6, kFlags = kCommon + common::kFlags,
                      kMethod = kCommon + common::kMethod, kTime = kCommon + common::kTime,
                      kCrc = kCommon + common::kCrc, kPackedSize = kCommon + common::kPackedSize,
                      kSize = kCommon + common::kSize, kNameSize = kCommon + common::kNameSize,
                      kExtraSize = 30, kCommentSize = 32, kDisk = 34, kAttributes = 38, kOffset = 42;
}
namespace end {
constexpr std::size_t kDisk = 4, kDirectoryDisk = 6, kCountHere = 8, kCount = 10, kSize = 12, kOffset = 16,
                      kCommentSize = 20;
}
namespace end64 {
constexpr std::size_t kRest = 4, kMadeBy = 12, kNeeded = 14, kDisk = 16, kDirectoryDisk = 20, kCountHere = 24,
                      kCount = 32, kSize = 40, kOffset = 48;
// What a record says of its own size leaves out the signature and that field.
constexpr std::size_t kRestSize = kEnd64Size - 12;
}  // namespace end64
namespace locator64 {
constexpr std::size_t kDisk = 4, kOffset = 8, kDisks = 16;
}

constexpr std::size_t kMaxComment = 0xffff;
constexpr std::size_t kMaxName = 0xffff;
constexpr std::size_t kMaxExtra = 0xffff;
// A directory is held in memory as a whole, which bounds what an archive can make of this process.
constexpr std::uint64_t kMaxDirectory = 64u << 20;

// A field with this value has its true one among the 64-bit fields.
constexpr std::uint32_t kIn64 = 0xffffffff;
constexpr std::uint32_t kCountIn64 = 0xffff;

constexpr std::uint16_t kExtra64 = 0x0001;
constexpr std::uint16_t kExtraNtfs = 0x000a;
constexpr std::uint16_t kExtraUnixTime = 0x5455;
constexpr std::uint16_t kExtraUnicodePath = 0x7075;

constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;

constexpr std::uint16_t kFlagEncrypted = 0x0001;
constexpr std::uint16_t kFlagDescriptor = 0x0008;
constexpr std::uint16_t kFlagStrongEncryption = 0x0040;
constexpr std::uint16_t kFlagUtf8 = 0x0800;
constexpr std::uint16_t kFlagMasked = 0x2000;

constexpr std::uint16_t kVersion = 20;
constexpr std::uint16_t kVersion64 = 45;
// Who made a member.
constexpr std::uint8_t kHostDos = 0, kHostUnix = 3, kHostNtfs = 11, kHostVfat = 14;
// Attributes are those of Windows, names are as flagged: programs take names of the older "FAT" for code page
// 437 whatever the flag says.
constexpr std::uint16_t kMadeByNtfs = kHostNtfs << 8 | kVersion;
constexpr std::uint32_t kFolderAttribute = 16;

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
constexpr void Put64(std::uint8_t* at, std::uint64_t value) {
    Put32(at, static_cast<std::uint32_t>(value));
    Put32(at + 4, static_cast<std::uint32_t>(value >> 32));
}

inline std::string_view TextOf(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

}  // namespace ql::zip
