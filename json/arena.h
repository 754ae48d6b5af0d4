#pragma once

#include <algorithm>
#include <cstddef>
#include <new>
#include <utility>

namespace JSON {

class Value;

// Memory of one parsed or copied tree: handed out from the front of large chunks and given back all at once.
class Arena {
  public:
    Arena(const Value& root, std::size_t firstChunk) noexcept
        : root_(root), nextChunk_(std::clamp(firstChunk, kSmallest, kLargest)) {}
    Arena(const Arena&) = delete;
    Arena& operator=(const Arena&) = delete;
    ~Arena() {
        while (last_) ::operator delete(std::exchange(last_, last_->previous));
    }

    // Aligned for every type of a tree. Throws std::bad_alloc.
    void* Allocate(std::size_t bytes) {
        bytes = RoundUp(bytes);
        if (bytes > static_cast<std::size_t>(end_ - next_)) AddChunk(bytes);
        return std::exchange(next_, next_ + bytes);
    }

    template <class Item>
    Item* AllocateArray(std::size_t count) {
        // NOLINTNEXTLINE(bugprone-sizeof-expression): an array of pointers is meant
        return static_cast<Item*>(Allocate(count * sizeof(Item)));
    }

    // The bytes of the tree that this node is the root of; none for a node below it.
    std::size_t SizeOfTree(const Value& node) const noexcept {
        return &node == &root_ ? filled_ + static_cast<std::size_t>(next_ - begin_) : 0;
    }

    // The nodes made by hand that were put below nodes in here: the list is kept here, the nodes are not.
    struct Adopted {
        Value* node;
        Adopted* next;
    };
    const Adopted* adopted() const noexcept { return adopted_; }
    void Adopt(void* record, Value* node) noexcept { adopted_ = new (record) Adopted{node, adopted_}; }

  private:
    // Not alignas(double): inside a structure the compiler takes that for four bytes.
    static constexpr std::size_t kAlignment = std::max(alignof(double), alignof(void*));
    struct alignas(kAlignment) Chunk {
        Chunk* previous;
    };
    static_assert(sizeof(Chunk) == kAlignment);
    static constexpr std::size_t kSmallest = 0x200;
    static constexpr std::size_t kLargest = 0x10000;

    static constexpr std::size_t RoundUp(std::size_t bytes) noexcept {
        return (bytes + kAlignment - 1) & ~(kAlignment - 1);
    }

    [[gnu::noinline]] void AddChunk(std::size_t atLeast) {
        const std::size_t size = std::max(nextChunk_, atLeast + sizeof(Chunk));
        last_ = new (::operator new(size)) Chunk{last_};
        filled_ += static_cast<std::size_t>(next_ - begin_);
        begin_ = next_ = reinterpret_cast<std::byte*>(last_ + 1);
        end_ = reinterpret_cast<std::byte*>(last_) + size;
        nextChunk_ = std::min(2 * nextChunk_, kLargest);
    }

    const Value& root_;
    std::byte* begin_ = nullptr;
    std::byte* next_ = nullptr;
    std::byte* end_ = nullptr;
    Chunk* last_ = nullptr;
    Adopted* adopted_ = nullptr;
    std::size_t filled_ = 0;  // of the chunks before the last
    std::size_t nextChunk_;
};

}  // namespace JSON
