#include "rw/ordered.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>

#include "platform/failure.h"
#include "rw/virtual_streams.h"

RWOrdered::RWOrdered(std::size_t capacity) noexcept {
    ql::Completes([&] { places_.reserve(capacity); });
}

RWCollectable* RWOrdered::insertAt(std::size_t index, RWCollectable* item) {
    if (!item || index > entries()) return nullptr;
    return ql::FailureIfThrown(nullptr, [&] {
        if (index > 0 || places_.empty()) {
            places_.insert(begin() + static_cast<std::ptrdiff_t>(index), item);
            return item;
        }
        if (first_ == 0) {
            const std::size_t room = entries();
            places_.insert(places_.begin(), room, nullptr);
            first_ = room;
        }
        return places_[--first_] = item;
    });
}

RWCollectable* RWOrdered::removeAt(std::size_t index) {
    if (index >= entries()) return nullptr;
    RWCollectable* item = (*this)[index];
    if (index > 0) {
        places_.erase(begin() + static_cast<std::ptrdiff_t>(index));
    } else if (++first_ > entries()) {
        places_.erase(places_.begin(), begin());
        first_ = 0;
    }
    return item;
}

void RWOrdered::clearAndDestroy() {
    for (RWCollectable* item : *this) delete item;
    clear();
}

void RWOrdered::clear() noexcept {
    places_.clear();
    first_ = 0;
}

void RWOrdered::swap(RWOrdered& other) noexcept {
    places_.swap(other.places_);
    std::swap(first_, other.first_);
}

bool RWOrdered::operator==(const RWOrdered& other) const {
    return std::equal(begin(), end(), other.begin(), other.end(),
                      [](const RWCollectable* a, const RWCollectable* b) { return a->isEqual(b); });
}

RWCollectable* RWOrdered::newSpecies() const {
    return ql::FailureIfThrown(nullptr, [] { return new RWOrdered; });
}

RWCollectable* RWOrdered::copy() const {
    return ql::FailureIfThrown(nullptr, [this] { return new RWOrdered(*this); });
}

std::size_t RWOrdered::binaryStoreSize() const {
    std::size_t size = sizeof(std::uint32_t);
    for (const RWCollectable* item : *this) size += item->binaryStoreSize();
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
        std::unique_ptr<RWCollectable> item(RWCollectableString().newSpecies());
        if (!item) return stream.fail();
        item->restoreGuts(stream);
        if (!stream.good()) return;
        if (!append(item.get())) return stream.fail();
        static_cast<void>(item.release());
    }
}

void RWOrdered::saveGuts(RWvostream& stream) const {
    stream << static_cast<std::uint32_t>(entries());
    for (const RWCollectable* item : *this) item->saveGuts(stream);
}

RWCollectable* RWOrderedIterator::operator()() noexcept {
    return next_ < collection_.entries() ? collection_[next_++] : nullptr;
}
