#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "engine/format.h"
#include "engine/result.h"
#include "tests/zip/members.h"

namespace {

using namespace ql::zip;

Bytes Written(const std::vector<Member>& members, const std::string& comment) {
    MemoryOutput output;
    Write(output, members, comment);
    return output.bytes;
}

const std::vector<Member> kMembers = {{"a.txt", "hello"}, {"b.txt", std::string(3000, 'x'), 32, 6}};

Bytes Sample() {
    return Written(kMembers, "told");
}

Result Open(const Bytes& bytes) {
    return ResultOf([&] { const MemoryArchive opened(bytes); });
}

std::string ReadMember(const Bytes& bytes, std::size_t index) {
    return MemoryArchive(bytes).Content(index);
}

Result Read(const Bytes& bytes, std::size_t index) {
    return ResultOf([&] { ReadMember(bytes, index); });
}

// A byte of the sample that a case adds to: in the second member's local header, in both records, in the end
// record.
enum Place { kLocal, kFirst, kSecond, kEnd };
struct Change {
    Place place;
    std::size_t offset;
    int delta;
};

std::size_t PlaceOf(const Bytes& sample, Place place) {
    const std::size_t end = sample.size() - kEndSize - 4, first = Get32(&sample[end + 16]);
    const std::size_t second = first + kRecordSize + 5;
    return std::array{std::size_t{Get32(&sample[second + 42])}, first, second, end}[place];
}

Bytes SampleWith(const std::vector<Change>& changes) {
    const Bytes sample = Sample();
    Bytes bytes = sample;
    for (const Change& change : changes) {
        std::uint8_t& byte = bytes[PlaceOf(sample, change.place) + change.offset];
        byte = static_cast<std::uint8_t>(byte + change.delta);
    }
    return bytes;
}

Bytes Part(const Bytes& bytes, std::size_t from) {
    return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end());
}

void Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

TEST(Archive, StoresWhatPackingDoesNotMakeSmaller) {
    MemoryArchive read(Written({{"a", "abcdefgh", 32, 9}, {"b", "", 32, 9}}, ""));
    EXPECT_EQ(read.Content(0), "abcdefgh");
    for (const Entry& entry : read.archive.Entries()) EXPECT_EQ(entry.method, kStored);
}

// Chunks and the buffer end inside members.
TEST(Archive, TakesMembersOfEverySize) {
    std::string noise;
    for (std::uint32_t i = 0, x = 1; i < 3'000'000; ++i)
        noise += static_cast<char>((x = x * 1664525 + 1013904223) >> 24);
    std::vector<Member> members;
    for (std::size_t size : {262143u, 262144u, 262145u, 524288u, 1048575u, 3000000u}) {
        members.push_back({"stored " + std::to_string(size), noise.substr(0, size)});
        members.push_back({"packed " + std::to_string(size), noise.substr(0, size), 32, 1});
    }
    const Bytes bytes = Written(members, "");
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_TRUE(ReadMember(bytes, i) == members[i].content) << members[i].name;
    }
}

TEST(Archive, RefusesEveryPieceOfAnArchive) {
    const Bytes bytes = Sample();
    for (std::size_t size = 0; size < bytes.size(); ++size) {
        const Result result = Open(Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_EQ(result, size < 4 ? Result::kInvalid : Result::kTruncated) << size;
    }
}

struct Lie {
    const char* what;
    std::vector<Change> changes;
    Result result = Result::kInvalid;
};

TEST(Archive, ArchivesThatLieDoNotOpen) {
    const Lie cases[] = {
        {"one member more", {{kEnd, 8, 1}, {kEnd, 10, 1}}},
        {"one member less", {{kEnd, 8, -1}, {kEnd, 10, -1}}},
        {"65,535 members", {{kEnd, 8, -3}, {kEnd, 9, -1}, {kEnd, 10, -3}, {kEnd, 11, -1}}},
        {"counts that differ", {{kEnd, 8, -1}}, Result::kMultiVolume},
        {"second disk", {{kEnd, 4, 1}}, Result::kMultiVolume},
        {"member of another disk", {{kSecond, 34, 1}}, Result::kMultiVolume},
        {"directory too far", {{kEnd, 18, 1}}, Result::kTruncated},
        {"directory too long", {{kEnd, 14, 1}}, Result::kTruncated},
        {"directory too short", {{kEnd, 12, -1}, {kEnd, 16, 1}}},
        {"no record", {{kSecond, 0, 1}}},
        {"record beyond the directory", {{kSecond, 33, 1}}},
        {"overlap", {{kSecond, 42, -1}}},
        {"member beyond the directory", {{kSecond, 45, 1}}},
        {"header into the directory", {{kSecond, 42, 40}}},
        {"packed size into the directory", {{kSecond, 20, 1}}},
        {"stored sizes that differ", {{kFirst, 24, 1}}},
        {"ratio beyond sense", {{kSecond, 26, 1}}},
    };
    for (const auto& c : cases) EXPECT_EQ(Open(SampleWith(c.changes)), c.result) << c.what;
}

TEST(Archive, MembersThatLieAreNotRead) {
    const Lie cases[] = {
        {"no local header", {{kLocal, 0, 1}}},
        {"other local name", {{kLocal, kLocalSize, 1}}},
        {"other local size", {{kLocal, 22, 1}}},
        {"other local method", {{kLocal, 8, 1}}},
        {"local name too long", {{kLocal, 26, 1}}},
        {"local extra field too long", {{kLocal, 29, 1}}},
        {"size too small", {{kSecond, 24, -1}, {kLocal, 22, -1}}},
        {"size too great", {{kSecond, 24, 1}, {kLocal, 22, 1}}},
        {"packed size too small", {{kSecond, 20, -1}, {kLocal, 18, -1}}},
        {"wrong check sum", {{kSecond, 16, 1}, {kLocal, 14, 1}}, Result::kBadCrc},
        {"no deflate stream", {{kLocal, kLocalSize + 5, 0x07}}},
        {"encrypted", {{kSecond, 8, 1}, {kLocal, 6, 1}}, Result::kEncrypted},
        {"encrypted in one place", {{kLocal, 6, 1}}},
        {"unknown method", {{kSecond, 10, 4}, {kLocal, 8, 4}}, Result::kUnknownMethod},
    };
    for (const auto& c : cases) {
        const Bytes bytes = SampleWith(c.changes);
        EXPECT_EQ(Read(bytes, 1), c.result) << c.what;
        EXPECT_EQ(Read(bytes, 0), Result::kOk) << c.what;
    }
}

TEST(Archive, TwoEndsAreOneTooMany) {
    Bytes twice = Sample();
    Append(twice, Part(twice, PlaceOf(twice, kFirst)));
    EXPECT_EQ(Read(twice, 1), Result::kInvalid);

    const Bytes sample = Sample(), end = Part(sample, PlaceOf(sample, kEnd));
    Bytes inComment = SampleWith({{kEnd, 20, static_cast<int>(end.size())}});
    Append(inComment, end);
    EXPECT_EQ(Open(inComment), Result::kInvalid);
}

// The record of an end whose comment is all that follows, in the contents of the first of two members.
TEST(Archive, AnEndInContentsIsNoneUnlessItFollowsADirectory) {
    std::string content = std::string("PK\1\2") + "PK\5\6" + std::string(18, '\1');
    const auto written = [&] { return Written({{"a", content}, {"b", "z"}}, ""); };
    const Bytes bytes = written();
    const auto start = std::search(bytes.begin(), bytes.end(), content.begin(), content.end());
    const std::ptrdiff_t comment = bytes.end() - start - 26;
    content[24] = static_cast<char>(comment & 0xFF);
    content[25] = static_cast<char>(comment >> 8);
    for (const char* size : {"\1\1\1\1", "\0\0\0\0", "\3\0\0\0", "\xFF\xFF\xFF\xFF"}) {
        content.replace(16, 4, size, 4);
        EXPECT_EQ(ReadMember(written(), 0), content);
    }
    content.replace(16, 4, "\4\0\0\0", 4);
    EXPECT_EQ(Open(written()), Result::kInvalid);
}

TEST(Archive, StandsBehindAnotherFile) {
    Bytes bytes = Sample();
    bytes.insert(bytes.begin(), 1000, 'P');
    EXPECT_EQ(ReadMember(bytes, 1), kMembers[1].content);
    MemoryArchive read(bytes);
    MemoryOutput output;
    ArchiveWriter writer(output);
    writer.Copy(read.file, read.archive, {false, true});
    writer.Finish("");
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.begin() + 1000, output.bytes.begin()));
    EXPECT_EQ(ReadMember(output.bytes, 0), kMembers[1].content);
}

TEST(Archive, CommentsOfEveryLength) {
    for (std::size_t size : {0u, 1u, 21u, 22u, 23u, 65534u, 65535u}) {
        const Bytes bytes = Written(kMembers, std::string(size, 'c'));
        EXPECT_EQ(MemoryArchive(bytes).archive.Comment(), std::string(size, 'c'));
    }
    EXPECT_EQ(ResultOf([] { Written({}, std::string(65536, 'c')); }), Result::kBadComment);
    EXPECT_EQ(ResultOf([] { Written({}, "PK\5\6"); }), Result::kBadComment);
}

void Append(Bytes& bytes, std::uint64_t value, int size) {
    for (int shift = 0; shift < 8 * size; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

// The end of an archive whose 64-bit records tell this; `moved` is how far the locator misses them.
void Append64BitEnd(Bytes& bytes, std::uint64_t count, std::uint64_t directory, std::uint64_t size,
                    std::int64_t moved) {
    Append(bytes, kEnd64Signature, 4);
    Append(bytes, kEnd64Size - 12, 8);
    Append(bytes, 45 | 45 << 16, 4);
    Append(bytes, 0, 8);
    for (std::uint64_t value : {count, count, size, directory}) Append(bytes, value, 8);
    Append(bytes, kLocator64Signature, 8);
    Append(bytes, directory + size + static_cast<std::uint64_t>(moved), 8);
    Append(bytes, 1, 4);
}

// The sample with both ends. The short one leaves its numbers to the long one when it is saturated.
Bytes With64BitEnd(std::uint64_t count, std::int64_t moved, bool saturated) {
    Bytes bytes = Sample();
    const std::size_t directory = PlaceOf(bytes, kFirst), endPlace = PlaceOf(bytes, kEnd);
    Bytes end = Part(bytes, endPlace);
    bytes.resize(endPlace);
    Append64BitEnd(bytes, count, directory, endPlace - directory, moved);
    if (saturated) std::fill_n(end.begin() + 8, 12, std::uint8_t{0xff});
    Append(bytes, end);
    return bytes;
}

TEST(Archive, Reads64BitDirectories) {
    for (const bool saturated : {true, false})
        EXPECT_EQ(ReadMember(With64BitEnd(2, 0, saturated), 1), kMembers[1].content);
    EXPECT_EQ(Open(With64BitEnd(3, 0, false)), Result::kInvalid);  // the two ends do not agree
    EXPECT_EQ(Open(With64BitEnd(~0ull, 0, true)), Result::kInvalid);
    for (const int moved : {-1, 1, -1'000'000})
        EXPECT_EQ(Open(With64BitEnd(2, moved, true)), Result::kInvalid) << moved;
}

// An archive of one stored member of five billion zeros, most of it nowhere in memory.
class LargeInput final : public InputFile {
  public:
    static constexpr std::uint64_t kMemberSize = 5'000'000'000;
    LargeInput() {
        Bytes record(kRecordSize);
        Put32(record.data(), kRecordSignature);
        Put32(&record[20], kIn64);
        Put32(&record[24], kIn64);
        record[28] = 1;
        record[30] = 20;
        record.push_back('z');
        Append(record, kExtra64 | 16 << 16, 4);
        for (int i = 0; i < 2; ++i) Append(record, kMemberSize, 8);
        tail_ = record;
        Append64BitEnd(tail_, 1, kDirectory, record.size(), 0);
        Append(tail_, Written({}, ""));
        std::fill_n(tail_.end() - 14, 12, std::uint8_t{0xff});
        Put32(head_.data(), kLocalSignature);
        Put32(&head_[18], kIn64);
        Put32(&head_[22], kIn64);
        head_[26] = 1;
        head_[kLocalSize] = 'z';
    }
    std::uint64_t Size() const override { return kDirectory + tail_.size(); }
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override {
        std::size_t count = 0;
        for (; count < size && offset < Size(); ++count, ++offset) into[count] = ByteAt(offset);
        return count;
    }

  private:
    static constexpr std::uint64_t kDirectory = kLocalSize + 1 + kMemberSize;
    std::uint8_t ByteAt(std::uint64_t offset) const {
        if (offset >= kDirectory) return tail_[static_cast<std::size_t>(offset - kDirectory)];
        return offset < head_.size() ? head_[static_cast<std::size_t>(offset)] : std::uint8_t{0};
    }
    Bytes head_ = Bytes(kLocalSize + 1), tail_;
};

TEST(Archive, ReadsMembersAboveFourGigabytesAndDoesNotWriteThem) {
    LargeInput file;
    const Archive archive(file);
    ASSERT_EQ(archive.Entries().size(), 1u);
    EXPECT_EQ(archive.Entries()[0].size, LargeInput::kMemberSize);
    std::uint64_t given = 0;
    const Sink sink = [&](const std::uint8_t* data, std::size_t size) {
        given += size;
        Require(std::all_of(data, data + size, [](std::uint8_t byte) { return byte == 0; }),
                Result::kInvalid);
        Require(given < 1'000'000, Result::kCancelled);
    };
    EXPECT_EQ(ResultOf([&] { EntryReader(file, archive).Read(archive.Entries()[0], sink); }),
              Result::kCancelled);
    MemoryOutput output;
    ArchiveWriter writer(output);
    EXPECT_EQ(ResultOf([&] { writer.Copy(file, archive, {true}); }), Result::kTooBig);
    EXPECT_TRUE(output.bytes.empty());
}

}  // namespace
