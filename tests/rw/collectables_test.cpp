#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <memory>
#include <random>
#include <typeinfo>

#include "rw/file.h"
#include "rw/hash_dictionary.h"
#include "rw/ordered.h"
#include "rw/virtual_streams.h"
#include "tests/support/test_folder.h"

using namespace std::string_literals;

namespace {

// Counts its living objects; those of the same number are equal.
struct Counted : RWCollectable {
    explicit Counted(unsigned of) : number(of) { ++living; }
    Counted(Counted&&) = delete;
    ~Counted() override { --living; }
    unsigned hash() const override { return number % 2; }
    bool isEqual(const RWCollectable* other) const override {
        return static_cast<const Counted*>(other)->number == number;
    }

    static inline int living = 0;
    const unsigned number;
};

struct OwningOrdered : RWOrdered {
    ~OwningOrdered() override { clearAndDestroy(); }
};

std::string Joined(const RWOrdered& items) {
    std::string joined;
    RWOrderedIterator next(items);
    while (const auto* text = static_cast<const RWCollectableString*>(next())) joined += text->str() + '|';
    return joined;
}

struct Throwing : std::streambuf {
    int_type overflow(int_type) override { throw std::bad_alloc(); }
    int_type underflow() override { throw std::bad_alloc(); }
    int sync() override { throw std::bad_alloc(); }
};

// Whether the stream was still good after it.
bool Restore(RWCollectable& value, const std::string& bytes) {
    std::stringbuf buffer(bytes);
    RWBufferIstream stream(buffer);
    value.restoreGuts(stream);
    return stream.good();
}

}  // namespace

// Changes at both ends and in between, beside a deque that takes the same.
TEST(Ordered, KeepsItsOrderAndRefusesNullAndIndexesPastTheEnd) {
    std::deque<RWCollectable> pool;
    std::deque<RWCollectable*> model;
    RWOrdered items;
    std::minstd_rand random(1);  // NOLINT: the same changes every time
    for (int i = 0; i < 3000; ++i) {
        RWCollectable* const item = &pool.emplace_back();
        const std::size_t place = random() % (model.size() + 1);
        const auto at = model.begin() + static_cast<std::ptrdiff_t>(place);
        RWCollectable* const there = at == model.end() ? nullptr : *at;
        const auto change = random() % 5;
        RWCollectable* answered = nullptr;
        switch (change) {
            case 0: model.push_front(item), answered = items.prepend(item); break;
            case 1: model.push_back(item), answered = items.append(item); break;
            case 2: model.insert(at, item), answered = items.insertAt(place, item); break;
            default: there ? void(model.erase(at)) : void(), answered = items.removeAt(place);
        }
        ASSERT_EQ(change < 3 ? item : there, answered);
        ASSERT_EQ(model.size(), items.entries());
    }
    RWOrderedIterator next(items);
    for (RWCollectable* item : model) ASSERT_EQ(item, next());
    EXPECT_EQ(nullptr, next());
    EXPECT_EQ(nullptr, items.append(nullptr));
    EXPECT_EQ(nullptr, items.insertAt(items.entries() + 1, &pool[0]));
    RWOrdered moved(std::move(items)), assigned;
    assigned = std::move(moved);
    for (const RWOrdered* empty : {&items, &moved}) EXPECT_EQ(0u, empty->entries());  // NOLINT: as promised
    EXPECT_EQ(model.size(), assigned.entries());
    assigned.clear();
    EXPECT_EQ(0u, assigned.entries());
}

TEST(HashDictionary, FindsByEqualityAmongKeysOfOneHash) {
    std::deque<Counted> keys;
    RWHashDictionary dictionary;
    RWCollectable* value = nullptr;
    for (unsigned i = 0; i < 100; ++i) {
        keys.emplace_back(i);
        EXPECT_EQ(&keys[i], dictionary.insertKeyAndValue(&keys[i], &keys[i / 2]));
    }
    Counted known(42);
    EXPECT_EQ(nullptr, dictionary.insertKeyAndValue(&known, &known));
    EXPECT_EQ(&keys[21], dictionary.findValue(&known));
    EXPECT_EQ(&keys[42], dictionary.removeKeyAndValue(&known, value));
    EXPECT_EQ(&keys[21], value);
    for (const Counted* absent : {&known, static_cast<Counted*>(nullptr)}) {
        value = &known;
        EXPECT_EQ(nullptr, dictionary.findValue(absent));
        EXPECT_EQ(nullptr, dictionary.removeKeyAndValue(absent, value));
        EXPECT_EQ(nullptr, value);
    }
    EXPECT_EQ(99u, dictionary.entries());
    EXPECT_EQ(nullptr, dictionary.insertKeyAndValue(nullptr, &known));
    EXPECT_EQ(&known, dictionary.insertKeyAndValue(&known, nullptr)) << "a value may be null";
}

TEST(Collections, DestroyTheirItemsOnlyWhenAsked) {
    RWOrdered items;
    RWHashDictionary dictionary;
    for (unsigned i = 0; i < 3; ++i) {
        items.append(new Counted(i));
        dictionary.insertKeyAndValue(new Counted(i), new Counted(i));
    }
    const std::unique_ptr<RWCollectable> copy(items.copy()), other(dictionary.copy()),
        removed(items.removeAt(1));
    EXPECT_EQ(9, Counted::living);
    items.clearAndDestroy();
    dictionary.clearAndDestroy();
    EXPECT_EQ(1, Counted::living);
    EXPECT_EQ(0u, items.entries());
    EXPECT_EQ(0u, dictionary.entries());
    EXPECT_EQ(3u, static_cast<RWOrdered&>(*copy).entries());
    EXPECT_EQ(3, std::ranges::distance(static_cast<RWHashDictionary&>(*other)));
}

// Texts by content, collections by their items, all else by identity.
TEST(Collectables, CompareAndCopyWithinTheirClass) {
    RWCollectableString a("a"), alsoA("a"), upper("A"), zero(RWCString("a\0", 2));
    RWCollectableWString wideA(L"a"), wideUpper(L"A");
    const RWCollectable plain;
    const RWHashDictionary dictionary;
    RWOrdered none, ofA, ofAlsoA, ofWideA;
    ofA.append(&a);
    ofAlsoA.append(&alsoA);
    ofWideA.append(&wideA);
    const std::initializer_list<const RWCollectable*> kDifferent = {
        &upper, &a, &zero, &wideUpper, &wideA, &plain, &none, &ofA, &ofWideA, &dictionary};
    std::map<RWClassId, std::string> classes = {{kRWCollectableOther, "of another room"}};
    for (const RWCollectable* object : kDifferent) {
        SCOPED_TRACE(typeid(*object).name());
        EXPECT_EQ(typeid(*object).name(),
                  classes.try_emplace(object->isA(), typeid(*object).name()).first->second);
        const std::unique_ptr<RWCollectable> copy(object->copy()), fresh(object->newSpecies());
        for (const RWCollectable* other : {copy.get(), fresh.get()}) {
            EXPECT_STREQ(typeid(*object).name(), typeid(*other).name());
            EXPECT_EQ(object->isA(), other->isA());
        }
        EXPECT_FALSE(object->isEqual(nullptr));
        for (const RWCollectable* other : kDifferent) {
            EXPECT_EQ(object == other, object->isEqual(other));
            EXPECT_EQ(object == other, object->compareTo(other) == 0);
            EXPECT_EQ(-other->compareTo(object), object->compareTo(other));
        }
    }
    EXPECT_TRUE(ofA.isEqual(&ofAlsoA));
    EXPECT_EQ(1, a.compareTo(&upper));
    EXPECT_EQ(-1, a.compareTo(&zero));
    EXPECT_EQ(1, wideA.compareTo(&wideUpper));
    const std::unique_ptr<RWCollectable> copy(wideA.copy());
    EXPECT_EQ(0, copy->compareTo(&wideA));
    EXPECT_EQ(copy->hash(), wideA.hash());
}

TEST(VirtualStreams, CarryValuesAsLittleEndianBytes) {
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    out << std::uint32_t{0xfffefdfc} << 0.5;
    EXPECT_TRUE(out.put("", 0).flush().good());
    EXPECT_EQ("\xfc\xfd\xfe\xff\0\0\0\0\0\0\xe0\x3f"s, buffer.str());

    RWBufferIstream in(buffer);
    std::uint32_t count = 0;
    double number = 0;
    EXPECT_TRUE((in >> count >> number).good());
    EXPECT_EQ(0xfffefdfcu, count);
    EXPECT_EQ(0.5, number);
}

TEST(VirtualStreams, ThatBufferNothingHaveNothingToFlush) {
    struct Nowhere final : RWvostream {
        bool DoPut(const void*, std::size_t) override { return true; }
    } stream;
    EXPECT_TRUE(stream.flush().good());
}

TEST(VirtualStreams, StayBadOnceAGetOrPutHasFailed) {
    std::stringbuf buffer("abc"s), full("abc"s, std::ios::in);
    RWBufferIstream in(buffer);
    std::uint32_t value = 0;
    EXPECT_FALSE((in >> value).good());
    value = 7;
    buffer.str("abcd");
    EXPECT_FALSE((in >> value).good());
    EXPECT_EQ(7u, value);
    RWBufferOstream out(full);
    EXPECT_FALSE((out << 2.0).good());
    EXPECT_FALSE(out.put("", 0).good());
    Throwing throwing;
    EXPECT_FALSE((RWBufferOstream(throwing) << 2.0).good());
    EXPECT_FALSE(RWBufferOstream(throwing).flush().good());
    EXPECT_FALSE((RWBufferIstream(throwing) >> value).good());
}

TEST(Collectables, KeepWhatTheyHaveAndTheWholeItemsOfMalformedBytes) {
    RWCollectableString text("kept");
    for (const std::string& bytes : {""s, "\1\0\0"s, "\1\0\0\0"s, "\4\0\0\0abc"s, "\xff\xff\xff\xff..."s}) {
        EXPECT_FALSE(Restore(text, bytes));
        EXPECT_EQ("kept", text.str());
        OwningOrdered items;
        items.append(new RWCollectableString("a"));
        EXPECT_FALSE(Restore(items, bytes.empty() ? bytes : "\3\0\0\0\1\0\0\0b\0\0\0\0"s + bytes));
        EXPECT_EQ(bytes.empty() ? "a|" : "a|b||", Joined(items)) << testing::PrintToString(bytes);
        EXPECT_FALSE(Restore(items, "\xff\xff\xff\xff\0\0\0\0"s)) << "a count that no file could hold";
    }
    EXPECT_TRUE(Restore(text, "\0\0\0\0left"s));
    EXPECT_TRUE(text.isNull());
}

TEST(Ordered, GoesThroughAFileAndBackAsCountedTexts) {
    const TestFolder folder;
    OwningOrdered items, restored;
    const std::string longerThanAnyChunk = std::string(200'001, 'x') + "end";
    for (const std::string& text : {"a\0\xff"s, ""s, "\r\n\x1a"s, longerThanAnyChunk})
        items.append(new RWCollectableString(text));
    RWFile file((folder / L"ordered").c_str(), L"w+b");
    items.saveGuts(file);
    EXPECT_TRUE(file.SeekTo(0));
    for (int i = 0; i < 2; ++i) restored.restoreGuts(file);  // the second time finds nothing
    EXPECT_TRUE(items == restored);
    const std::string bytes = BytesOf(folder / L"ordered");
    EXPECT_EQ("\4\0\0\0\3\0\0\0a\0\xff\0\0\0\0\3\0\0\0\r\n\x1a\x44\x0d\3\0x"s, bytes.substr(0, 27));
    EXPECT_EQ(bytes.size(), items.binaryStoreSize());
}
