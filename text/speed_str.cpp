#include "text/speed_str.h"

#include <algorithm>
#include <cstring>
#include <cwchar>

#include "platform/failure.h"

namespace {

// Most parts are short, and a call of the run-time library would cost more than their copy: blocks are moved
// in place, the last one over the one before it.
void CopyPart(wchar_t* to, const wchar_t* from, std::size_t count) noexcept {
    constexpr std::size_t kBlock = 8;
    constexpr std::size_t kLong = 64;
    if (count > kLong) {
        std::wmemcpy(to, from, count);
    } else if (count >= kBlock) {
        const std::size_t last = count - kBlock;
        for (std::size_t i = 0; i < last; i += kBlock)
            std::memcpy(to + i, from + i, kBlock * sizeof(wchar_t));
        std::memcpy(to + last, from + last, kBlock * sizeof(wchar_t));
    } else {
        for (std::size_t i = 0; i < count; ++i) to[i] = from[i];
    }
}

}  // namespace

void CSpeedStr::append(const wchar_t* text, unsigned int count) {
    if (text) AppendUnits(text, count);
}

void CSpeedStr::AppendUnits(const wchar_t* units, std::size_t count) noexcept {
    if (!overflow_ && count <= Room()) {
        CopyPart(end_, units, count);
        end_ += count;
    } else if (MakesRoomFor(count)) {
        ql::Completes([&] { overflow_->append(std::wstring_view(units, count)); });
    }
}

void CSpeedStr::prepend(ql::TextView text) {
    const std::size_t count = text.size();
    if (count == 0) return;
    if (overflow_ || count > Room()) {
        if (MakesRoomFor(count)) ql::Completes([&] { overflow_->prepend(text); });
        return;
    }
    wchar_t front[kCapacity];  // a copy: the text may be a piece of what moves
    std::wmemcpy(front, text.data(), count);
    const std::size_t former = InlineLength();
    const std::size_t moved = std::min(count, former);
    wchar_t* const end = end_ + count;
    std::wmemmove(buffer_ + count, buffer_, moved);
    std::wmemcpy(buffer_, front, count);
    std::fill(std::max(end_, buffer_ + count + moved), end, L'\0');
    end_ = end;
}

const wchar_t* CSpeedStr::data() const noexcept {
    if (overflow_) return overflow_->data();
    *end_ = L'\0';
    return buffer_;
}

void CSpeedStr::trimEnd(unsigned int count) {
    if (count >= length()) {
        Clear();
    } else if (overflow_) {
        overflow_->resize(length() - count);
    } else {
        end_ -= count;
    }
}

void CSpeedStr::Clear() noexcept {
    end_ = buffer_;
    overflow_.reset();
}

RWWString CSpeedStr::ToString() const {
    return ql::FailureIfThrown({}, [this] { return RWWString(Begin(), length()); });
}

// Whether the text is on the heap, with room for that many more units if they are units that there can be.
bool CSpeedStr::MakesRoomFor(std::size_t count) noexcept {
    constexpr std::size_t kMost = 0x7FFFFFFF / sizeof(wchar_t);
    if (count > kMost - length()) return false;
    if (!overflow_) ql::Completes([&] { overflow_ = std::make_unique<RWWString>(buffer_, InlineLength()); });
    return overflow_ != nullptr;
}
