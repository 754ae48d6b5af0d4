#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <tuple>

#include <zlib.h>

#include "engine/extra_fields.h"
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

const std::vector<Member> kMembers = {{"a.txt", "hello"}, {"\u00e4.txt", std::string(3000, 'x'), 32, 6}};

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

// A byte that a case adds to: in the second member's local header, in the first two records, in the end
// record, in the 64-bit end before it and that one's locator.
enum Place { kLocal, kFirst, kSecond, kEnd, kEnd64, kLocator };
struct Change {
    Place place;
    std::size_t offset;
    int delta;
};

std::size_t PlaceOf(const Bytes& told, Place place) {
    const std::size_t end = told.size() - kEndSize - 4, first = Get32(&told[end + end::kOffset]);
    const std::size_t second = first + kRecordSize + 5, locator = end - kLocator64Size;
    return std::array{std::size_t{Get32(&told[second + record::kOffset])},
                      first,
                      second,
                      end,
                      locator - kEnd64Size,
                      locator}[place];
}

Bytes With(const std::vector<Change>& changes, const Bytes& told = Sample()) {
    Bytes bytes = told;
    for (const Change& change : changes) {
        std::uint8_t& byte = bytes[PlaceOf(told, change.place) + change.offset];
        byte = static_cast<std::uint8_t>(byte + change.delta);
    }
    return bytes;
}

// Of a number that both headers of the second member have.
std::vector<Change> InBoth(std::size_t field, int delta) {
    return {{kSecond, record::kCommon + field, delta}, {kLocal, local::kCommon + field, delta}};
}

Bytes Part(const Bytes& bytes, std::size_t from) {
    return Bytes(bytes.begin() + static_cast<std::ptrdiff_t>(from), bytes.end());
}

void Append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

// Chunks and the buffer end inside members; what packing does not make smaller is stored.
TEST(Archive, TakesMembersOfEverySize) {
    std::string noise;
    for (std::uint32_t i = 0, x = 1; i < 3'000'000; ++i)
        noise += static_cast<char>((x = x * 1664525 + 1013904223) >> 24);
    std::vector<Member> members;
    for (const int level : {0, 1, 9}) {
        for (const std::size_t size : {0u, 8u, 262143u, 262144u, 262145u, 524288u, 1048575u, 3000000u})
            members.push_back({std::to_string(size), noise.substr(0, size), 32, level});
    }
    std::string again;
    for (int i = 0; i < 30; ++i) again += noise.substr(0, 20000);
    members.push_back({"again", again, 32, 9});
    MemoryArchive read(Written(members, ""));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_TRUE(read.Content(i) == members[i].content) << members[i].name << " at " << members[i].level;
        if (members[i].content.size() > 8) continue;
        EXPECT_EQ(kStored, read.archive.Entries()[i].method) << members[i].name;
    }
    EXPECT_GT(30000u, read.archive.Entries().back().packedSize) << "a block has those before it in mind";
}

TEST(Archive, PiecesAndArchivesThatLieDoNotOpenAndMembersThatLieAreNotRead) {
    const Bytes whole = Sample();
    for (const std::size_t size : {0u, 3u, 4u, 60u, 200u})
        EXPECT_EQ(size < 4 ? Result::kInvalid : Result::kTruncated, Open({&whole[0], &whole[size]})) << size;
    const struct {
        const char* what;
        bool opens;
        std::vector<Change> changes;
        Result result = Result::kInvalid;
    } cases[] = {{"one member more", false, {{kEnd, end::kCountHere, 1}, {kEnd, end::kCount, 1}}},
                 {"one member less", false, {{kEnd, end::kCountHere, -1}, {kEnd, end::kCount, -1}}},
                 {"counts that differ", false, {{kEnd, end::kCountHere, -1}}, Result::kMultiVolume},
                 {"second disk", false, {{kEnd, end::kDisk, 1}}, Result::kMultiVolume},
                 {"member of another disk", false, {{kSecond, record::kDisk, 1}}, Result::kMultiVolume},
                 {"directory too far", false, {{kEnd, end::kOffset, 1}}, Result::kTruncated},
                 {"directory too long", false, {{kEnd, end::kSize + 2, 1}}, Result::kTruncated},
                 {"directory too short", false, {{kEnd, end::kSize, -1}, {kEnd, end::kOffset, 1}}},
                 {"no record", false, {{kSecond, 0, 1}}},
                 {"record beyond the directory", false, {{kSecond, record::kCommentSize + 1, 1}}},
                 {"name beyond it", false, {{kSecond, record::kNameSize + 1, 127}}},
                 {"overlap", false, {{kSecond, record::kOffset, -1}}},
                 {"member beyond the directory", false, {{kSecond, record::kOffset + 3, 1}}},
                 {"header into the directory", false, {{kSecond, record::kOffset, 40}}},
                 {"packed size into the directory", false, {{kSecond, record::kPackedSize, 1}}},
                 {"stored sizes that differ", false, {{kFirst, record::kSize, 1}}},
                 {"ratio beyond sense", false, {{kSecond, record::kSize + 2, 1}}},
                 {"no local header", true, {{kLocal, 0, 1}}},
                 {"other local name", true, {{kLocal, kLocalSize, 1}}},
                 {"local name of another encoding", true, {{kLocal, local::kFlags + 1, -8}}},
                 {"other local size", true, {{kLocal, local::kSize, 1}}},
                 {"other local method", true, {{kLocal, local::kMethod, 1}}},
                 {"local name too long", true, {{kLocal, local::kNameSize, 1}}},
                 {"local extra field too long", true, {{kLocal, local::kExtraSize + 1, 1}}},
                 {"size too small", true, InBoth(common::kSize, -1)},
                 {"size too great", true, InBoth(common::kSize, 1)},
                 {"packed size too small", true, InBoth(common::kPackedSize, -1)},
                 {"wrong check sum", true, InBoth(common::kCrc, 1), Result::kBadCrc},
                 {"no deflate stream", true, {{kLocal, kLocalSize + 6, 0x07}}},
                 {"encrypted", true, InBoth(common::kFlags, 1), Result::kEncrypted},
                 {"encrypted in one place", true, {{kLocal, local::kFlags, 1}}},
                 {"unknown method", true, InBoth(common::kMethod, 4), Result::kUnknownMethod}};
    for (const auto& c : cases) {
        const Bytes bytes = With(c.changes);
        EXPECT_EQ(c.result, Read(bytes, 1)) << c.what;
        EXPECT_EQ(c.opens ? Result::kOk : c.result, Read(bytes, 0)) << c.what;
    }
}

// The archive of a stored member "a.txt" with a field behind its name, in one of its two headers.
Bytes WithField(bool inRecord, std::uint16_t kind, const Bytes& content) {
    Bytes bytes = Written({{"a.txt", "hello"}}, ""), field(kExtraHeaderSize);
    const auto size = static_cast<std::uint32_t>(content.size());
    Put16(field.data(), kind);
    Put16(&field[2], size);
    Append(field, content);
    const std::size_t header = inRecord ? bytes.size() - kEndSize - kRecordSize - 5 : 0;
    Put16(&bytes[header + (inRecord ? record::kExtraSize : local::kExtraSize)], size + 4);
    std::uint8_t& moved = bytes[bytes.size() - kEndSize + (inRecord ? end::kSize : end::kOffset)];
    moved = static_cast<std::uint8_t>(moved + size + 4);
    const std::size_t nameEnd = header + (inRecord ? kRecordSize : kLocalSize) + 5;
    bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(nameEnd), field.begin(), field.end());
    return bytes;
}

// It counts while its check sum is that of the name that it stands beside. In a record it is the name.
TEST(Archive, TheSecondFormOfANameTellsThatName) {
    // The form, its version, what its check sum is off; what reading says with the form in the local header,
    // and the name with the form in the record.
    const std::tuple<std::string, std::uint8_t, std::uint32_t, Result, const char*> cases[] = {
        {"a.txt", 1, 0, Result::kOk, "a.txt"},
        {"b.txt", 1, 0, Result::kInvalid, "b.txt"},
        {"b.txt", 2, 0, Result::kOk, "a.txt"},
        {"\xff", 1, 0, Result::kOk, "a.txt"},
        {"b.txt", 1, 1, Result::kOk, "a.txt"}};
    for (const auto& [path, version, off, inLocal, inRecord] : cases) {
        Bytes form(5, version);
        Put32(&form[1],
              off + static_cast<std::uint32_t>(crc32(0, reinterpret_cast<const Bytef*>("a.txt"), 5)));
        Append(form, Bytes(path.begin(), path.end()));
        EXPECT_EQ(inLocal, Read(WithField(false, kExtraUnicodePath, form), 0)) << path << int{version} << off;
        const MemoryArchive read(WithField(true, kExtraUnicodePath, form));
        EXPECT_EQ(inRecord, read.archive.Entries()[0].name) << path << int{version} << off;
    }
}

// Behind the archive itself, behind bytes that follow it, and behind a comment that takes it in; each also
// where it misses the end of the file by a byte.
TEST(Archive, TwoEndsAreOneTooManyButOtherBytesBehindTheEndAreAccepted) {
    const Bytes sample = Sample(), end = Part(sample, PlaceOf(sample, kEnd));
    Bytes behind = sample, twice = sample;
    Append(behind, {1, 2, 3});
    EXPECT_EQ(kMembers[1].content, ReadMember(behind, 1));
    EXPECT_EQ("told", MemoryArchive(behind).archive.Comment());
    Bytes empty = Written({}, "");
    Append(empty, {1});
    EXPECT_EQ(Result::kOk, Open(empty));
    Append(twice, Part(sample, PlaceOf(sample, kFirst)));
    EXPECT_EQ(Result::kInvalid, Read(twice, 1));
    for (const int missing : {0, 1}) {
        const int size = static_cast<int>(end.size()) - missing;
        for (Bytes bytes : {behind, With({{kEnd, end::kCommentSize, size}})}) {
            bytes.insert(bytes.end(), end.begin(), end.end() - missing);
            EXPECT_EQ(Result::kInvalid, Open(bytes)) << missing << " of " << bytes.size();
        }
    }
}

// The record of an end whose comment is all that follows, at the end of the last member's contents.
TEST(Archive, AnEndInContentsIsNoneUnlessItFollowsADirectory) {
    std::string content = std::string("PK\1\2") + "PK\5\6" + std::string(18, '\1');
    const auto written = [&] { return Written({{"b", "z"}, {"a", content}}, ""); };
    const Bytes bytes = written();
    const auto start = std::search(bytes.begin(), bytes.end(), content.begin(), content.end());
    const std::ptrdiff_t comment = bytes.end() - start - 26;
    content[24] = static_cast<char>(comment & 0xFF);
    content[25] = static_cast<char>(comment >> 8);
    for (const char* size : {"\1\1\1\1", "\0\0\0\0", "\3\0\0\0", "\xFF\xFF\xFF\xFF"}) {
        content.replace(16, 4, size, 4);
        EXPECT_EQ(content, ReadMember(written(), 1));
    }
    content.replace(16, 4, "\4\0\0\0", 4);
    EXPECT_EQ(Result::kInvalid, Open(written()));
}

// Elsewhere its members would be moved to where the directory says that they are, and be lost for good.
TEST(Archive, IsChangedBehindAnotherFileWhileItsMembersAreWhereItSays) {
    Bytes bytes = Sample(), apart = bytes;
    apart.insert(apart.begin() + static_cast<std::ptrdiff_t>(PlaceOf(bytes, kFirst)), 20, 'g');
    MemoryArchive elsewhere(apart);
    EXPECT_EQ(Result::kInvalid, ResultOf([&] { elsewhere.archive.RequireMembersInPlace(elsewhere.file); }));
    bytes.insert(bytes.begin(), 1000, 'P');
    EXPECT_EQ(kMembers[1].content, ReadMember(bytes, 1));
    MemoryArchive read(bytes);
    EXPECT_NO_THROW(read.archive.RequireMembersInPlace(read.file));
    MemoryOutput output;
    ArchiveWriter writer(output);
    writer.Copy(read.file, read.archive, {false, true});
    writer.Finish("");
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.begin() + 1000, output.bytes.begin()));
    EXPECT_EQ(kMembers[1].content, ReadMember(output.bytes, 0));
}

// Attributes are those of Windows where the host is a kin of it.
TEST(Archive, FoldersAreKnownByTheirSlashOrAttribute) {
    const Bytes bytes = Written({{"", "", 16}, {"b", "", 16}, {"a/", ""}, {"c", ""}, {"d", "x", 16}}, "told");
    for (const auto& [host, byAttribute] : {std::pair{0, true}, {3, false}, {11, true}, {14, true}}) {
        const Change second{kFirst, kRecordSize + record::kHost, host - 11};
        const MemoryArchive read(With({second}, bytes));
        const bool isFolder[] = {false, byAttribute, true, false, false};
        for (std::size_t i = 0; i < 5; ++i)
            EXPECT_EQ(isFolder[i], read.archive.Entries()[i].isFolder) << host << ' ' << i;
    }
}

TEST(Archive, ASourceThatFailsLeavesNothingOfItself) {
    struct Failing final : InputFile {
        std::uint64_t Size() const override { return 9u << 20; }
        std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override {
            Require(offset < end, Result::kReadFailed);
            std::fill_n(into, size, static_cast<std::uint8_t>(offset >> 18));
            return size;
        }
        std::uint64_t end = 0;
    } failing;
    for (const std::uint64_t readable : {0u, 5u << 20}) {
        failing.end = readable;
        MemoryOutput output;
        ArchiveWriter writer(output);
        Add(writer, kMembers[0]);
        EXPECT_EQ(Result::kReadFailed, ResultOf([&] {
                      writer.Add({"f", 0, 0, 0}, failing, [](std::uint64_t) {});
                  }));
        Add(writer, kMembers[1]);
        output.bytes.resize(static_cast<std::size_t>(writer.Finish("told")));
        EXPECT_EQ(Sample(), output.bytes) << readable;
    }
}

TEST(ExtraFields, TellMomentsInUtc) {
    constexpr std::uint64_t kUnix = (11'644'473'600 + 0x5eed3d80) * 10'000'000, kNtfs = 0x0807060504030201;
    const std::pair<Bytes, std::uint64_t> cases[] = {
        {{0x55, 0x54, 5, 0, 1, 0x80, 0x3d, 0xed, 0x5e}, kUnix},
        {{0x55, 0x54, 5, 0, 1, 0x80, 0x3d, 0xed}, 0},        // beyond the end
        {{0x55, 0x54, 4, 0, 1, 0x80, 0x3d, 0xed, 0x5e}, 0},  // cut off
        {{0x55, 0x54, 5, 0, 2, 0x80, 0x3d, 0xed, 0x5e}, 0},  // of another time
        {{0x0a, 0, 16, 0, 0, 0, 0, 0, 1, 0, 8, 0, 1, 2, 3, 4, 5, 6, 7, 8}, kNtfs},
        {{0x0a, 0, 15, 0, 0, 0, 0, 0, 1, 0, 7, 0, 1, 2, 3, 4, 5, 6, 7, 8}, 0},
        {{0x0a, 0, 16, 0, 0, 0, 0, 0, 2, 0, 8, 0, 1, 2, 3, 4, 5, 6, 7, 8}, 0},
        {{0x0a, 0, 3, 0, 0, 0, 0, 0x55, 0x54, 5, 0, 1, 0x80, 0x3d, 0xed, 0x5e}, kUnix}};
    for (const auto& [bytes, time] : cases)
        EXPECT_EQ(time, UtcTimeIn({bytes.data(), bytes.size()})) << testing::PrintToString(bytes);
}

// A file that is mostly zeros, of which only the other writes take memory.
class SparseFile final : public InputFile, public OutputFile {
  public:
    std::uint64_t Size() const override { return size_; }
    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override {
        Grow(std::max(size_, offset + size));
        constexpr std::size_t kSmall = 4096;  // zeros, too, which may stand over what was there
        const bool isZero = size > 0 && *data == 0 && std::memcmp(data, data + 1, size - 1) == 0;
        if (!isZero || size < kSmall) writes_.push_back({offset, {data, data + size}});
    }
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override {
        size = static_cast<std::size_t>(std::min<std::uint64_t>(size, size_ - std::min(size_, offset)));
        std::fill_n(into, size, std::uint8_t{0});
        for (const auto& [at, bytes] : writes_) {
            const std::uint64_t from = std::max(at, offset), to = std::min(at + bytes.size(), offset + size);
            if (from < to)
                std::copy_n(bytes.begin() + static_cast<std::ptrdiff_t>(from - at),
                            static_cast<std::ptrdiff_t>(to - from), into + (from - offset));
        }
        return size;
    }
    void Grow(std::uint64_t size) { size_ = size; }

  private:
    std::vector<std::pair<std::uint64_t, Bytes>> writes_;
    std::uint64_t size_ = 0;
};

TEST(Archive, WritesAndChangesMembersAndArchivesBeyondFourGigabytes) {
    constexpr std::uint64_t kLarge = 4'400'000'000;
    SparseFile zeros, first, second, third;
    zeros.Grow(kLarge);
    ArchiveWriter writer(first);
    writer.Add({"large", 0, 0, 0}, zeros, [](std::uint64_t) {});
    Add(writer, {"behind", "small"});
    writer.Finish("");
    ArchiveWriter changed(second);
    changed.Copy(first, Archive(first), {true, true});
    Add(changed, {"new", "also small"});
    changed.Finish("");

    const Archive archive(second);
    ASSERT_EQ(3u, archive.Entries().size());
    EXPECT_EQ(kLarge, archive.Entries()[0].size);
    EXPECT_EQ(kLarge, archive.Entries()[0].packedSize);
    for (const auto& [index, content] : {std::pair{1u, "small"}, {2u, "also small"}}) {
        EXPECT_LT(kLarge, archive.Entries()[index].offset);
        EXPECT_EQ(content, ContentOf(second, archive, index));
    }
    EXPECT_NO_THROW(archive.DataStart(second, archive.Entries()[0]));
    ArchiveWriter without(third);
    without.Copy(second, archive, {false, true, true});
    without.Finish("");
    EXPECT_EQ(2 * kRecordSize + 9, Archive(third).DirectorySize()) << "no field of 64 bits is left";
}

TEST(Archive, HoldsMoreMembersThanTheShortEndCanCount) {
    std::vector<Member> members;
    for (int i = 0; i < 65535; ++i) members.push_back({std::to_string(i), ""});
    const Bytes most = Written(members, "told");
    members.push_back({"65535", ""});
    const Bytes more = Written(members, "told");
    EXPECT_EQ(1, more[PlaceOf(more, kLocator) + locator64::kDisks]);
    Bytes behind(1000, 'P');
    Append(behind, more);
    const Bytes anyDisk = With({{kEnd, end::kDisk, 0xff}, {kEnd, end::kDisk + 1, 0xff}}, more);
    Bytes extended = With({{kEnd64, end64::kRest, 12}}, more);
    extended.insert(extended.begin() + static_cast<std::ptrdiff_t>(PlaceOf(more, kLocator)), 12, 'e');
    for (const auto& [bytes, last] : {std::pair(most, "65534"),
                                      {more, "65535"},
                                      {behind, "65535"},
                                      {anyDisk, "65535"},
                                      {extended, "65535"}}) {
        const MemoryArchive read(bytes);
        EXPECT_EQ(last, std::to_string(read.archive.Entries().size() - 1));
        EXPECT_EQ(last, read.archive.Entries().back().name);
        EXPECT_EQ("told", read.archive.Comment());
    }
    EXPECT_EQ(ResultOf([] { Written({}, "PK\5\6"); }), Result::kBadComment);
    const struct {
        const char* what;
        std::vector<Change> changes;
        Result result = Result::kInvalid;
    } lies[] = {{"ends that differ", {{kEnd, end::kSize, 1}}},
                {"beyond memory", {{kEnd64, end64::kCountHere + 6, 1}, {kEnd64, end64::kCount + 6, 1}}},
                {"beyond 32 bits", {{kEnd64, end64::kCountHere + 3, 127}, {kEnd64, end64::kCount + 3, 127}}},
                {"counts that differ", {{kEnd64, end64::kCountHere, 1}}, Result::kMultiVolume},
                {"no such end", {{kEnd64, 0, 1}}},
                {"no locator", {{kLocator, 0, 1}}},
                {"locator of another disk", {{kLocator, locator64::kDisk, 1}}, Result::kMultiVolume},
                {"locator before", {{kLocator, locator64::kOffset + 2, -1}}},
                {"locator behind", {{kLocator, locator64::kOffset + 3, 1}}}};
    for (const auto& lie : lies) EXPECT_EQ(lie.result, Open(With(lie.changes, more))) << lie.what;
}

}  // namespace
