#pragma once

#include <cstddef>
#include <utility>
#include <vector>

#include "platform/export.h"
#include "rw/collectable.h"

// An ordered collection of collectables, addressed by zero-based index; quick to change at both ends. Holds
// pointers and does not own what they point to, except through clearAndDestroy. Null items are refused.
class QL_API RWOrdered : public RWCollectable {
  public:
    explicit RWOrdered(std::size_t capacity = 0) noexcept;  // a hint, not a limit

    // A copy has the same items, and throws std::bad_alloc when memory ends. What is moved from is empty.
    RWOrdered(const RWOrdered&) = default;
    RWOrdered& operator=(const RWOrdered&) = default;
    RWOrdered(RWOrdered&& other) noexcept { swap(other); }
    RWOrdered& operator=(RWOrdered&& other) noexcept {
        RWOrdered taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~RWOrdered() override = default;

    std::size_t entries() const noexcept { return places_.size() - first_; }  // how many
    RWCollectable* operator[](std::size_t index) const noexcept {
        return places_[first_ + index];
    }  // unchecked

    // Each answers the item, or null when it is refused, as it is when memory ends; insertAt also refuses an
    // index past the end.
    RWCollectable* append(RWCollectable* item) { return insertAt(entries(), item); }
    RWCollectable* prepend(RWCollectable* item) { return insertAt(0, item); }
    RWCollectable* insertAt(std::size_t index, RWCollectable* item);

    RWCollectable* removeAt(std::size_t index);  // the item, now the caller's; null past the end
    void clear() noexcept;                       // lets go of the items
    void clearAndDestroy();                      // deletes every item
    void swap(RWOrdered& other) noexcept;        // the items of both

    // As many entries and pairwise isEqual.
    bool operator==(const RWOrdered& other) const;

    // Persistent form, all little-endian: a 32-bit count, then each item's own form. Only collections of
    // RWCollectableString can be restored: the items become new RWCollectableString objects at the end of the
    // collection, owned by the caller. Of a form that ends too early, or that is more than memory holds, the
    // whole items are kept.
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
    auto begin() const noexcept { return places_.begin() + static_cast<std::ptrdiff_t>(first_); }
    auto end() const noexcept { return places_.end(); }

    // The places before the first item are free: as many are made at once as there are items, so that the
    // front grows as quickly as the end.
    std::vector<RWCollectable*> places_;
    std::size_t first_ = 0;
};

// Walks a collection from first to last; a change of the collection ends the walk's validity.
class QL_API RWOrderedIterator {
  public:
    // Stands before the first item of a collection, which outlives it.
    explicit RWOrderedIterator(const RWOrdered& collection) noexcept : collection_(collection) {}

    RWCollectable* operator()() noexcept;  // the next item, null after the last

  private:
    const RWOrdered& collection_;
    std::size_t next_ = 0;
};
