#include "tools/qlutil/progress.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "tools/qlutil/text_file.h"

namespace {

// One less than the narrowest usual window, so that a line never wraps.
constexpr std::size_t kWidth = 79;

// The cursor goes back to the start of the line, before what is shown and after it.
void Show(std::wstring line) {
    line.resize(kWidth, L' ');
    WriteToStream(Stream::kError, L'\r' + line + L'\r');
}

std::wstring Line(const std::wstring& doing, int seconds) {
    const std::wstring time = L" ... " + std::to_wstring(seconds) + L" s";
    return doing.substr(0, kWidth - std::min(time.size(), kWidth)) + time;
}

}  // namespace

Progress::Progress(std::wstring doing) : doing_(std::move(doing)) {
    if (IsTerminal(Stream::kError)) watcher_ = std::jthread([this] { Watch(); });
}

Progress::~Progress() {
    {
        const std::lock_guard lock(mutex_);
        hasEnded_ = true;
    }
    ended_.notify_all();
}

void Progress::Now(std::wstring doing) {
    const std::lock_guard lock(mutex_);
    doing_ = std::move(doing);
}

void Progress::Watch() {
    const auto start = std::chrono::steady_clock::now();
    std::unique_lock lock(mutex_);
    for (int seconds = 1;; ++seconds) {
        if (ended_.wait_until(lock, start + std::chrono::seconds(seconds), [this] { return hasEnded_; }))
            return seconds > 1 ? Show({}) : void();
        Show(Line(doing_, seconds));
    }
}
