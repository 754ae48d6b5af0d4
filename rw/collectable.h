#pragma once

#include <cstddef>

#include "platform/export.h"
#include "rw/narrow_string.h"
#include "rw/wide_string.h"

class RWFile;
class RWvistream;
class RWvostream;

// Numbers of the collectable classes, as isA answers them; classes of other rooms have kRWCollectableOther.
enum RWClassId : unsigned {
    kRWCollectable = 0,
    kRWCollectableString = 1,
    kRWCollectableWString = 2,
    kRWOrdered = 3,
    kRWHashDictionary = 4,
    kRWCollectableOther = 5,
};

// Base of what the collections hold. The base itself has no content: it is equal to itself only, hashes and
// orders by address, and persists as nothing. Collectables are as thread-safe as the standard containers.
class QL_API RWCollectable {
  public:
    RWCollectable() noexcept = default;  // nothing to begin with

    // There is no content to copy.
    RWCollectable(const RWCollectable&) noexcept = default;
    RWCollectable& operator=(const RWCollectable&) noexcept = default;

    // A new object, owned by the caller: empty, of the same class; a copy. Null when memory ends.
    virtual RWCollectable* newSpecies() const;
    virtual RWCollectable* copy() const;
    virtual RWClassId isA() const;
    virtual ~RWCollectable();

    virtual std::size_t binaryStoreSize() const;  // bytes that saveGuts writes

    // The order is negative, zero or positive. Null and objects of unrelated classes are never equal, and
    // stand in the order of their addresses. Texts that are equal hash alike; collections
    // that are equal neither do nor compare as 0.
    virtual int compareTo(const RWCollectable* other) const;
    virtual unsigned hash() const;
    virtual bool isEqual(const RWCollectable* other) const;

    // Persistence of the content alone. The forms on RWFile do what the forms on the streams do. A read that
    // fails, be it for lack of memory, leaves the stream not good and the object with the content that it
    // had, or empty.
    virtual void restoreGuts(RWvistream& stream);
    virtual void restoreGuts(RWFile& file);
    virtual void saveGuts(RWvostream& stream) const;
    virtual void saveGuts(RWFile& file) const;
};

// A narrow string as a collectable. Compares, orders and hashes by its bytes.
// Persists as a 32-bit length and the bytes.
class QL_API RWCollectableString : public RWCollectable, public RWCString {
  public:
    // Empty, or with a text.
    RWCollectableString() noexcept = default;
    explicit RWCollectableString(RWCString text) noexcept : RWCString(std::move(text)) {}

    RWCollectable* newSpecies() const override;
    RWCollectable* copy() const override;
    RWClassId isA() const override { return kRWCollectableString; }
    std::size_t binaryStoreSize() const override;

    // By the bytes.
    int compareTo(const RWCollectable* other) const override;
    unsigned hash() const override;
    bool isEqual(const RWCollectable* other) const override;

    using RWCollectable::restoreGuts;
    using RWCollectable::saveGuts;
    void restoreGuts(RWvistream& stream) override;
    void saveGuts(RWvostream& stream) const override;
};

// A wide string as a collectable. Compares, orders and hashes by its code units. Has no persistent form of
// its own: tables of texts persist as narrow strings.
class QL_API RWCollectableWString : public RWCollectable, public RWWString {
  public:
    // Empty, or with a text.
    RWCollectableWString() noexcept = default;
    explicit RWCollectableWString(RWWString text) noexcept : RWWString(std::move(text)) {}

    RWCollectable* newSpecies() const override;
    RWCollectable* copy() const override;
    RWClassId isA() const override { return kRWCollectableWString; }

    // By the code units.
    int compareTo(const RWCollectable* other) const override;
    unsigned hash() const override;
    bool isEqual(const RWCollectable* other) const override;
};
