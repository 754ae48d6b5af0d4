#include "engine/kept_directories.h"

#include <algorithm>
#include <mutex>
#include <numeric>
#include <optional>
#include <vector>

namespace ql::zip {
namespace {

constexpr std::size_t kMostKept = 4;
// Bytes of directories; in memory they take about three times as much.
constexpr std::size_t kMostBytes = 16u << 20;
constexpr std::int64_t kTicksASecond = 10'000'000;
constexpr std::int64_t kSettled = 2 * kTicksASecond, kUnused = 10 * kTicksASecond;

struct Kept {
    std::wstring path;
    FileState state;
    std::int64_t read, used;
    std::shared_ptr<const Archive> archive;

    // Whether a change after the reading must show in the times.
    bool IsSettled() const { return read - state.changed >= kSettled && read - state.written >= kSettled; }
};

class KeptDirectories {
  public:
    // Nothing where the file is another than it was.
    std::optional<Kept> Find(const std::wstring& path, const FileState& state) {
        const std::int64_t now = TimeNow();
        const std::lock_guard lock(mutex_);
        std::erase_if(kept_, [&](const Kept& one) { return now - one.used > kUnused || one.used > now; });
        const auto found = std::find_if(kept_.begin(), kept_.end(), [&](const Kept& one) {
            return one.path == path && one.state == state;
        });
        if (found == kept_.end()) return std::nullopt;
        found->used = now;
        return *found;
    }

    void Keep(Kept fresh) {
        const std::lock_guard lock(mutex_);
        std::erase_if(kept_, [&](const Kept& one) { return one.path == fresh.path; });
        kept_.push_back(std::move(fresh));
        // The latest stays whatever its size, so that a walk over it reads it once.
        while (kept_.size() > 1 && (kept_.size() > kMostKept || Bytes() > kMostBytes))
            kept_.erase(std::ranges::min_element(kept_, {}, &Kept::used));
    }

    void Drop(const Archive* archive) {
        const std::lock_guard lock(mutex_);
        std::erase_if(kept_, [&](const Kept& one) { return one.archive.get() == archive; });
    }

  private:
    std::size_t Bytes() const {
        return std::accumulate(
            kept_.begin(), kept_.end(), std::size_t{0},
            [](std::size_t sum, const Kept& one) { return sum + one.archive->DirectorySize(); });
    }

    std::mutex mutex_;
    std::vector<Kept> kept_;
};

KeptDirectories& AllKept() {
    static KeptDirectories all;
    return all;
}

}  // namespace

std::shared_ptr<const Archive> DirectoryOf(WindowsInput& file, const std::wstring& path) {
    const FileState state = file.State();
    const std::int64_t now = TimeNow();
    const std::optional<Kept> kept = AllKept().Find(path, state);
    if (kept && kept->IsSettled()) return kept->archive;
    std::shared_ptr<const Archive> archive =
        kept && kept->archive->IsIn(file) ? kept->archive : std::make_shared<const Archive>(file);
    AllKept().Keep({path, state, now, now, archive});
    return archive;
}

void WalkEnded(const std::shared_ptr<const Archive>& archive) {
    if (archive->DirectorySize() > kMostBytes) AllKept().Drop(archive.get());
}

}  // namespace ql::zip
