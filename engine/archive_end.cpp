#include "engine/archive_end.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "engine/format.h"
#include "engine/result.h"

namespace ql::zip {
namespace {

struct EndFields {
    std::uint64_t disk, directoryDisk, countHere, count, size, offset;
};

bool StartsAsArchive(InputFile& file) {
    return file.Size() >= kSignatureSize &&
           Get32(ReadBytes(file, 0, kSignatureSize).data()) == kLocalSignature;
}

// The last bytes of the file, as far as its end record may begin.
struct Tail {
    Bytes bytes;
    std::uint64_t start;
};

// By the record alone.
std::uint64_t DirectorySize(const Tail& tail, std::size_t at) {
    return Get32(&tail.bytes[at + end::kSize]);
}

std::size_t BytesBehind(const Tail& tail, std::size_t at) {
    return tail.bytes.size() - at - kEndSize;
}
std::size_t CommentSize(const Tail& tail, std::size_t at) {
    return Get16(&tail.bytes[at + end::kCommentSize]);
}

// Whether what an end follows is before it: a directory, or the locator of the record that knows of one.
bool FollowsDirectory(InputFile& file, const Tail& tail, std::size_t at) {
    const std::uint64_t size = DirectorySize(tail, at), place = tail.start + at;
    const std::uint64_t back = size == kIn64 ? kLocator64Size : size;
    const std::uint32_t signature = size == kIn64 ? kLocator64Signature : kRecordSignature;
    return back >= kSignatureSize && back <= place &&
           Get32(ReadBytes(file, place - back, kSignatureSize).data()) == signature;
}

bool IsOfEmptyArchive(const Tail& tail, std::size_t at) {
    return tail.start + at == 0 && DirectorySize(tail, at) == 0;
}

// Everything that looks like an end record, from the first on.
std::vector<std::size_t> EndSignatures(const Tail& tail) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i + kEndSize <= tail.bytes.size(); ++i) {
        if (Get32(&tail.bytes[i]) == kEndSignature) found.push_back(i);
    }
    return found;
}

// What else looks like an end record is in nobody's way as contents of a member, before the directory, unless
// it closes a directory itself and its comment takes the rest of the file.
void RefuseOthers(InputFile& file, const Tail& tail, const std::vector<std::size_t>& found,
                  std::size_t chosen) {
    for (const std::size_t other : found) {
        Require(other <= chosen, Result::kInvalid);
        if (other == chosen || CommentSize(tail, other) != BytesBehind(tail, other)) continue;
        const bool isBefore = other + kEndSize + DirectorySize(tail, chosen) <= chosen;
        Require(isBefore && !FollowsDirectory(file, tail, other), Result::kInvalid);
    }
}

// Bytes behind the end are nothing of the archive's: programs agree on it while there is but one end to be
// found.
std::size_t EndBeforeOtherBytes(InputFile& file, const Tail& tail, const std::vector<std::size_t>& found) {
    const std::size_t only = found.front();
    const bool fits = FollowsDirectory(file, tail, only) || IsOfEmptyArchive(tail, only);
    Require(found.size() == 1 && fits, Result::kInvalid);
    Require(CommentSize(tail, only) <= BytesBehind(tail, only), Result::kTruncated);
    return only;
}

// Programs would not agree on what an archive with two ends holds.
std::size_t FindEndRecord(InputFile& file, const Tail& tail) {
    const std::vector<std::size_t> found = EndSignatures(tail);
    if (found.empty()) throw Failure{StartsAsArchive(file) ? Result::kTruncated : Result::kInvalid};
    const auto reachesEnd = [&](std::size_t at) { return CommentSize(tail, at) == BytesBehind(tail, at); };
    const auto last = std::find_if(found.rbegin(), found.rend(), reachesEnd);
    if (last == found.rend()) return EndBeforeOtherBytes(file, tail, found);
    RefuseOthers(file, tail, found, *last);
    return *last;
}

EndFields ParseEnd(const std::uint8_t* at) {
    return {Get16(at + end::kDisk),  Get16(at + end::kDirectoryDisk), Get16(at + end::kCountHere),
            Get16(at + end::kCount), Get32(at + end::kSize),          Get32(at + end::kOffset)};
}

EndFields ParseEnd64(const std::uint8_t* at) {
    return {Get32(at + end64::kDisk),  Get32(at + end64::kDirectoryDisk), Get64(at + end64::kCountHere),
            Get64(at + end64::kCount), Get64(at + end64::kSize),          Get64(at + end64::kOffset)};
}

bool Agrees(std::uint64_t narrow, std::uint64_t wide, std::uint64_t in64) {
    return narrow == in64 || narrow == wide;
}

// The same facts twice: where the short record does not leave a field to the long one, both must say the
// same.
bool Agree(const EndFields& narrow, const EndFields& wide) {
    return Agrees(narrow.disk, wide.disk, kCountIn64) &&
           Agrees(narrow.directoryDisk, wide.directoryDisk, kCountIn64) &&
           Agrees(narrow.countHere, wide.countHere, kCountIn64) &&
           Agrees(narrow.count, wide.count, kCountIn64) && Agrees(narrow.size, wide.size, kIn64) &&
           Agrees(narrow.offset, wide.offset, kIn64);
}

bool IsEnd64(const Bytes& record, std::uint64_t restSize) {
    return Get32(record.data()) == kEnd64Signature && Get64(&record[end64::kRest]) == restSize;
}

struct End64 {
    EndFields fields;
    std::uint64_t start;
};

// The 64-bit end record, when the locator before the end record leads to one. Behind other bytes the locator
// misses it by their size; it then stands right before the locator.
std::optional<End64> FindEnd64(InputFile& file, std::uint64_t end) {
    if (end < kLocator64Size + kEnd64Size) return std::nullopt;
    const std::uint64_t place = end - kLocator64Size, adjacent = place - kEnd64Size;
    const Bytes locator = ReadBytes(file, place, kLocator64Size);
    if (Get32(locator.data()) != kLocator64Signature) return std::nullopt;
    Require(Get32(&locator[locator64::kDisk]) == 0 && Get32(&locator[locator64::kDisks]) <= 1,
            Result::kMultiVolume);
    const std::uint64_t told = Get64(&locator[locator64::kOffset]);
    Require(told <= adjacent, Result::kInvalid);
    for (const std::uint64_t start : {told, adjacent}) {
        const Bytes record = ReadBytes(file, start, kEnd64Size);
        if (!IsEnd64(record, end64::kRestSize + (adjacent - start))) continue;
        const End64 found{ParseEnd64(record.data()), start};
        // The bytes before the archive move both, or none.
        Require(start - told == start - found.fields.size - found.fields.offset, Result::kInvalid);
        return found;
    }
    throw Failure{Result::kInvalid};
}

}  // namespace

ArchiveEnd ReadArchiveEnd(InputFile& file) {
    const std::uint64_t size = file.Size();
    const std::size_t tailSize =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, kEndSize + kMaxComment));
    const Tail tail = {ReadBytes(file, size - tailSize, tailSize), size - tailSize};
    const std::size_t at = FindEndRecord(file, tail);
    const std::uint64_t place = tail.start + at;

    EndFields fields = ParseEnd(&tail.bytes[at]);
    std::uint64_t directoryEnd = place;
    if (const auto wide = FindEnd64(file, place)) {
        Require(Agree(fields, wide->fields), Result::kInvalid);
        fields = wide->fields;
        directoryEnd = wide->start;
    }
    Require(fields.disk == 0 && fields.directoryDisk == 0 && fields.countHere == fields.count,
            Result::kMultiVolume);
    const std::uint64_t start = directoryEnd - fields.size;
    Require(fields.size <= directoryEnd && fields.offset <= start, Result::kTruncated);
    const std::uint8_t* comment = &tail.bytes[at] + kEndSize;
    return {fields.count, start, fields.size, start - fields.offset,
            std::string(TextOf(comment, CommentSize(tail, at)))};
}

}  // namespace ql::zip
