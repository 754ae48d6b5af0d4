#include "engine/packer.h"

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

namespace ql::zip {
namespace {

// Beyond these, memory grows and the disk does not keep up.
constexpr std::size_t kMostThreads = 8;
// A few blocks ahead for each thread, and one for the thread that reads.
constexpr std::size_t kBlocksAThread = 2;

std::size_t Threads() {
    return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostThreads);
}

void Pack(Block& block, std::optional<Deflater>& deflater) noexcept {
    block.crc = static_cast<std::uint32_t>(crc32(0, block.Data(), static_cast<uInt>(block.size)));
    if (block.level == 0) return;
    try {
        if (!deflater || deflater->Level() != block.level) deflater.emplace(block.level);
    } catch (const std::bad_alloc&) {
        block.isOutOfMemory = true;
        return;
    }
    const PlainBlock plain{block.Data() - block.windowSize, block.windowSize, block.Data(), block.size,
                           block.isLast};
    block.packedSize = deflater->Pack(plain, block.packed.data());
}

}  // namespace

Packer::Packer() : most_(kBlocksAThread * Threads() + 1) {}

Packer::~Packer() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    pushed_.notify_all();
}

std::unique_ptr<Block> Packer::Take() {
    if (free_.empty()) return std::make_unique<Block>();
    std::unique_ptr<Block> block = std::move(free_.back());
    free_.pop_back();
    block->state = Block::kWaiting;
    block->isOutOfMemory = false;
    return block;
}

void Packer::Push(std::unique_ptr<Block> block) {
    {
        const std::lock_guard lock(mutex_);
        queue_.push_back(std::move(block));
    }
    // A single block is packed by who waits for it.
    if (queue_.size() > 1) {
        StartWorkers();
        pushed_.notify_one();
    }
}

void Packer::StartWorkers() {
    if (!workers_.empty() || Threads() == 1) return;
    try {
        while (workers_.size() + 1 < Threads()) workers_.emplace_back([this] { Work(); });
    } catch (const std::system_error&) {  // Those that there are have to do.
    }
}

Block* Packer::FindWaiting() {
    const auto found = std::find_if(queue_.begin(), queue_.end(),
                                    [](const auto& block) { return block->state == Block::kWaiting; });
    return found == queue_.end() ? nullptr : found->get();
}

void Packer::Work() {
    std::optional<Deflater> deflater;
    std::unique_lock lock(mutex_);
    for (;;) {
        Block* block = nullptr;
        pushed_.wait(lock, [&] { return isEnding_ || (block = FindWaiting()); });
        if (isEnding_) return;
        block->state = Block::kInWork;
        lock.unlock();
        Pack(*block, deflater);
        lock.lock();
        block->state = Block::kDone;
        done_.notify_one();
    }
}

std::unique_ptr<Block> Packer::Next() {
    std::unique_lock lock(mutex_);
    Block& oldest = *queue_.front();
    const auto isDone = [&oldest] { return oldest.state == Block::kDone; };
    while (!isDone()) {
        // Rather than wait for the oldest, pack what nobody has begun.
        Block* const own = FindWaiting();
        if (!own) {
            done_.wait(lock, isDone);
            break;
        }
        own->state = Block::kInWork;
        lock.unlock();
        Pack(*own, own_);
        lock.lock();
        own->state = Block::kDone;
    }
    std::unique_ptr<Block> block = std::move(queue_.front());
    queue_.pop_front();
    if (block->isOutOfMemory) throw std::bad_alloc();
    return block;
}

void Packer::Clear() {
    while (!IsEmpty()) {
        std::unique_lock lock(mutex_);
        Block& oldest = *queue_.front();
        if (oldest.state == Block::kInWork) done_.wait(lock, [&] { return oldest.state == Block::kDone; });
        free_.push_back(std::move(queue_.front()));
        queue_.pop_front();
    }
}

}  // namespace ql::zip
