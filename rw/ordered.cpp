#include "rw/ordered.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "rw/virtual_streams.h"

RWCollectable* RWOrdered::insertAt(std::size_t index, RWCollectable* item) {
    if (!item || index > items_.size()) return nullptr;
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), item);
    return item;
}

RWCollectable* RWOrdered::removeAt(std::size_t index) {
    if (index >= items_.size()) return nullptr;
    RWCollectable* item = items_[index];
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(index));
    return item;
}

void RWOrdered::clearAndDestroy() {
    for (RWCollectable* item : items_) delete item;
    items_.clear();
}

bool RWOrdered::operator==(const RWOrdered& other) const {
    return std::equal(items_.begin(), items_.end(), other.items_.begin(), other.items_.end(),
                      [](const RWCollectable* a, const RWCollectable* b) { return a->isEqual(b); });
}

RWCollectable* RWOrdered::newSpecies() const {
    return new RWOrdered;
}

RWCollectable* RWOrdered::copy() const {
    return new RWOrdered(*this);
}

std::size_t RWOrdered::binaryStoreSize() const {
    std::size_t size = sizeof(std::uint32_t);
    for (const RWCollectable* item : items_) size += item->binaryStoreSize();
    return size;
}

bool RWOrdered::isEqual(const RWCollectable* other) const {
    const auto* ordered = dynamic_cast<const RWOrdered*>(other);
    return ordered && *this == *ordered;
}

void RWOrdered::restoreGuts(RWvistream& stream) {
    std::uint32_t count = 0;
    stream >> count;
    if (!stream.good()) return;
    for (; count > 0; --count) {
        auto item = std::make_unique<RWCollectableString>();
        item->restoreGuts(stream);
        if (!stream.good()) return;
        append(item.get());
        static_cast<void>(item.release());
    }
}

void RWOrdered::saveGuts(RWvostream& stream) const {
    stream << static_cast<std::uint32_t>(items_.size());
    for (const RWCollectable* item : items_) item->saveGuts(stream);
}

RWCollectable* RWOrderedIterator::operator()() noexcept {
    return next_ < collection_.items_.size() ? collection_.items_[next_++] : nullptr;
}
