#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <typeinfo>

#include "rw/date.h"
#include "rw/file.h"
#include "rw/hash_dictionary.h"
#include "rw/ordered.h"
#include "rw/virtual_streams.h"
#include "tests/support/test_folder.h"

using namespace std::string_literals;

namespace {

// A collection that destroys its items.
struct OwningOrdered : RWOrdered {
    OwningOrdered() = default;
    OwningOrdered(const OwningOrdered&) = delete;
    OwningOrdered& operator=(const OwningOrdered&) = delete;
    ~OwningOrdered() override { clearAndDestroy(); }
};

std::string Joined(const RWOrdered& items) {
    std::string joined;
    RWOrderedIterator next(items);
    while (const auto* text = static_cast<const RWCollectableString*>(next())) joined += text->str() + '|';
    return joined;
}

template <class Value>
std::string Saved(const Value& value) {
    std::stringbuf buffer;
    RWBufferOstream stream(buffer);
    value.saveGuts(stream);
    EXPECT_TRUE(stream.good());
    return buffer.str();
}

// Whether the stream was still good after it.
template <class Value>
bool Restore(Value& value, const std::string& bytes) {
    std::stringbuf buffer(bytes);
    RWBufferIstream stream(buffer);
    value.restoreGuts(stream);
    return stream.good();
}

// Takes four bytes and no more.
struct NarrowBuffer : std::streambuf {
    NarrowBuffer() { setp(taken, taken + sizeof taken); }
    char taken[4] = {};
};

}  // namespace

TEST(VirtualStreams, CarryValuesAsLittleEndianBytes) {
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    out << std::uint32_t{0xfffefdfc} << 0.5;
    out.put("", 0);
    EXPECT_TRUE(out.good());
    EXPECT_EQ("\xfc\xfd\xfe\xff\0\0\0\0\0\0\xe0\x3f"s, buffer.str());

    RWBufferIstream in(buffer);
    std::uint32_t count = 0;
    double number = 0;
    in >> count >> number;
    EXPECT_TRUE(in.good());
    EXPECT_EQ(0xfffefdfcu, count);
    EXPECT_EQ(0.5, number);
}

TEST(VirtualStreams, StayBadOnceAGetOrPutHasFailed) {
    std::stringbuf buffer("abc"s);
    RWBufferIstream in(buffer);
    std::uint32_t value = 0;
    EXPECT_FALSE((in >> value).good());
    value = 0;
    buffer.str("abcd");
    EXPECT_FALSE((in >> value).good());
    EXPECT_EQ(0u, value);

    NarrowBuffer narrow;
    RWBufferOstream out(narrow);
    EXPECT_TRUE((out << std::uint32_t{1}).good());
    EXPECT_FALSE((out << 2.0).good());
    EXPECT_FALSE(out.put("", 0).good());
    EXPECT_EQ('\1', narrow.taken[0]);
}

TEST(CollectableString, SavesALengthAndTheBytes) {
    const RWCollectableString text(RWCString("a\0\xff", 3));
    EXPECT_EQ("\3\0\0\0a\0\xff"s, Saved(text));
    EXPECT_EQ(7u, text.binaryStoreSize());
    EXPECT_EQ("\0\0\0\0"s, Saved(RWCollectableString()));
}

TEST(CollectableString, KeepsItsContentWhenTheBytesEndTooEarly) {
    RWCollectableString text("kept");
    for (const std::string& bytes : {""s, "\1\0\0"s, "\1\0\0\0"s, "\4\0\0\0abc"s, "\xff\xff\xff\xff..."s}) {
        EXPECT_FALSE(Restore(text, bytes));
        EXPECT_EQ("kept", text.str());
    }
    EXPECT_TRUE(Restore(text, "\0\0\0\0left"s));
    EXPECT_TRUE(text.isNull());
}

TEST(CollectableString, RestoresTextsLongerThanAnyChunk) {
    const RWCollectableString text(std::string(200'001, 'x') + "end");
    RWCollectableString restored;
    EXPECT_TRUE(Restore(restored, Saved(text)));
    EXPECT_TRUE(restored.isEqual(&text));
}

TEST(Collectables, CompareAndHashByContentWithinTheirClass) {
    const RWCollectableString narrow("b"), narrowUpper("B"), narrowZero(RWCString("b\0", 2));
    const RWCollectableWString wide(L"b"), wideUpper(L"B");
    EXPECT_EQ(-1, narrow.compareTo(&narrowZero));
    EXPECT_EQ(1, narrowZero.compareTo(&narrow));
    EXPECT_EQ(1, wide.compareTo(&wideUpper));
    EXPECT_FALSE(narrow.isEqual(&narrowZero) || narrow.isEqual(&narrowUpper) || wide.isEqual(&wideUpper) ||
                 narrow.isEqual(&wide) || wide.isEqual(nullptr));
    EXPECT_EQ(-narrow.compareTo(&wide), wide.compareTo(&narrow));
    const std::unique_ptr<RWCollectable> copy(wide.copy());
    EXPECT_EQ(0, copy->compareTo(&wide));
    EXPECT_EQ(copy->hash(), wide.hash());
}

TEST(Collectables, MakeCopiesAndNewObjectsOfTheirOwnClass) {
    const RWCollectable plain;
    const RWCollectableString narrow("x");
    const RWCollectableWString wide(L"x");
    const RWOrdered ordered;
    const RWHashDictionary dictionary;
    for (const RWCollectable* object :
         std::initializer_list<const RWCollectable*>{&plain, &narrow, &wide, &ordered, &dictionary}) {
        const std::unique_ptr<RWCollectable> copy(object->copy()), fresh(object->newSpecies());
        for (const RWCollectable* other : {copy.get(), fresh.get()}) {
            EXPECT_STREQ(typeid(*object).name(), typeid(*other).name());
            EXPECT_EQ(object->isA(), other->isA());
        }
    }
    EXPECT_FALSE(plain.isEqual(&narrow));
    EXPECT_NE(0, plain.compareTo(&narrow));
}

TEST(Ordered, RestoresBehindTheItemsThatItHas) {
    OwningOrdered items;
    EXPECT_TRUE(Restore(items, "\1\0\0\0\1\0\0\0a"s));
    EXPECT_TRUE(Restore(items, "\2\0\0\0\1\0\0\0b\2\0\0\0\0c"s));
    EXPECT_EQ("a|b|\0c|"s, Joined(items));
}

TEST(Ordered, KeepsTheWholeItemsOfMalformedBytes) {
    const std::pair<std::string, const char*> cases[] = {
        {""s, ""},
        {"\1\0\0\0"s, ""},
        {"\2\0\0\0\1\0\0\0a\1\0\0"s, "a|"},
        {"\2\0\0\0\1\0\0\0a\2\0\0\0b"s, "a|"},
        {"\xff\xff\xff\xff\0\0\0\0\0\0\0\0"s, "||"},
        {"\1\0\0\0\xff\xff\xff\xff"s + "a"s, ""},
    };
    for (const auto& [bytes, kept] : cases) {
        OwningOrdered items;
        EXPECT_FALSE(Restore(items, bytes)) << testing::PrintToString(bytes);
        EXPECT_EQ(kept, Joined(items)) << testing::PrintToString(bytes);
    }
}

TEST(Ordered, GoesThroughAFileAndBack) {
    const TestFolder folder;
    OwningOrdered items, restored;
    for (const char* text : {"one", "", "\r\n\x1a"}) items.append(new RWCollectableString(text));
    RWFile file((folder / L"ordered").c_str(), L"w+b");
    items.saveGuts(file);
    EXPECT_TRUE(file.SeekTo(0));
    restored.restoreGuts(file);
    EXPECT_TRUE(items == restored);
    EXPECT_EQ(BytesOf(folder / L"ordered").size(), items.binaryStoreSize());
    restored.restoreGuts(file);  // at the end: nothing to add
    EXPECT_EQ(3u, restored.entries());
}

TEST(RWDate, KeepsItsDayWhenTheBytesEndTooEarly) {
    RWDate date(29, 2, 2000);
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    date.saveOn(out);
    EXPECT_EQ("\x94\x68\x25\0"s, buffer.str());

    std::stringbuf shortBuffer("\1\0\0"s);
    RWBufferIstream in(shortBuffer);
    date.restoreFrom(in);
    EXPECT_EQ(2451604u, date.dayNumber());
}
