#include "engine/archive.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>

#include <zlib.h>

#include "engine/archive_end.h"
#include "engine/format.h"
#include "engine/name_encoding.h"
#include "engine/result.h"

namespace ql::zip {
namespace {

constexpr std::uint64_t kMaxDirectory = 64u << 20;

// Deflate cannot give more than this many bytes for one.
constexpr std::uint64_t kMaxRatio = 1032;

struct Field {
    const std::uint8_t* data;
    std::size_t size;
};

// The extra field of that kind. Fields that do not fit their frame are the end of them, as everywhere.
std::optional<Field> FindExtra(Field extra, std::uint16_t kind) {
    while (extra.size >= 4) {
        const std::size_t size = Get16(extra.data + 2);
        if (size > extra.size - 4) break;
        if (Get16(extra.data) == kind) return Field{extra.data + 4, size};
        extra = {extra.data + 4 + size, extra.size - 4 - size};
    }
    return std::nullopt;
}

// Replaces the values that are kept as 64 bits, in the order in which they stand there.
void Read64(Entry& entry, Field extra) {
    Field rest = FindExtra(extra, kExtra64).value_or(Field{nullptr, 0});
    for (std::uint64_t* value : {&entry.size, &entry.packedSize, &entry.offset}) {
        if (*value != kIn64) continue;
        entry.needs64 = true;
        Require(rest.size >= 8, Result::kInvalid);
        *value = Get64(rest.data);
        rest = {rest.data + 8, rest.size - 8};
    }
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
std::string DecodeName(std::string_view name, const std::uint8_t* record, Field extra) {
    const bool saysUtf8 = Get16(record + 8) & kFlagUtf8 || record[5] == kHostUnix;
    if (saysUtf8 && IsUtf8(name)) return std::string(name);
    if (auto path = UnicodePath(name, extra)) return *std::move(path);
    return Utf8FromCp437(name);
}

Entry ParseRecord(const std::uint8_t* at, std::size_t available) {
    Require(available >= kRecordSize && Get32(at) == kRecordSignature, Result::kInvalid);
    const std::size_t nameSize = Get16(at + 28), extraSize = Get16(at + 30);
    Entry entry;
    entry.recordSize = kRecordSize + nameSize + extraSize + Get16(at + 32);
    Require(entry.recordSize <= available, Result::kInvalid);
    Require(Get16(at + 34) == 0, Result::kMultiVolume);
    entry.flags = Get16(at + 8);
    entry.method = Get16(at + 10);
    entry.time = Get32(at + 12);
    entry.crc = Get32(at + 16);
    entry.packedSize = Get32(at + 20);
    entry.size = Get32(at + 24);
    entry.attributes = Get32(at + 38);
    entry.offset = Get32(at + 42);
    const Field extra{at + kRecordSize + nameSize, extraSize};
    Read64(entry, extra);
    entry.name = DecodeName({reinterpret_cast<const char*>(at + kRecordSize), nameSize}, at, extra);
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

Archive::Archive(InputFile& file) {
    ArchiveEnd end = ReadArchiveEnd(file);
    Require(end.directorySize <= kMaxDirectory, Result::kNoMemory);
    directory_ = ReadBytes(file, end.directoryStart, static_cast<std::size_t>(end.directorySize));
    comment_ = std::move(end.comment);
    ParseDirectory(end.count, end.base);
    OrderByOffset(end.directoryStart);
}

void Archive::ParseDirectory(std::uint64_t count, std::uint64_t base) {
    Require(count <= directory_.size() / kRecordSize, Result::kInvalid);
    entries_.reserve(static_cast<std::size_t>(count));
    std::size_t at = 0;
    while (entries_.size() < count) {
        Entry entry = ParseRecord(directory_.data() + at, directory_.size() - at);
        entry.record = at;
        entry.offset += base;
        at += entry.recordSize;
        entries_.push_back(std::move(entry));
    }
    Require(at == directory_.size(), Result::kInvalid);
}

void Archive::OrderByOffset(std::uint64_t directoryStart) {
    byOffset_.resize(entries_.size());
    std::iota(byOffset_.begin(), byOffset_.end(), std::size_t{0});
    std::sort(byOffset_.begin(), byOffset_.end(),
              [this](std::size_t a, std::size_t b) { return entries_[a].offset < entries_[b].offset; });
    std::uint64_t end = directoryStart;
    for (auto i = byOffset_.rbegin(); i != byOffset_.rend(); ++i) {
        Entry& entry = entries_[*i];
        const std::uint64_t header = kLocalSize + Get16(Record(entry) + 28);
        Require(entry.offset <= end && header <= end - entry.offset, Result::kInvalid);
        Require(entry.packedSize <= end - entry.offset - header && SizesAreSensible(entry), Result::kInvalid);
        entry.end = end;
        end = entry.offset;
    }
    prefixSize_ = end;
}

std::uint64_t Archive::DataStart(InputFile& file, const Entry& entry) const {
    const std::uint8_t* record = Record(entry);
    const std::size_t nameSize = Get16(record + 28);
    const Bytes header = ReadBytes(file, entry.offset, kLocalSize + nameSize);
    const std::uint8_t* local = header.data();
    Require(Get32(local) == kLocalSignature && Get16(local + 26) == nameSize &&
                std::equal(local + kLocalSize, local + kLocalSize + nameSize, record + kRecordSize),
            Result::kInvalid);
    Require(Get16(local + 8) == entry.method && !((Get16(local + 6) ^ entry.flags) & kFlagEncrypted),
            Result::kInvalid);
    // Numbers that come only after the data, or that are kept as 64 bits, are the directory's alone.
    if (!(Get16(local + 6) & kFlagDescriptor) && Get32(local + 18) != kIn64 && Get32(local + 22) != kIn64) {
        Require(Get32(local + 14) == entry.crc && Get32(local + 18) == entry.packedSize &&
                    Get32(local + 22) == entry.size,
                Result::kInvalid);
    }
    const std::uint64_t start = entry.offset + kLocalSize + nameSize + Get16(local + 28);
    Require(start <= entry.end && entry.packedSize <= entry.end - start, Result::kInvalid);
    return start;
}

}  // namespace ql::zip
