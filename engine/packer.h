#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "engine/deflater.h"
#include "engine/file_access.h"

namespace ql::zip {

// A part of a member on its way through the packer.
struct Block {
    static constexpr std::size_t kSize = 256u << 10;

    std::uint8_t* Data() { return bytes.data() + Deflater::kWindow; }

    // Filled by who reads.
    int level;  // 0 leaves the bytes as they are
    bool isFirst, isLast;
    std::size_t windowSize, size;
    Bytes bytes = Bytes(Deflater::kWindow + kSize);  // the window ends where the data begin

    // What comes out.
    Bytes packed = Bytes(Deflater::MostPacked(kSize));
    std::size_t packedSize;
    std::uint32_t crc;
    bool isOutOfMemory;

    enum State { kWaiting, kInWork, kDone } state = kWaiting;
};

// Packs blocks on all cores and gives them back in their order. Blocks have one size and know the window
// before them, so that the bytes that come out do not depend on how many cores there are. Belongs to one
// thread, which works along while it waits: where there is one core, no other thread is started. Holds a
// bounded number of blocks.
class Packer {
  public:
    Packer();
    ~Packer();
    Packer(const Packer&) = delete;
    Packer& operator=(const Packer&) = delete;

    // A block to fill, then to push.
    std::unique_ptr<Block> Take();
    void Push(std::unique_ptr<Block> block);

    bool IsEmpty() const { return queue_.empty(); }
    bool IsFull() const { return queue_.size() >= most_; }
    // The oldest block, packed. Throws std::bad_alloc where it could not be.
    std::unique_ptr<Block> Next();
    void GiveBack(std::unique_ptr<Block> block) { free_.push_back(std::move(block)); }
    // Forgets what was pushed.
    void Clear();

  private:
    void Work();
    Block* FindWaiting();
    void StartWorkers();

    std::size_t most_;
    std::mutex mutex_;
    // No stop tokens: in this compiler's standard library what waits upon an atomic can miss its wake-up for
    // good, and a token's end may wait so.
    bool isEnding_ = false;
    std::condition_variable pushed_, done_;
    std::deque<std::unique_ptr<Block>> queue_;  // changed by the owner alone, behind the lock
    std::vector<std::unique_ptr<Block>> free_;
    std::optional<Deflater> own_;
    std::vector<std::jthread> workers_;  // the last: they use the others until they have ended
};

}  // namespace ql::zip
