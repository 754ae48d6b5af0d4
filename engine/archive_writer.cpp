#include "engine/archive_writer.h"

#include <algorithm>

#include "engine/format.h"
#include "engine/result.h"

namespace ql::zip {
namespace {

constexpr std::size_t kChunk = 256u << 10;
// A small member's header and packed bytes stay in the buffer until it is known whether packing pays.
constexpr std::size_t kSmallMember = kChunk + kChunk / 4;
constexpr std::size_t kBuffer = 1u << 20;
constexpr std::size_t kMaxNameBytes = 0xffff;

std::uint32_t Narrow(std::uint64_t value) {
    Require(value < kIn64, Result::kTooBig);
    return static_cast<std::uint32_t>(value);
}

bool IsAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::uint16_t FlagsFor(std::string_view name) {
    return IsAscii(name) ? std::uint16_t{0} : kFlagUtf8;
}

std::string_view View(const std::uint8_t* bytes, std::size_t size) {
    return {reinterpret_cast<const char*>(bytes), size};
}

// From the version needed to the length of the name, as both headers have it.
void PutCommon(std::uint8_t* at, const NewEntry& entry, std::uint16_t method, std::uint32_t crc,
               std::uint32_t packedSize, std::uint32_t size) {
    Put16(at, kVersion);
    Put16(at + 2, FlagsFor(entry.name));
    Put16(at + 4, method);
    Put32(at + 6, entry.time);
    Put32(at + 10, crc);
    Put32(at + 14, packedSize);
    Put32(at + 18, size);
    Put16(at + 22, static_cast<std::uint32_t>(entry.name.size()));
}

}  // namespace

ArchiveWriter::ArchiveWriter(OutputFile& file) : out_(file, kBuffer), chunk_(kChunk) {}

void ArchiveWriter::Copy(InputFile& from, const Archive& archive, const std::vector<bool>& kept) {
    const std::vector<Entry>& entries = archive.Entries();
    for (std::size_t i = 0; i < entries.size(); ++i)
        Require(!kept[i] || !entries[i].needs64, Result::kTooBig);
    std::vector<std::uint64_t> offsets(entries.size());
    std::uint64_t start = 0, end = archive.PrefixSize(), position = end;
    for (std::size_t i : archive.ByOffset()) {
        if (!kept[i]) continue;
        if (entries[i].offset != end) {
            CopyRange(from, start, end);
            start = entries[i].offset;
        }
        end = entries[i].end;
        offsets[i] = position;
        position += end - entries[i].offset;
    }
    CopyRange(from, start, end);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        if (kept[i]) CopyRecord(archive.Record(entries[i]), entries[i].recordSize, offsets[i]);
    }
}

void ArchiveWriter::CopyRange(InputFile& from, std::uint64_t start, std::uint64_t end) {
    while (start < end) {
        const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(end - start, kChunk));
        ReadExactly(from, start, chunk_.data(), size);
        out_.Append(chunk_.data(), size);
        start += size;
    }
}

void ArchiveWriter::CopyRecord(const std::uint8_t* record, std::size_t size, std::uint64_t offset) {
    CountMember();
    const std::size_t at = directory_.size();
    directory_ += View(record, size);
    Put32(reinterpret_cast<std::uint8_t*>(&directory_[at + 42]), Narrow(offset));
}

void ArchiveWriter::CountMember() {
    Require(count_ < kCountIn64, Result::kTooBig);
    ++count_;
}

void ArchiveWriter::Add(const NewEntry& entry, InputFile& source, const Progress& progress) {
    Require(entry.name.size() <= kMaxNameBytes, Result::kBadRequest);
    CountMember();
    out_.Reserve(kSmallMember + kLocalSize + entry.name.size());
    Written member{out_.Position(), 0, 0, 0, entry.level == 0 ? kStored : kDeflated};
    WriteLocal(entry, member);
    Pack(member, source, entry.level, progress);
    std::uint8_t common[26];
    PutCommon(common, entry, member.method, member.crc, Narrow(member.packedSize), Narrow(member.size));
    out_.Correct(member.offset + 4, common, 22);
    AddRecord(entry, member);
}

void ArchiveWriter::WriteLocal(const NewEntry& entry, const Written& member) {
    std::uint8_t header[kLocalSize] = {};
    Put32(header, kLocalSignature);
    PutCommon(header + 4, entry, member.method, 0, 0, 0);
    out_.Append(header, kLocalSize);
    out_.Append(entry.name);
}

void ArchiveWriter::Pack(Written& member, InputFile& source, int level, const Progress& progress) {
    const std::uint64_t start = out_.Position();
    const bool packs = member.method == kDeflated;
    if (packs && (!deflater_ || deflater_->Level() != level)) deflater_.emplace(level);
    if (packs) deflater_->Reset();
    uLong crc = crc32(0, nullptr, 0);
    for (bool last = false; !last;) {
        const std::size_t size = source.ReadAt(member.size, chunk_.data(), kChunk);
        last = size < kChunk;
        crc = crc32(crc, chunk_.data(), static_cast<uInt>(size));
        member.size = Narrow(member.size + size);
        if (packs) {
            deflater_->Put(chunk_.data(), size, last, out_);
        } else {
            out_.Append(chunk_.data(), size);
        }
        progress(member.size);
    }
    member.crc = static_cast<std::uint32_t>(crc);
    member.packedSize = out_.Position() - start;
    if (packs && member.size < kChunk && member.packedSize >= member.size) StoreInstead(member, start);
}

void ArchiveWriter::StoreInstead(Written& member, std::uint64_t dataStart) {
    out_.Rewind(dataStart);
    out_.Append(chunk_.data(), static_cast<std::size_t>(member.size));
    member.packedSize = member.size;
    member.method = kStored;
}

void ArchiveWriter::AddRecord(const NewEntry& entry, const Written& member) {
    std::uint8_t record[kRecordSize] = {};
    Put32(record, kRecordSignature);
    Put16(record + 4, kMadeByNtfs);
    PutCommon(record + 6, entry, member.method, member.crc, Narrow(member.packedSize), Narrow(member.size));
    Put32(record + 38, entry.attributes);
    Put32(record + 42, Narrow(member.offset));
    directory_ += View(record, kRecordSize);
    directory_ += entry.name;
}

void ArchiveWriter::Finish(std::string_view comment) {
    std::uint8_t end[kEndSize] = {};
    Put32(end, kEndSignature);
    Require(comment.size() <= kMaxComment && comment.find(View(end, 4)) == std::string_view::npos,
            Result::kBadComment);
    const auto count = static_cast<std::uint32_t>(count_);
    Put16(end + 8, count);
    Put16(end + 10, count);
    Put32(end + 12, Narrow(directory_.size()));
    Put32(end + 16, Narrow(out_.Position()));
    Put16(end + 20, static_cast<std::uint32_t>(comment.size()));
    out_.Append(directory_);
    out_.Append(end, kEndSize);
    out_.Append(comment);
    out_.Flush();
}

}  // namespace ql::zip
