#pragma once

#include <cstddef>
#include <vector>

#include "platform/export.h"
#include "rw/collectable.h"

// An ordered collection of collectables, addressed by zero-based index. Holds pointers and does not own what
// they point to, except through clearAndDestroy. Null items are refused.
class QL_API RWOrdered : public RWCollectable {
  public:
    explicit RWOrdered(std::size_t capacity = 64) { items_.reserve(capacity); }  // a hint, not a limit

    std::size_t entries() const noexcept { return items_.size(); }
    RWCollectable* operator[](std::size_t index) const noexcept { return items_[index]; }  // unchecked

    // Each answers the item, or null when it is refused; insertAt also refuses an index past the end.
    RWCollectable* append(RWCollectable* item) { return insertAt(items_.size(), item); }
    RWCollectable* prepend(RWCollectable* item) { return insertAt(0, item); }
    RWCollectable* insertAt(std::size_t index, RWCollectable* item);

    RWCollectable* removeAt(std::size_t index);  // the item, now the caller's; null past the end
    void clear() noexcept { items_.clear(); }
    void clearAndDestroy();  // deletes every item

    // As many entries and pairwise isEqual.
    bool operator==(const RWOrdered& other) const;

    // Persistent form, all little-endian: a 32-bit count, then each item's own form. Only collections of
    // RWCollectableString can be restored: the items become new RWCollectableString objects at the end of the
    // collection, owned by the caller. Of a form that ends too early the whole items are kept.
    using RWCollectable::restoreGuts;
    using RWCollectable::saveGuts;
    RWCollectable* newSpecies() const override;
    RWCollectable* copy() const override;  // the same items, not copies of them
    RWClassId isA() const override { return kRWOrdered; }
    std::size_t binaryStoreSize() const override;
    bool isEqual(const RWCollectable* other) const override;
    void restoreGuts(RWvistream& stream) override;
    void saveGuts(RWvostream& stream) const override;

  private:
    friend class RWOrderedIterator;
    std::vector<RWCollectable*> items_;
};

// Walks a collection from first to last; a change of the collection ends the walk's validity.
class QL_API RWOrderedIterator {
  public:
    explicit RWOrderedIterator(const RWOrdered& collection) noexcept : collection_(collection) {}

    RWCollectable* operator()() noexcept;  // the next item, null after the last
    void reset() noexcept { next_ = 0; }

  private:
    const RWOrdered& collection_;
    std::size_t next_ = 0;
};
