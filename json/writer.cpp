#include <algorithm>
#include <atomic>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <limits>
#include <memory_resource>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "json/arena.h"
#include "json/json.h"
#include "json/units.h"
#include "platform/failure.h"
#include "platform/message_box.h"

namespace JSON {

namespace {

// Gathers small pieces in a block, so that the text itself grows by few and large steps.
class Output {
  public:
    void Reserve(std::size_t count) { text_.reserve(count); }

    void Put(wchar_t unit) { *Claim(1) = unit; }
    void Put(std::string_view ascii) { std::copy(ascii.begin(), ascii.end(), Claim(ascii.size())); }

    // Room for at most kMost units: what is written there is taken up to the end that is told.
    static constexpr std::size_t kMost = 2048;
    wchar_t* Room(std::size_t count) {
        if (static_cast<std::size_t>(std::end(block_) - next_) < count) Flush();
        return next_;
    }
    void TakeUpTo(wchar_t* end) { next_ = end; }

    void Repeat(std::size_t count, wchar_t unit) {
        Flush();
        text_.append(count, unit);
    }

    std::wstring Take() {
        Flush();
        return std::move(text_);
    }

  private:
    wchar_t* Claim(std::size_t count) {
        wchar_t* const room = Room(count);
        TakeUpTo(room + count);
        return room;
    }

    void Flush() { text_.append(block_, std::exchange(next_, block_)); }

    std::wstring text_;
    wchar_t block_[kMost];
    wchar_t* next_ = block_;
};

constexpr char kHexDigits[] = "0123456789abcdef";

// A single unit is looked up, which takes less than the comparisons that a block of them is worth.
constexpr AsciiTable kIsEscaped = [] {
    AsciiTable table = kLetterOfUnit;
    std::fill_n(table.begin(), ' ', Unit{1});
    return table;
}();

constexpr std::size_t kLongestEscape = std::string_view("\\u0000").size();

// The end of what was written.
wchar_t* WriteEscaped(wchar_t unit, wchar_t* out) {
    *out++ = L'\\';
    if (const wchar_t letter = LookUp(kLetterOfUnit, unit)) {
        *out++ = letter;
        return out;
    }
    *out++ = L'u';
    for (int shift = 12; shift >= 0; shift -= 4)
        *out++ = static_cast<wchar_t>(kHexDigits[unit >> shift & 0xF]);
    return out;
}

template <class Unit>
constexpr std::basic_string_view<Unit> View(const Unit* begin, const Unit* end) {
    return {begin, static_cast<std::size_t>(end - begin)};
}

constexpr bool IsSmallWhole(double number) {
    using Limits = std::numeric_limits<int>;
    return number >= Limits::min() && number <= Limits::max() && number == static_cast<int>(number);
}

[[noreturn]] void HaltProgram(const wchar_t* text) {
    ql::ShowErrorBox(L"Program halted", text);
    std::abort();
}

std::atomic<AssertionHandler> g_assertionHandler = &HaltProgram;

void FailAssertion(const wchar_t* module, int line) {
    wchar_t text[256];
    std::swprintf(text, std::size(text), L"%ls, line %d:\nAssertion failure", module, line);
    g_assertionHandler.load()(text);
}

}  // namespace

// Writes one tree, on a stack of its own: depth costs memory only.
class Writer {
  public:
    Writer(bool asciiOnly, bool pretty) noexcept
        : lastPlain_(asciiOnly ? 126 : std::numeric_limits<Unit>::max()), pretty_(pretty) {}

    std::wstring Write(const Value& root) {
        // The text is seldom longer than the tree, and to grow it is to copy it.
        if (root.arena_) output_.Reserve(root.arena_->SizeOfTree(root) / sizeof(wchar_t));
        for (const Value* node = &root; node; node = Advance()) Begin(*node);
        return output_.Take();
    }

  private:
    struct Frame {
        const Value* container;
        std::size_t next;
    };

    void Begin(const Value& node);
    void Open(const Value& container, wchar_t bracket);
    const Value* Advance();
    void Key(std::wstring_view key);
    void Close();
    void BreakLine();
    void Number(double number);
    void Quoted(std::wstring_view text);
    wchar_t* WriteQuoted(std::wstring_view text, wchar_t* out) const;

    Output output_;
    Frame usual_[16];  // as deep as usual documents are, room without the heap
    std::pmr::monotonic_buffer_resource memory_{usual_, sizeof(usual_)};
    std::pmr::vector<Frame> frames_{&memory_};  // the containers that are open, outermost first
    std::vector<std::vector<Value*>> ordered_;  // the members of those that do not keep them in order
    const Unit lastPlain_;
    const bool pretty_;
};

// Writes a leaf, or what comes before the children of a container.
void Writer::Begin(const Value& node) {
    switch (node.kind_) {
        case JSON::String: Quoted(node.text()); return;
        case JSON::Number: Number(node.number_); return;
        case JSON::Object: Open(node, L'{'); return;
        case JSON::Array: Open(node, L'['); return;
        case JSON::Bool: output_.Put(node.flag_ ? "true" : "false"); return;
        case JSON::Null: break;
        default: FailAssertion(L"JSON", 329); break;
    }
    output_.Put("null");
}

void Writer::Open(const Value& container, wchar_t bracket) {
    output_.Put(bracket);
    frames_.push_back({&container, 0});
    if (!container.isInRuns_) return;
    auto& members = ordered_.emplace_back(container.children_.nodes,
                                          container.children_.nodes + container.children_.count);
    std::sort(members.begin(), members.end(), Value::Less{});
}

// Closes what is complete; the next child to write, or null at the end.
const Value* Writer::Advance() {
    while (!frames_.empty()) {
        Frame& frame = frames_.back();
        const Value& container = *frame.container;
        if (frame.next < container.children_.count) {
            if (frame.next > 0) output_.Put(L',');
            if (pretty_) BreakLine();
            Value* const* const nodes =
                container.isInRuns_ ? ordered_.back().data() : container.children_.nodes;
            const Value* const child = nodes[frame.next++];
            if (container.kind_ == JSON::Object) Key(child->key());
            return child;
        }
        Close();
    }
    return nullptr;
}

void Writer::Key(std::wstring_view key) {
    Quoted(key);
    output_.Put(L':');
    if (pretty_) output_.Put(L' ');
}

void Writer::Close() {
    const Value& container = *frames_.back().container;
    const wchar_t bracket = container.kind_ == JSON::Object ? L'}' : L']';
    if (container.isInRuns_) ordered_.pop_back();
    frames_.pop_back();
    if (pretty_) BreakLine();
    output_.Put(bracket);
}

void Writer::BreakLine() {
    output_.Put("\r\n");
    output_.Repeat(frames_.size(), L'\t');
}

// Five decimals at most, without zeros at the end; -0 is 0.
void Writer::Number(double number) {
    if (!std::isfinite(number)) return output_.Put("null");
    char digits[std::numeric_limits<double>::max_exponent10 + 16];
    if (IsSmallWhole(number)) {
        return output_.Put(
            View(digits, std::to_chars(digits, std::end(digits), static_cast<int>(number)).ptr));
    }
    std::string_view text =
        View(digits, std::to_chars(digits, std::end(digits), number, std::chars_format::fixed, 5).ptr);
    text = text.substr(0, text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.remove_suffix(1);
    output_.Put(text == "-0" ? "0" : text);
}

// Piece by piece, so that each has room however much of it is escaped.
void Writer::Quoted(std::wstring_view text) {
    constexpr std::size_t kPiece = Output::kMost / kLongestEscape;
    output_.Put(L'"');
    for (; !text.empty(); text.remove_prefix(std::min(kPiece, text.size()))) {
        const std::wstring_view piece = text.substr(0, kPiece);
        output_.TakeUpTo(WriteQuoted(piece, output_.Room(piece.size() * kLongestEscape)));
    }
    output_.Put(L'"');
}

// The end of what was written.
wchar_t* Writer::WriteQuoted(std::wstring_view text, wchar_t* out) const {
    const auto isSpecial = [lastPlain = lastPlain_]<class Units>(Units units) {
        if constexpr (std::is_same_v<Units, Unit>) {
            return units > lastPlain || LookUp(kIsEscaped, static_cast<wchar_t>(units)) != 0;
        } else {
            return (units < Unit{' '}) | (units == Unit{'"'}) | (units == Unit{'\\'}) | (units == Unit{'/'}) |
                   (units > lastPlain);
        }
    };
    const wchar_t* next = text.data();
    const wchar_t* const end = next + text.size();
    for (;;) {
        next = CopyToSpecial(next, end, out, isSpecial);
        if (next == end) return out;
        out = WriteEscaped(*next++, out);
    }
}

AssertionHandler SetAssertionHandler(AssertionHandler handler) noexcept {
    return g_assertionHandler.exchange(handler ? handler : &HaltProgram);
}

RWWString Serialize(const Value* node, bool asciiOnly, bool pretty) noexcept {
    return ql::FailureIfThrown(
        {}, [=] { return node ? RWWString(Writer(asciiOnly, pretty).Write(*node)) : RWWString(); });
}

}  // namespace JSON
