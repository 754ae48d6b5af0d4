#include "engine/source_reader.h"

#include <utility>

namespace ql::zip {
namespace {

bool IsSmall(const DiskItem& item) {
    return !item.IsFolder() && item.size <= kMostSmall;
}

}  // namespace

SourceReader::SourceReader(std::vector<const DiskItem*> items, Patience& patience)
    : items_(std::move(items)), patience_(patience) {}

InputFile& SourceReader::Next() {
    file_.reset();
    ReadAhead();
    const DiskItem& item = *items_[next_++];
    if (item.IsFolder()) return memory_.emplace(nullptr, 0);
    if (!IsSmall(item) || !TakeContents()) return file_.emplace(item.path, kOpenSource, patience_);
    return memory_.emplace(contents_->bytes.data(), contents_->size);
}

void SourceReader::ReadAhead() {
    for (; ahead_ < items_.size() && !files_.IsFull(); ++ahead_) {
        if (!IsSmall(*items_[ahead_])) continue;
        std::unique_ptr<Contents> contents = files_.Take();
        contents->item = items_[ahead_];
        files_.Push(std::move(contents));
    }
}

// Null where the file has to be waited for, or has grown, or there is a reason to tell.
const SourceReader::Contents* SourceReader::TakeContents() {
    if (contents_) files_.GiveBack(std::move(contents_));
    contents_ = files_.Next();
    return contents_->isWhole ? contents_.get() : nullptr;
}

void SourceReader::Contents::Do(Tool&) noexcept {
    isWhole = ResultOf([this] {
                  Patience none(0);
                  WindowsInput file(item->path, kOpenSource, none);
                  bytes.resize(kMostSmall + 1);
                  size = file.ReadAt(0, bytes.data(), bytes.size());
                  Require(size <= kMostSmall, Result::kReadFailed);
              }) == Result::kOk;
}

}  // namespace ql::zip
