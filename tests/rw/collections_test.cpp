#include <gtest/gtest.h>

#include <deque>
#include <memory>
#include <string>

#include "rw/hash_dictionary.h"
#include "rw/ordered.h"

namespace {

// Counts its living objects; those of the same number are equal.
class Counted : public RWCollectable {
  public:
    explicit Counted(unsigned number) : number_(number) { ++living; }
    Counted(const Counted& other) : RWCollectable(other), number_(other.number_) { ++living; }
    ~Counted() override { --living; }
    unsigned hash() const override { return number_ % 2; }
    bool isEqual(const RWCollectable* other) const override {
        const auto* counted = dynamic_cast<const Counted*>(other);
        return counted && counted->number_ == number_;
    }

    static inline int living = 0;

  private:
    unsigned number_;
};

std::string Names(const RWOrdered& items) {
    std::string names;
    RWOrderedIterator next(items);
    while (const RWCollectable* item = next()) names += static_cast<const RWCollectableString*>(item)->str();
    return names;
}

}  // namespace

TEST(Ordered, KeepsTheOrderOfItsInsertionsAndRefusesNullAndIndexesPastTheEnd) {
    RWCollectableString a("a"), b("b"), c("c"), d("d");
    RWOrdered items;
    EXPECT_EQ(nullptr, items.append(nullptr));
    EXPECT_EQ(nullptr, items.insertAt(1, &a));
    EXPECT_EQ(nullptr, items.removeAt(0));
    EXPECT_EQ(&b, items.append(&b));
    EXPECT_EQ(&d, items.insertAt(1, &d));
    EXPECT_EQ(&c, items.insertAt(1, &c));
    EXPECT_EQ(&a, items.prepend(&a));
    EXPECT_EQ("abcd", Names(items));
    EXPECT_EQ(&b, items.removeAt(1));
    EXPECT_EQ(&d, items.removeAt(2));
    EXPECT_EQ("ac", Names(items));
    items.clear();
    EXPECT_EQ(0u, items.entries());
}

TEST(Ordered, IsEqualWhenItsItemsAre) {
    RWCollectableString a("a"), alsoA("a");
    RWCollectableWString wideA(L"a");
    RWOrdered items, others;
    items.append(&a);
    EXPECT_FALSE(items == others);
    others.append(&alsoA);
    EXPECT_TRUE(items.isEqual(&others));
    others.removeAt(0);
    others.append(&wideA);
    EXPECT_FALSE(items == others || items.isEqual(&a) || items.isEqual(nullptr));
}

TEST(Ordered, DestroysItsItemsOnlyWhenAsked) {
    RWOrdered items;
    for (unsigned i = 0; i < 3; ++i) items.append(new Counted(i));
    const std::unique_ptr<RWCollectable> removed(items.removeAt(1));
    const std::unique_ptr<RWCollectable> copy(items.copy());
    EXPECT_EQ(3, Counted::living);
    items.clearAndDestroy();
    EXPECT_EQ(0u, items.entries());
    EXPECT_EQ(1, Counted::living);
    EXPECT_EQ(2u, static_cast<RWOrdered&>(*copy).entries());
}

TEST(HashDictionary, FindsByEqualityAmongKeysOfOneHash) {
    std::deque<Counted> keys, values;
    RWHashDictionary dictionary;
    for (unsigned i = 0; i < 100; ++i) {
        keys.emplace_back(i);
        values.emplace_back(i);
        EXPECT_EQ(&keys[i], dictionary.insertKeyAndValue(&keys[i], &values[i]));
    }
    Counted known(42);
    const Counted unknown(100);
    EXPECT_EQ(nullptr, dictionary.insertKeyAndValue(&known, &known));
    EXPECT_EQ(&values[42], dictionary.findValue(&known));
    EXPECT_EQ(nullptr, dictionary.findValue(&unknown));

    RWCollectable* value = &values[0];
    EXPECT_EQ(&keys[42], dictionary.removeKeyAndValue(&known, value));
    EXPECT_EQ(&values[42], value);
    EXPECT_EQ(nullptr, dictionary.removeKeyAndValue(&known, value));
    EXPECT_EQ(nullptr, value);
    EXPECT_EQ(99u, dictionary.entries());

    EXPECT_EQ(nullptr, dictionary.insertKeyAndValue(nullptr, &known));
    EXPECT_EQ(&known, dictionary.insertKeyAndValue(&known, nullptr)) << "a value may be null";
    EXPECT_EQ(nullptr, dictionary.findValue(nullptr));
    value = &known;
    EXPECT_EQ(nullptr, dictionary.removeKeyAndValue(nullptr, value));
    EXPECT_EQ(nullptr, value);
}

TEST(HashDictionary, DestroysKeysAndValuesOnlyWhenAsked) {
    RWHashDictionary dictionary;
    for (unsigned i = 0; i < 10; ++i) dictionary.insertKeyAndValue(new Counted(i), new Counted(i));
    {
        const std::unique_ptr<RWCollectable> copy(dictionary.copy());
        EXPECT_EQ(10u, static_cast<RWHashDictionary&>(*copy).entries());
    }
    EXPECT_EQ(20, Counted::living);
    dictionary.clearAndDestroy();
    EXPECT_EQ(0, Counted::living);
    EXPECT_EQ(dictionary.end(), dictionary.begin());
}
