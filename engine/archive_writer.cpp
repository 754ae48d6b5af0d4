#include "engine/archive_writer.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "engine/format.h"
#include "engine/name_encoding.h"
#include "engine/result.h"

namespace ql::zip {
namespace {

constexpr std::size_t kChunk = 256u << 10;
constexpr std::size_t kBuffer = 1u << 20;

// Sources of this size get room for sizes of 64 bits: packing can make them a little larger, and they may
// grow.
constexpr std::uint64_t kMayBeWide = 0xf0000000;
constexpr std::size_t kLocalExtra64Size = kExtraHeaderSize + 16;

std::uint32_t OrIn64(std::uint64_t value) {
    return value < kIn64 ? static_cast<std::uint32_t>(value) : kIn64;
}

std::uint16_t FlagsFor(std::string_view name) {
    return IsAscii(name) ? std::uint16_t{0} : kFlagUtf8;
}

// The values that do not fit the record, in their order there.
std::string Extra64(std::uint64_t size, std::uint64_t packedSize, std::uint64_t offset) {
    std::uint8_t field[kExtraHeaderSize + 24];
    std::size_t used = kExtraHeaderSize;
    for (const std::uint64_t value : {size, packedSize, offset}) {
        if (value < kIn64) continue;
        Put64(field + used, value);
        used += 8;
    }
    if (used == kExtraHeaderSize) return {};
    Put16(field, kExtra64);
    Put16(field + 2, static_cast<std::uint32_t>(used - kExtraHeaderSize));
    return std::string(TextOf(field, used));
}

std::uint8_t* BytesOf(std::string& text) {
    return reinterpret_cast<std::uint8_t*>(text.data());
}

// From the version needed to the length of the name, as both headers have it.
void PutCommon(std::uint8_t* at, const NewEntry& entry, std::uint16_t version, std::uint16_t method) {
    Put16(at + common::kVersion, version);
    Put16(at + common::kFlags, FlagsFor(entry.name));
    Put16(at + common::kMethod, method);
    Put32(at + common::kTime, entry.time);
    Put16(at + common::kNameSize, static_cast<std::uint32_t>(entry.name.size()));
}

}  // namespace

ArchiveWriter::ArchiveWriter(OutputFile& file) : out_(file, kBuffer) {}

// --- Members of another archive

void ArchiveWriter::Copy(InputFile& from, const Archive& archive, const std::vector<bool>& kept) {
    const std::vector<Entry>& entries = archive.Entries();
    std::vector<std::uint64_t> offsets(entries.size());
    std::uint64_t start = 0, end = archive.PrefixSize(), position = end;
    for (const std::size_t i : archive.ByOffset()) {
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
        if (kept[i]) CopyRecord(archive, entries[i], offsets[i]);
    }
}

void ArchiveWriter::CopyRange(InputFile& from, std::uint64_t start, std::uint64_t end) {
    chunk_.resize(kChunk);
    while (start < end) {
        const std::size_t size = static_cast<std::size_t>(std::min<std::uint64_t>(end - start, kChunk));
        ReadExactly(from, start, chunk_.data(), size);
        out_.Append(chunk_.data(), size);
        start += size;
    }
}

void ArchiveWriter::CopyRecord(const Archive& archive, const Entry& entry, std::uint64_t offset) {
    ++count_;
    const Field old{archive.Record(entry), entry.recordSize};
    if (entry.needs64 || offset >= kIn64) return CopyRecordWith64(old, entry, offset);
    const std::size_t at = directory_.size();
    directory_ += TextOf(old.data, old.size);
    Put32(BytesOf(directory_) + at + record::kOffset, static_cast<std::uint32_t>(offset));
}

// The record with its values of 64 bits made anew, before its other fields.
void ArchiveWriter::CopyRecordWith64(Field old, const Entry& entry, std::uint64_t offset) {
    const std::size_t nameEnd = kRecordSize + Get16(old.data + record::kNameSize);
    Field extra{old.data + nameEnd, Get16(old.data + record::kExtraSize)};
    const std::size_t commentStart = nameEnd + extra.size;
    std::string fields = Extra64(entry.size, entry.packedSize, offset);
    while (const auto field = TakeExtra(extra)) {
        if (field->kind != kExtra64) fields += TextOf(field->whole.data, field->whole.size);
    }
    Require(fields.size() <= kMaxExtra, Result::kTooBig);
    const std::size_t at = directory_.size();
    directory_ += TextOf(old.data, nameEnd);
    std::uint8_t* const made = BytesOf(directory_) + at;
    Put32(made + record::kPackedSize, OrIn64(entry.packedSize));
    Put32(made + record::kSize, OrIn64(entry.size));
    Put32(made + record::kOffset, OrIn64(offset));
    Put16(made + record::kDisk, 0);
    Put16(made + record::kExtraSize, static_cast<std::uint32_t>(fields.size()));
    directory_ += fields;
    directory_ += TextOf(old.data + commentStart, old.size - commentStart);
}

// --- New members

void ArchiveWriter::Add(const NewEntry& entry, InputFile& source, const Progress& progress) {
    Require(entry.name.size() <= kMaxName, Result::kBadRequest);
    try {
        ReadBlocks(entry, source, progress);
    } catch (...) {
        Abandon();
        throw;
    }
}

void ArchiveWriter::ReadBlocks(const NewEntry& entry, InputFile& source, const Progress& progress) {
    members_.push_back({entry, source.Size() >= kMayBeWide});
    std::uint64_t done = 0;
    window_.clear();
    for (bool isLast = false; !isLast;) {
        if (packer_.IsFull()) WriteNextBlock();
        std::unique_ptr<Block> block = packer_.Take();
        block->isFirst = done == 0;
        block->level = entry.level;
        block->windowSize = window_.size();
        std::copy(window_.begin(), window_.end(), block->Data() - window_.size());
        block->size = source.ReadAt(done, block->Data(), Block::kSize);
        isLast = block->isLast = block->size < Block::kSize;
        if (!isLast)
            window_.assign(block->Data() + Block::kSize - Deflater::kWindow, block->Data() + Block::kSize);
        done += block->size;
        packer_.Push(std::move(block));
        progress(done);
    }
}

void ArchiveWriter::WriteBlocks() {
    while (!packer_.IsEmpty()) WriteNextBlock();
}

void ArchiveWriter::WriteNextBlock() {
    std::unique_ptr<Block> block = packer_.Next();
    if (block->isOutOfMemory) throw std::bad_alloc();
    Member& member = members_.front();
    if (block->isFirst) Begin(member, *block);
    const bool packs = member.method == kDeflated;
    out_.Append(packs ? block->packed.data() : block->Data(), packs ? block->packedSize : block->size);
    member.crc =
        static_cast<std::uint32_t>(crc32_combine(member.crc, block->crc, static_cast<z_off_t>(block->size)));
    member.size += block->size;
    member.packedSize += packs ? block->packedSize : block->size;
    Require(member.isWide || (member.size < kIn64 && member.packedSize < kIn64), Result::kTooBig);
    if (block->isLast) {
        End(member);
        members_.pop_front();
    }
    packer_.GiveBack(std::move(block));
}

void ArchiveWriter::Begin(Member& member, const Block& block) {
    const bool pays = block.level > 0 && (!block.isLast || block.packedSize < block.size);
    member.method = pays ? kDeflated : kStored;
    member.offset = out_.Position();
    member.isBegun = true;
    WriteLocal(member);
}

void ArchiveWriter::End(const Member& member) {
    std::uint8_t numbers[12];
    Put32(numbers, member.crc);
    Put32(numbers + 4, member.isWide ? kIn64 : static_cast<std::uint32_t>(member.packedSize));
    Put32(numbers + 8, member.isWide ? kIn64 : static_cast<std::uint32_t>(member.size));
    out_.Correct(member.offset + local::kCrc, numbers, sizeof numbers);
    if (member.isWide) {
        std::uint8_t wide[16];
        Put64(wide, member.size);
        Put64(wide + 8, member.packedSize);
        out_.Correct(member.offset + kLocalSize + member.entry.name.size() + kExtraHeaderSize, wide,
                     sizeof wide);
    }
    AddRecord(member);
}

// The members before the last one go on; of the last one nothing stays.
void ArchiveWriter::Abandon() {
    while (members_.size() > 1 && !packer_.IsEmpty()) WriteNextBlock();
    packer_.Clear();
    if (!members_.empty() && members_.front().isBegun) out_.Rewind(members_.front().offset);
    members_.clear();
}

void ArchiveWriter::WriteLocal(const Member& member) {
    std::uint8_t header[kLocalSize] = {};
    Put32(header, kLocalSignature);
    PutCommon(header + local::kCommon, member.entry, member.isWide ? kVersion64 : kVersion, member.method);
    Put16(header + local::kExtraSize, member.isWide ? kLocalExtra64Size : 0);
    out_.Append(header, kLocalSize);
    out_.Append(member.entry.name);
    if (!member.isWide) return;
    std::uint8_t extra[kLocalExtra64Size] = {};
    Put16(extra, kExtra64);
    Put16(extra + 2, kLocalExtra64Size - kExtraHeaderSize);
    out_.Append(extra, sizeof extra);
}

void ArchiveWriter::AddRecord(const Member& member) {
    ++count_;
    const std::string extra = Extra64(member.size, member.packedSize, member.offset);
    std::uint8_t header[kRecordSize] = {};
    Put32(header, kRecordSignature);
    Put16(header + record::kMadeBy, kMadeByNtfs);
    PutCommon(header + record::kCommon, member.entry, extra.empty() ? kVersion : kVersion64, member.method);
    Put32(header + record::kCrc, member.crc);
    Put32(header + record::kPackedSize, OrIn64(member.packedSize));
    Put32(header + record::kSize, OrIn64(member.size));
    Put16(header + record::kExtraSize, static_cast<std::uint32_t>(extra.size()));
    Put32(header + record::kAttributes, member.entry.attributes);
    Put32(header + record::kOffset, OrIn64(member.offset));
    directory_ += TextOf(header, kRecordSize);
    directory_ += member.entry.name;
    directory_ += extra;
}

// --- The end

void ArchiveWriter::FinishWith64(std::uint64_t directoryStart) {
    std::uint8_t wide[kEnd64Size] = {};
    Put32(wide, kEnd64Signature);
    Put64(wide + end64::kRest, end64::kRestSize);
    Put16(wide + end64::kMadeBy, kMadeByNtfs);
    Put16(wide + end64::kNeeded, kVersion64);
    Put64(wide + end64::kCountHere, count_);
    Put64(wide + end64::kCount, count_);
    Put64(wide + end64::kSize, directory_.size());
    Put64(wide + end64::kOffset, directoryStart);
    std::uint8_t locator[kLocator64Size] = {};
    Put32(locator, kLocator64Signature);
    Put64(locator + locator64::kOffset, out_.Position());
    Put32(locator + locator64::kDisks, 1);
    out_.Append(wide, sizeof wide);
    out_.Append(locator, sizeof locator);
}

std::uint64_t ArchiveWriter::Finish(std::string_view comment) {
    WriteBlocks();
    std::uint8_t last[kEndSize] = {};
    Put32(last, kEndSignature);
    Require(
        comment.size() <= kMaxComment && comment.find(TextOf(last, kSignatureSize)) == std::string_view::npos,
        Result::kBadComment);
    Require(directory_.size() <= kMaxDirectory, Result::kTooBig);
    const std::uint64_t start = out_.Position();
    const auto count = static_cast<std::uint32_t>(std::min<std::uint64_t>(count_, kCountIn64));
    out_.Append(directory_);
    if (count == kCountIn64 || start >= kIn64) FinishWith64(start);
    Put16(last + end::kCountHere, count);
    Put16(last + end::kCount, count);
    Put32(last + end::kSize, static_cast<std::uint32_t>(directory_.size()));
    Put32(last + end::kOffset, OrIn64(start));
    Put16(last + end::kCommentSize, static_cast<std::uint32_t>(comment.size()));
    out_.Append(last, kEndSize);
    out_.Append(comment);
    out_.Flush();
    return out_.Position();
}

}  // namespace ql::zip
