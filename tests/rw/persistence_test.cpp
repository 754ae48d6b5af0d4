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
#include "tests/rw/temporary_file.h"

using namespace std::string_literals;

namespace {

// A collection that destroys its items.
struct OwningOrdered : RWOrdered {
    OwningOrdered() = default;
    OwningOrdered(const OwningOrdered&) = delete;
    OwningOrdered& operator=(const OwningOrdered&) = delete;
    ~OwningOrdered() override { clearAndDestroy(); }
};

const RWCString& TextAt(const RWOrdered& items, std::size_t index) {
    return static_cast<const RWCollectableString&>(*items[index]);
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

const char* ClassOf(const RWCollectable& object) {
    return typeid(object).name();
}

// Takes so many bytes and no more.
class NarrowStream : public RWvostream {
  public:
    explicit NarrowStream(std::size_t room) : room_(room) {}

    std::string taken;

  private:
    bool DoPut(const void* bytes, std::size_t count) override {
        if (taken.size() + count > room_) return false;
        taken.append(static_cast<const char*>(bytes), count);
        return true;
    }
    std::size_t room_;
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
    char byte = 'x';
    buffer.str("abc");
    EXPECT_FALSE(in.get(&byte, 1).good());
    EXPECT_EQ('x', byte);

    NarrowStream out(4);
    out << std::uint32_t{1} << 2.0;
    EXPECT_FALSE(out.good());
    out.put("", 0);
    EXPECT_FALSE(out.good());
    EXPECT_EQ("\1\0\0\0"s, out.taken);
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
    const RWCollectableString narrow("b");
    const RWCollectableString narrowZero(RWCString("b\0", 2));
    const RWCollectableWString wide(L"b");
    const RWCollectableWString wideUpper(L"B");
    EXPECT_EQ(-1, narrow.compareTo(&narrowZero));
    EXPECT_EQ(1, narrowZero.compareTo(&narrow));
    EXPECT_EQ(1, wide.compareTo(&wideUpper));
    EXPECT_FALSE(narrow.isEqual(&narrowZero));
    EXPECT_FALSE(wide.isEqual(&wideUpper));
    EXPECT_FALSE(narrow.isEqual(&wide));
    EXPECT_EQ(-narrow.compareTo(&wide), wide.compareTo(&narrow));
    EXPECT_FALSE(wide.isEqual(nullptr));

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
        const std::unique_ptr<RWCollectable> copy(object->copy());
        const std::unique_ptr<RWCollectable> fresh(object->newSpecies());
        EXPECT_STREQ(ClassOf(*object), ClassOf(*copy));
        EXPECT_STREQ(ClassOf(*object), ClassOf(*fresh));
        EXPECT_EQ(object->isA(), fresh->isA());
    }
    EXPECT_FALSE(plain.isEqual(&narrow));
    EXPECT_NE(0, plain.compareTo(&narrow));
}

TEST(Ordered, RestoresBehindTheItemsThatItHas) {
    OwningOrdered items;
    EXPECT_TRUE(Restore(items, "\1\0\0\0\1\0\0\0a"s));
    EXPECT_TRUE(Restore(items, "\2\0\0\0\1\0\0\0b\2\0\0\0\0c"s));
    ASSERT_EQ(3u, items.entries());
    EXPECT_EQ("a", TextAt(items, 0));
    EXPECT_EQ("b", TextAt(items, 1));
    EXPECT_EQ("\0c"s, TextAt(items, 2).str());
}

TEST(Ordered, KeepsTheWholeItemsOfMalformedBytes) {
    struct Case {
        std::string bytes;
        std::size_t entries;
    };
    const Case cases[] = {
        {""s, 0},
        {"\1\0\0"s, 0},
        {"\1\0\0\0"s, 0},
        {"\2\0\0\0\1\0\0\0a\1\0\0"s, 1},
        {"\2\0\0\0\1\0\0\0a\2\0\0\0b"s, 1},
        {"\xff\xff\xff\xff\0\0\0\0\0\0\0\0"s, 2},
        {"\1\0\0\0\xff\xff\xff\xff"s + "a"s, 0},
    };
    for (const Case& each : cases) {
        OwningOrdered items;
        EXPECT_FALSE(Restore(items, each.bytes)) << testing::PrintToString(each.bytes);
        EXPECT_EQ(each.entries, items.entries()) << testing::PrintToString(each.bytes);
    }
}

TEST(Ordered, StopsWritingWhenTheStreamIsFull) {
    RWCollectableString a("abc");
    RWOrdered items;
    items.append(&a);
    items.append(&a);
    EXPECT_EQ(18u, items.binaryStoreSize());
    NarrowStream stream(12);
    items.saveGuts(stream);
    EXPECT_FALSE(stream.good());
    EXPECT_EQ("\2\0\0\0\3\0\0\0abc"s, stream.taken);
}

TEST(Ordered, GoesThroughAFileAndBack) {
    const TemporaryFile place("ordered");
    OwningOrdered items;
    for (const char* text : {"one", "", "\r\n\x1a"}) items.append(new RWCollectableString(text));
    OwningOrdered restored;
    RWFile file(place.Path().c_str(), L"w+b");
    items.saveGuts(file);
    EXPECT_TRUE(file.SeekTo(0));
    restored.restoreGuts(file);
    EXPECT_TRUE(items == restored);
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
