#include "json/json.h"

#include <algorithm>
#include <bit>
#include <new>
#include <span>
#include <utility>

#include "json/arena.h"
#include "json/units.h"
#include "platform/failure.h"

namespace JSON {

static_assert(sizeof(void*) != 4 || sizeof(Value) == 32, "a node of a large document must stay small");

namespace {

const wchar_t* CopyOf(std::wstring_view text) {
    if (text.empty()) return nullptr;
    auto* const copy = new wchar_t[text.size()];
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

const wchar_t* CopyOf(std::wstring_view text, Arena& arena) {
    auto* const copy = arena.AllocateArray<wchar_t>(text.size());
    std::copy(text.begin(), text.end(), copy);
    return copy;
}

}  // namespace

Value::Value(ValueKind kind, Arena* arena) noexcept
    : arena_(arena), key_{}, kind_(kind), children_{}, cursor_(0) {}

Value::Value(ValueKind kind) noexcept : Value(kind, nullptr) {
    if (kind == Number) number_ = 0;
    if (kind == Bool) flag_ = false;
    if (kind == String) text_ = {};
}

Value::Value(const RWWString& text) : Value(String) {
    text_ = {CopyOf(text), text.length()};
}

Value::Value(const wchar_t* text) : Value(String) {
    const std::wstring_view view = ql::TextOf(text);
    text_ = {CopyOf(view), view.size()};
}

Value::Value(double number) noexcept : Value(Number) {
    number_ = number;
}

Value::Value(bool flag) noexcept : Value(Bool) {
    flag_ = flag;
}

// Nodes to destroy are linked into a list, each one's children before the next: depth costs no stack.
Value::~Value() {
    Value* doomed = nullptr;
    ReleaseContent(doomed);
    while (doomed) {
        Value* const node = std::exchange(doomed, doomed->link_);
        node->ReleaseContent(doomed);
        delete node;
    }
}

// Gives back what the node holds, and puts the nodes made by hand among it on the list.
void Value::ReleaseContent(Value*& doomed) noexcept {
    const auto doom = [&](Value* node) { node->link_ = std::exchange(doomed, node); };
    delete[] key_.units;
    key_ = {};
    if (arena_) {
        for (const auto* child = arena_->adopted(); child; child = child->next) doom(child->node);
        delete std::exchange(arena_, nullptr);
    } else if (kind_ == String) {
        delete[] text_.units;
    } else if (kind_ == Object || kind_ == Array) {
        std::for_each_n(children_.nodes, children_.count, doom);
        delete[] children_.nodes;
    }
    kind_ = Null;
}

// The copy keeps all in one arena, as a parsed tree does. Containers that still hold the original's children
// are linked into a list: depth costs no stack.
std::unique_ptr<Value> Value::Clone() const noexcept {
    return ql::FailureIfThrown(nullptr, [this] {
        constexpr std::size_t kFirstChunk = 0x1000;
        auto root = std::make_unique<Value>(Null);
        root->arena_ = std::make_unique<Arena>(*root, kFirstChunk).release();
        Value* unfinished = nullptr;
        root->CopyContent(*this, unfinished);
        while (unfinished) {
            Value* const container = std::exchange(unfinished, unfinished->link_);
            container->cursor_ = 0;
            container->CopyChildren(unfinished);
        }
        return root;
    });
}

void Value::CopyContent(const Value& original, Value*& unfinished) {
    kind_ = original.kind_;
    switch (kind_) {
        case String: text_ = {CopyOf(original.text(), *arena_), original.text().size()}; return;
        case Number: number_ = original.number_; return;
        case Bool: flag_ = original.flag_; return;
        case Object:
        case Array: break;
        default: return;
    }
    SetCapacity(original.children_.count);
    isInRuns_ = original.isInRuns_;
    children_ = {arena_->AllocateArray<Value*>(capacity_), capacity_};
    std::copy_n(original.children_.nodes, capacity_, children_.nodes);
    link_ = std::exchange(unfinished, this);
}

void Value::CopyChildren(Value*& unfinished) {
    for (Value*& child : std::span(children_.nodes, children_.count)) {
        const Value& original = *child;
        child = new (arena_->Allocate(sizeof(Value))) Value(Null, arena_);
        child->key_ = {CopyOf(original.key(), *arena_), original.key().size()};
        child->CopyContent(original, unfinished);
    }
}

bool Value::AddElement(std::unique_ptr<Value>&& child) noexcept {
    return kind_ == Array && child && Insert(children_.count, {}, child);
}

bool Value::AddMember(const RWWString& key, std::unique_ptr<Value>&& child) noexcept {
    if (kind_ != Object || !child) return false;
    if (Member(key)) return false;
    const std::size_t index = isInRuns_ ? children_.count : LowerBound(key);
    const bool mustKeepOrder = cursor_ > 0;  // a walk counts on it
    if (!isInRuns_ && (index == children_.count || mustKeepOrder)) return Insert(index, key, child);
    if (!Insert(children_.count, key, child)) return false;
    isInRuns_ = 1;
    MergeLastRuns();
    return true;
}

// A walk that is under way goes on where it was.
bool Value::Insert(std::size_t index, std::wstring_view key, std::unique_ptr<Value>& child) noexcept {
    return ql::FailureIfThrown(false, [&] {
        MakeRoomForChild();
        void* const record = arena_ ? arena_->Allocate(sizeof(Arena::Adopted)) : nullptr;
        child->key_ = {CopyOf(key), key.size()};

        Value* const node = child.release();
        if (record) arena_->Adopt(record, node);
        std::copy_backward(children_.nodes + index, children_.nodes + children_.count,
                           children_.nodes + children_.count + 1);
        children_.nodes[index] = node;
        ++children_.count;
        if (index < cursor_) ++cursor_;
        return true;
    });
}

void Value::MakeRoomForChild() {
    if (children_.count < capacity_) return;
    const std::size_t capacity = std::max<std::size_t>(4, std::size_t{2} * capacity_);
    auto** const nodes = arena_ ? arena_->AllocateArray<Value*>(capacity) : new Value*[capacity];
    std::copy_n(children_.nodes, children_.count, nodes);
    if (!arena_) delete[] children_.nodes;
    children_.nodes = nodes;
    SetCapacity(capacity);
}

bool Value::Less::operator()(const Value* a, std::wstring_view key) const noexcept {
    return IsBefore(a->key(), key);
}

std::size_t Value::LowerBound(std::wstring_view key) const noexcept {
    Value** const end = children_.nodes + children_.count;
    if (children_.count == 0 || Less{}(end[-1], key)) return children_.count;
    return static_cast<std::size_t>(std::lower_bound(children_.nodes, end, key, Less{}) - children_.nodes);
}

const Value* Value::FindInRuns(std::wstring_view key) const noexcept {
    Value** run = children_.nodes;
    for (std::size_t left = children_.count; left > 0;) {
        const std::size_t length = std::bit_floor(left);
        Value** const found = std::lower_bound(run, run + length, key, Less{});
        if (found != run + length && (*found)->key() == key) return *found;
        run += length;
        left -= length;
    }
    return nullptr;
}

// The member that came last is a run of one: two of one length become one, as bits carry.
void Value::MergeLastRuns() noexcept {
    Value** const end = children_.nodes + children_.count;
    for (std::size_t length = 1; (children_.count & length) == 0; length *= 2) {
        Value** const second = end - length;
        if (Less{}(second[0], second[-1])) std::inplace_merge(second - length, second, end, Less{});
    }
}

void Value::OrderMembers() noexcept {
    if (!isInRuns_) return;
    std::sort(children_.nodes, children_.nodes + children_.count, Less{});
    isInRuns_ = 0;
}

const Value* Value::Element(std::size_t index) const noexcept {
    return index < ElementCount() ? children_.nodes[index] : nullptr;
}

Value* Value::Element(std::size_t index) noexcept {
    return const_cast<Value*>(std::as_const(*this).Element(index));
}

const Value* Value::Member(std::wstring_view key) const noexcept {
    if (kind_ != Object) return nullptr;
    if (isInRuns_) return FindInRuns(key);
    const std::size_t index = LowerBound(key);
    return index < children_.count && children_.nodes[index]->key() == key ? children_.nodes[index] : nullptr;
}

Value* Value::Member(std::wstring_view key) noexcept {
    return const_cast<Value*>(std::as_const(*this).Member(key));
}

Value* Value::FirstMember(RWWString& key) noexcept {
    cursor_ = 0;
    return NextMember(key);
}

Value* Value::NextMember(RWWString& key) noexcept {
    return ql::FailureIfThrown(nullptr, [&]() -> Value* {
        if (cursor_ >= MemberCount()) return nullptr;
        OrderMembers();
        Value* const node = children_.nodes[cursor_];
        key.assign(node->key());
        ++cursor_;
        return node;
    });
}

}  // namespace JSON
