#include "text/speed_str.h"

#include <algorithm>
#include <string>

void CSpeedStr::prepend(const wchar_t* text) {
    const std::wstring front(text ? text : L"");  // a copy: the text may be a piece of what moves
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
    if (count >= length())
        Clear();
    else if (overflow_)
        overflow_->resize(length() - count);
    else
        end_ -= count;
}

void CSpeedStr::Clear() noexcept {
    end_ = buffer_;
    overflow_.reset();
}

void CSpeedStr::ToOverflow() {
    overflow_ = std::make_unique<RWWString>(buffer_, InlineLength());
}
