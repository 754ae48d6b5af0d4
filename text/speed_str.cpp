#include "text/speed_str.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <string>

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
    if (!text) return;
    if (!overflow_ && count > Room()) ToOverflow();
    if (overflow_) {
        overflow_->append(std::wstring_view(text, count));
        return;
    }
    CopyPart(end_, text, count);
    end_ += count;
}

void CSpeedStr::prepend(ql::TextView text) {
    const std::wstring front(text);  // a copy: the text may be a piece of what moves
    if (!overflow_ && front.size() > Room()) ToOverflow();
    if (overflow_) {
        overflow_->prepend(front);
        return;
    }
    const std::size_t former = InlineLength();
    const std::size_t moved = std::min(front.size(), former);
    wchar_t* const end = end_ + front.size();
    std::wmemmove(buffer_ + front.size(), buffer_, moved);
    std::wmemcpy(buffer_, front.data(), front.size());
    std::fill(std::max(end_, buffer_ + front.size() + moved), end, L'\0');
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

void CSpeedStr::ToOverflow() {
    overflow_ = std::make_unique<RWWString>(buffer_, InlineLength());
}
