#include "engine/call_progress.h"

#include <algorithm>

#include "engine/result.h"

namespace ql::zip {
namespace {

void Tell(StatusCall call, const std::string& item, std::uint64_t done, std::uint64_t total) {
    if (!call.proc) return;
    const std::uint64_t percent = total == 0 ? 100 : std::min<std::uint64_t>(done, total) * 100 / total;
    Require(call.proc(item.c_str(), static_cast<int>(percent), call.userData) == 0, Result::kCancelled);
}

}  // namespace

void CallProgress::Begin(const std::string& ansiName, std::uint64_t size) {
    before_ += size_;
    size_ = size;
    item_ = ansiName;
}

void CallProgress::Reach(std::uint64_t done) {
    Tell(minor_, item_, done, size_);
    Tell(major_, item_, before_ + done, total_);
}

}  // namespace ql::zip
