#include "engine/archive.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>

#include <zlib.h>

#include "engine/entry_name.h"
#include "engine/format.h"
#include "engine/name_encoding.h"
#include "engine/result.h"

namespace ql::zip {
namespace {

// Deflate cannot give more than this many bytes for one.
constexpr std::uint64_t kMaxRatio = 1032;

// Replaces the values that are kept as 64 bits, in the order in which they stand there. What follows them is
// the number of the volume, where the record leaves it to them.
void Read64(Entry& entry, Field extra, std::uint16_t disk) {
    Field rest = FindExtra(extra, kExtra64).value_or(Field{});
    for (std::uint64_t* value : {&entry.size, &entry.packedSize, &entry.offset}) {
        if (*value != kIn64) continue;
        entry.needs64 = true;
        Require(rest.size >= 8, Result::kInvalid);
        *value = Get64(rest.data);
        rest = {rest.data + 8, rest.size - 8};
    }
    const bool isIn64 = disk == kCountIn64 && rest.size >= 4;
    entry.needs64 = entry.needs64 || isIn64;
    Require((isIn64 ? Get32(rest.data) : disk) == 0, Result::kMultiVolume);
}

// A second form of the name, which counts only while it belongs to the first.
std::optional<std::string> UnicodePath(std::string_view name, Field extra) {
    const auto field = FindExtra(extra, kExtraUnicodePath);
    if (!field || field->size < 5 || field->data[0] != 1) return std::nullopt;
    const auto* bytes = reinterpret_cast<const Bytef*>(name.data());
    if (Get32(field->data + 1) != crc32(0, bytes, static_cast<uInt>(name.size()))) return std::nullopt;
    std::string path(reinterpret_cast<const char*>(field->data + 5), field->size - 5);
    if (!IsUtf8(path)) return std::nullopt;
    return path;
}

// Unix programs write UTF-8 without saying so.
std::string DecodeName(std::string_view name, std::uint16_t flags, std::uint8_t host, Field extra) {
    const bool saysUtf8 = flags & kFlagUtf8 || host == kHostUnix;
    if (saysUtf8 && IsUtf8(name)) return std::string(name);
    if (auto path = UnicodePath(name, extra)) return *std::move(path);
    return Utf8FromOem(name);
}

// The hosts whose attributes are those of Windows need no slash behind a folder's name.
bool IsFolder(const Entry& entry, std::uint8_t host) {
    if (entry.name.empty()) return false;
    if (IsSeparator(entry.name.back())) return true;
    const bool hasAttributes = host == kHostDos || host == kHostNtfs || host == kHostVfat;
    return hasAttributes && entry.attributes & kFolderAttribute && entry.size == 0;
}

Field NameIn(const std::uint8_t* record) {
    return {record + kRecordSize, Get16(record + record::kNameSize)};
}
Field ExtraIn(const std::uint8_t* record) {
    return {record + kRecordSize + Get16(record + record::kNameSize), Get16(record + record::kExtraSize)};
}

Entry ParseRecord(const std::uint8_t* at, std::size_t available) {
    Require(available >= kRecordSize && Get32(at) == kRecordSignature, Result::kInvalid);
    Entry entry{};
    entry.recordSize = kRecordSize + NameIn(at).size + ExtraIn(at).size + Get16(at + record::kCommentSize);
    Require(entry.recordSize <= available, Result::kInvalid);
    entry.flags = Get16(at + record::kFlags);
    entry.method = Get16(at + record::kMethod);
    entry.time = Get32(at + record::kTime);
    entry.crc = Get32(at + record::kCrc);
    entry.packedSize = Get32(at + record::kPackedSize);
    entry.size = Get32(at + record::kSize);
    entry.attributes = Get32(at + record::kAttributes);
    entry.offset = Get32(at + record::kOffset);
    const Field name = NameIn(at), extra = ExtraIn(at);
    Read64(entry, extra, Get16(at + record::kDisk));
    entry.utcTime = UtcTimeIn(extra);
    entry.name = DecodeName(TextOf(name.data, name.size), entry.flags, at[record::kHost], extra);
    entry.isFolder = IsFolder(entry, at[record::kHost]);
    return entry;
}

bool SizesAreSensible(const Entry& entry) {
    if (entry.method == kStored && !entry.IsEncrypted()) return entry.size == entry.packedSize;
    return entry.method != kDeflated || entry.size / kMaxRatio <= entry.packedSize;
}

}  // namespace

bool Entry::IsEncrypted() const {
    return flags & (kFlagEncrypted | kFlagStrongEncryption | kFlagMasked);
}

Archive::Archive(InputFile& file) : end_(ReadArchiveEnd(file)) {
    Require(end_.directorySize <= kMaxDirectory, Result::kNoMemory);
    directory_ = ReadBytes(file, end_.directoryStart, static_cast<std::size_t>(end_.directorySize));
    ParseDirectory();
    OrderByOffset();
    index_ = MemberIndex(entries_);
}

bool Archive::IsIn(InputFile& file) const {
    return ReadArchiveEnd(file) == end_ &&
           ReadBytes(file, end_.directoryStart, directory_.size()) == directory_;
}

std::uint64_t Archive::PrefixSize() const {
    return byOffset_.empty() ? end_.directoryStart : entries_[byOffset_.front()].offset;
}

void Archive::ParseDirectory() {
    Require(end_.count <= directory_.size() / kRecordSize, Result::kInvalid);
    entries_.reserve(static_cast<std::size_t>(end_.count));
    std::size_t at = 0;
    while (entries_.size() < end_.count) {
        Entry entry = ParseRecord(directory_.data() + at, directory_.size() - at);
        entry.record = at;
        entry.offset += end_.base;
        at += entry.recordSize;
        entries_.push_back(std::move(entry));
    }
    Require(at == directory_.size(), Result::kInvalid);
}

void Archive::OrderByOffset() {
    byOffset_.resize(entries_.size());
    std::iota(byOffset_.begin(), byOffset_.end(), std::size_t{0});
    std::ranges::sort(byOffset_, {}, [this](std::size_t i) { return entries_[i].offset; });
    std::uint64_t end = end_.directoryStart;
    for (auto i = byOffset_.rbegin(); i != byOffset_.rend(); ++i) {
        Entry& entry = entries_[*i];
        const std::uint64_t header = kLocalSize + NameIn(Record(entry)).size;
        Require(entry.offset <= end && header <= end - entry.offset, Result::kInvalid);
        Require(entry.packedSize <= end - entry.offset - header && SizesAreSensible(entry), Result::kInvalid);
        entry.end = end;
        end = entry.offset;
    }
}

void Archive::RequireMembersInPlace(InputFile& file) const {
    if (end_.base == 0) return;
    for (const std::size_t i : byOffset_) {
        const Bytes signature = ReadBytes(file, entries_[i].offset, kSignatureSize);
        Require(Get32(signature.data()) == kLocalSignature, Result::kInvalid);
    }
}

// A second form of the name may stand in the local header alone, and the same bytes may be said there to be
// in another encoding.
void Archive::RequireSameName(const Bytes& localExtra, std::uint16_t localFlags, const Entry& entry) const {
    const std::uint8_t* record = Record(entry);
    const Field own{localExtra.data(), localExtra.size()}, name = NameIn(record);
    const Field told = FindExtra(own, kExtraUnicodePath) ? own : ExtraIn(record);
    Require(DecodeName(TextOf(name.data, name.size), localFlags, record[record::kHost], told) == entry.name,
            Result::kInvalid);
}

std::uint64_t Archive::DataStart(InputFile& file, const Entry& entry) const {
    const std::uint8_t* record = Record(entry);
    const Field name = NameIn(record);
    const Bytes header = ReadBytes(file, entry.offset, kLocalSize + name.size);
    const std::uint8_t* at = header.data();
    Require(Get32(at) == kLocalSignature && Get16(at + local::kNameSize) == name.size &&
                std::equal(name.data, name.data + name.size, at + kLocalSize),
            Result::kInvalid);
    const std::uint16_t flags = Get16(at + local::kFlags);
    Require(Get16(at + local::kMethod) == entry.method && !((flags ^ entry.flags) & kFlagEncrypted),
            Result::kInvalid);
    // Numbers that come only after the data, or that are kept as 64 bits, are the directory's alone.
    if (!(flags & kFlagDescriptor) && Get32(at + local::kPackedSize) != kIn64 &&
        Get32(at + local::kSize) != kIn64) {
        Require(Get32(at + local::kCrc) == entry.crc && Get32(at + local::kPackedSize) == entry.packedSize &&
                    Get32(at + local::kSize) == entry.size,
                Result::kInvalid);
    }
    const std::uint64_t extraStart = entry.offset + header.size(), extraSize = Get16(at + local::kExtraSize);
    const std::uint64_t start = extraStart + extraSize;
    Require(start <= entry.end && entry.packedSize <= entry.end - start, Result::kInvalid);
    RequireSameName(ReadBytes(file, extraStart, static_cast<std::size_t>(extraSize)), flags, entry);
    return start;
}

}  // namespace ql::zip
