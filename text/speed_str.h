#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "platform/export.h"
#include "rw/wide_string.h"

// Builds a text from parts. Up to 512 units stay in the object itself, without any allocation; a longer text
// moves to the heap, and stays there until Clear. Units are counted and may be zero.
//
// Parts may be pieces of the builder's own text. Null pointers are empty texts. Views and pointers into the
// text end with the next change. One builder is used by one thread at a time. A part that memory has no room
// for changes nothing; ToString is then empty.
class QL_API CSpeedStr {
  public:
    CSpeedStr() noexcept : end_(buffer_) {}
    virtual ~CSpeedStr() = default;
    CSpeedStr(const CSpeedStr&) = delete;
    CSpeedStr& operator=(const CSpeedStr&) = delete;

    // Puts a part at the end; `count` units, zeros among them too.
    void append(const wchar_t* text, unsigned int count);
    void append(ql::TextView text) { AppendUnits(text.data(), text.size()); }
    void append(const CSpeedStr& text) { AppendUnits(text.Begin(), text.length()); }
    void append(wchar_t unit) {
        if (!overflow_ && Room() > 0) {
            *end_++ = unit;
        } else {
            AppendUnits(&unit, 1);
        }
    }

    // As append.
    CSpeedStr& operator+=(ql::TextView text) { return append(text), *this; }
    CSpeedStr& operator+=(const CSpeedStr& text) { return append(text), *this; }
    CSpeedStr& operator+=(wchar_t unit) { return append(unit), *this; }

    // Kept on purpose: while the text is in the object, only as many units as are put in front are moved
    // back, so the result is what one expects only if the former text is no longer than `text`. The units of
    // a longer one that come after stay where they are, and zero units fill up the end:
    //   "abc" before "wxy" -> "abcwxy"      "ab" before "wxyz" -> "abwx" and two zero units
    // A text on the heap is always moved as a whole.
    void prepend(ql::TextView text);

    // In units; no such place is the zero unit.
    unsigned int length() const noexcept {
        return static_cast<unsigned int>(overflow_ ? overflow_->length() : InlineLength());
    }
    bool isNull() const noexcept { return length() == 0; }
    wchar_t operator[](unsigned int index) const noexcept {
        return index < length() ? Begin()[index] : L'\0';
    }
    const wchar_t* data() const noexcept;  // null-ended

    // Removes the last `count` units; all of them when there are fewer, which is Clear.
    void trimEnd(unsigned int count);
    void Clear() noexcept;  // empties the text and gives its heap back
    RWWString ToString() const;

  private:
    static constexpr std::size_t kCapacity = 512;

    std::size_t InlineLength() const noexcept { return static_cast<std::size_t>(end_ - buffer_); }
    std::size_t Room() const noexcept { return kCapacity - InlineLength(); }
    const wchar_t* Begin() const noexcept { return overflow_ ? overflow_->data() : buffer_; }
    void AppendUnits(const wchar_t* units, std::size_t count) noexcept;
    bool MakesRoomFor(std::size_t count) noexcept;

    wchar_t* end_;
    std::unique_ptr<RWWString> overflow_;
    mutable wchar_t buffer_[kCapacity + 1];  // data() ends it
};
