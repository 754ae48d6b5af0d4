#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace ql::zip {

// Does pieces of work on all cores and gives them back in their order. A piece is worked on once, by some
// thread, with that thread's own `Tool`:  void Piece::Do(Tool&) noexcept. Belongs to one thread, which works
// along while it waits: where there is one core, no other thread is started. Holds a bounded number of
// pieces.
template <class Piece>
class OrderedWork {
  public:
    OrderedWork() = default;
    // What is in work is ended; what nobody has begun is not done.
    ~OrderedWork() {
        {
            const std::lock_guard lock(mutex_);
            isEnding_ = true;
        }
        pushed_.notify_all();
    }
    OrderedWork(const OrderedWork&) = delete;
    OrderedWork& operator=(const OrderedWork&) = delete;

    // A piece to fill, then to push: one that was given back, else a new one.
    std::unique_ptr<Piece> Take() {
        if (free_.empty()) return std::make_unique<Piece>();
        std::unique_ptr<Piece> piece = std::move(free_.back());
        free_.pop_back();
        return piece;
    }
    void GiveBack(std::unique_ptr<Piece> piece) { free_.push_back(std::move(piece)); }

    void Push(std::unique_ptr<Piece> piece) {
        {
            const std::lock_guard lock(mutex_);
            queue_.push_back({std::move(piece)});
            if (++waiting_ < kWorthWaking) return;
        }
        StartWorkers();
        pushed_.notify_one();
    }

    bool IsEmpty() const { return queue_.empty(); }
    bool IsFull() const { return queue_.size() > kPiecesAThread * threads_; }

    // Whether it holds for a piece that was pushed; looks only at what Do does not change.
    template <class Condition>
    bool Any(const Condition& holds) const {
        return std::any_of(queue_.begin(), queue_.end(),
                           [&](const Place& place) { return holds(std::as_const(*place.piece)); });
    }

    // The oldest piece, done.
    std::unique_ptr<Piece> Next() {
        std::unique_lock lock(mutex_);
        const Place& oldest = queue_.front();
        const auto isDone = [&oldest] { return oldest.state == kDone; };
        while (!isDone()) {
            // Rather than wait for the oldest, do what nobody has begun.
            Place* const own = FindWaiting();
            if (!own) {
                done_.wait(lock, isDone);
                break;
            }
            if (waiting_ > 1) pushed_.notify_one();
            Do(*own, tool_, lock);
        }
        std::unique_ptr<Piece> piece = std::move(queue_.front().piece);
        queue_.pop_front();
        return piece;
    }

    // Forgets what was pushed.
    void Clear() {
        while (!IsEmpty()) {
            std::unique_lock lock(mutex_);
            const Place& oldest = queue_.front();
            done_.wait(lock, [&oldest] { return oldest.state != kInWork; });
            if (oldest.state == kWaiting) --waiting_;
            GiveBack(std::move(queue_.front().piece));
            queue_.pop_front();
        }
    }

  private:
    // Beyond these, memory grows and the disk does not keep up.
    static constexpr std::size_t kMostThreads = 8;
    // A few ahead for each thread, and one for the thread that makes them.
    static constexpr std::size_t kPiecesAThread = 2;
    // To wake a thread can cost more than a small piece: it is woken for several, or while others are done.
    static constexpr std::size_t kWorthWaking = 3;

    enum State { kWaiting, kInWork, kDone };
    struct Place {
        std::unique_ptr<Piece> piece;
        State state = kWaiting;
    };

    void StartWorkers() {
        if (!workers_.empty()) return;
        try {
            while (workers_.size() + 1 < threads_) workers_.emplace_back([this] { Work(); });
        } catch (const std::system_error&) {  // Those that there are have to do.
        }
    }

    Place* FindWaiting() {
        const auto found = std::find_if(queue_.begin(), queue_.end(),
                                        [](const Place& place) { return place.state == kWaiting; });
        return found == queue_.end() ? nullptr : &*found;
    }

    void Do(Place& place, typename Piece::Tool& tool, std::unique_lock<std::mutex>& lock) {
        place.state = kInWork;
        --waiting_;
        lock.unlock();
        place.piece->Do(tool);
        lock.lock();
        place.state = kDone;
    }

    void Work() {
        typename Piece::Tool tool;
        std::unique_lock lock(mutex_);
        for (;;) {
            Place* place = nullptr;
            pushed_.wait(lock, [&] { return isEnding_ || (place = FindWaiting()); });
            if (isEnding_) return;
            Do(*place, tool, lock);
            done_.notify_one();
        }
    }

    const std::size_t threads_ =
        std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMostThreads);
    std::mutex mutex_;
    // No stop tokens: in this compiler's standard library what waits upon an atomic can miss its wake-up for
    // good, and a token's end may wait so.
    bool isEnding_ = false;
    std::condition_variable pushed_, done_;
    std::size_t waiting_ = 0;
    std::deque<Place> queue_;  // lengthened and shortened by the owner alone, behind the lock
    std::vector<std::unique_ptr<Piece>> free_;
    typename Piece::Tool tool_;
    std::vector<std::jthread> workers_;  // the last: they use the others until they have ended
};

}  // namespace ql::zip
