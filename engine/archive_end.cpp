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

bool IsEndRecord(const Bytes& tail, std::size_t at) {
    return Get32(&tail[at]) == kEndSignature && Get16(&tail[at + 20]) == tail.size() - at - kEndSize;
}

bool StartsAsArchive(InputFile& file) {
    std::uint8_t start[4];
    return file.ReadAt(0, start, 4) == 4 && Get32(start) == kLocalSignature;
}

// The last bytes of the file, as far as its end record may begin.
struct Tail {
    Bytes bytes;
    std::uint64_t start;
};

// By the record alone.
std::uint64_t DirectorySize(const Tail& tail, std::size_t end) {
    return Get32(&tail.bytes[end + 12]);
}

// Whether what an end follows is before it: a directory, or the locator of the record that knows of one.
bool FollowsDirectory(InputFile& file, const Tail& tail, std::size_t end) {
    const std::uint64_t size = DirectorySize(tail, end), place = tail.start + end;
    const std::uint64_t back = size == kIn64 ? kLocator64Size : size;
    const std::uint32_t signature = size == kIn64 ? kLocator64Signature : kRecordSignature;
    return back >= 4 && back <= place && Get32(ReadBytes(file, place - back, 4).data()) == signature;
}

// Records whose comments reach the end of the file as well: programs would not agree on what the archive holds, unless
// all but the last are contents of members that look like one.
std::size_t FindEndRecord(InputFile& file, const Tail& tail) {
    std::vector<std::size_t> found;
    for (std::size_t i = 0; i + kEndSize <= tail.bytes.size(); ++i) {
        if (IsEndRecord(tail.bytes, i)) found.push_back(i);
    }
    if (found.empty()) throw Failure{StartsAsArchive(file) ? Result::kTruncated : Result::kInvalid};
    const std::size_t last = found.back();
    found.pop_back();
    for (const std::size_t other : found) {
        const bool isBefore = other + kEndSize + DirectorySize(tail, last) <= last;
        Require(isBefore && !FollowsDirectory(file, tail, other), Result::kInvalid);
    }
    return last;
}

EndFields ParseEnd(const std::uint8_t* at) {
    return {Get16(at + 4), Get16(at + 6), Get16(at + 8), Get16(at + 10), Get32(at + 12), Get32(at + 16)};
}

EndFields ParseEnd64(const std::uint8_t* at) {
    return {Get32(at + 16), Get32(at + 20), Get64(at + 24), Get64(at + 32), Get64(at + 40), Get64(at + 48)};
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

// Where the 64-bit end record starts, when the locator before the end record leads to one.
std::optional<std::uint64_t> FindEnd64(InputFile& file, std::uint64_t end) {
    if (end < kLocator64Size + kEnd64Size) return std::nullopt;
    const Bytes locator = ReadBytes(file, end - kLocator64Size, kLocator64Size);
    if (Get32(locator.data()) != kLocator64Signature) return std::nullopt;
    Require(Get32(&locator[4]) == 0 && Get32(&locator[16]) <= 1, Result::kMultiVolume);
    const std::uint64_t start = Get64(&locator[8]);
    Require(start <= end - kLocator64Size - kEnd64Size, Result::kInvalid);
    return start;
}

EndFields ReadEnd64(InputFile& file, std::uint64_t start, std::uint64_t locator) {
    const Bytes record = ReadBytes(file, start, kEnd64Size);
    Require(Get32(record.data()) == kEnd64Signature && Get64(&record[4]) == locator - start - 12,
            Result::kInvalid);
    return ParseEnd64(record.data());
}

}  // namespace

ArchiveEnd ReadArchiveEnd(InputFile& file) {
    const std::uint64_t size = file.Size();
    const std::size_t tailSize =
        static_cast<std::size_t>(std::min<std::uint64_t>(size, kEndSize + kMaxComment));
    const Tail tail = {ReadBytes(file, size - tailSize, tailSize), size - tailSize};
    const std::size_t at = FindEndRecord(file, tail);
    const std::uint64_t end = tail.start + at;

    EndFields fields = ParseEnd(&tail.bytes[at]);
    std::uint64_t directoryEnd = end;
    if (const auto end64 = FindEnd64(file, end)) {
        const EndFields wide = ReadEnd64(file, *end64, end - kLocator64Size);
        Require(Agree(fields, wide), Result::kInvalid);
        fields = wide;
        directoryEnd = *end64;
    }
    Require(fields.disk == 0 && fields.directoryDisk == 0 && fields.countHere == fields.count,
            Result::kMultiVolume);
    Require(fields.size <= directoryEnd && fields.offset <= directoryEnd - fields.size, Result::kTruncated);
    const std::uint64_t start = directoryEnd - fields.size;
    return {fields.count, start, fields.size, start - fields.offset,
            std::string(tail.bytes.begin() + static_cast<std::ptrdiff_t>(at + kEndSize), tail.bytes.end())};
}

}  // namespace ql::zip
