#include "json/parser.h"

#include <algorithm>

#include "platform/failure.h"

namespace JSON {

namespace {

enum class Action { Fail, Leaf, Open, Close, Key, ToValue, ToKey, Finish };
using enum Action;

struct Row {
    const wchar_t* expected;
    Action actions[kTokenCount];
};

// What each state does with each token, in the order of the states and of the tokens:
// string, number, {, }, :, comma, [, ], Boolean, null, error, end.
constexpr Row kRows[] = {
    {L"a value", {Leaf, Leaf, Open, Fail, Fail, Fail, Open, Fail, Leaf, Leaf, Fail, Fail}},
    {L"a value or ]", {Leaf, Leaf, Open, Fail, Fail, Fail, Open, Close, Leaf, Leaf, Fail, Fail}},
    {L"a key or }", {Key, Fail, Fail, Close, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail}},
    {L"a key", {Key, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail}},
    {L":", {Fail, Fail, Fail, Fail, ToValue, Fail, Fail, Fail, Fail, Fail, Fail, Fail}},
    {L", or ]", {Fail, Fail, Fail, Fail, Fail, ToValue, Fail, Close, Fail, Fail, Fail, Fail}},
    {L", or }", {Fail, Fail, Fail, Close, Fail, ToKey, Fail, Fail, Fail, Fail, Fail, Fail}},
    {L"the end of the text", {Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Fail, Finish}},
};

template <class Index>
constexpr const Row& RowOf(Index state) {
    return kRows[static_cast<std::size_t>(state)];
}

constexpr Action ActionOf(const Row& row, Token token) {
    return row.actions[static_cast<std::size_t>(token)];
}

}  // namespace

// Enough of both for a usual settings document.
Parser::Parser(std::wstring_view document)
    : root_(new Value(Null)),
      arena_(*(root_->arena_ = new Arena(*root_, 3 * document.size() * sizeof(wchar_t)))),
      lexer_(document, arena_) {
    pending_.reserve(document.size() / 16);
}

std::unique_ptr<Value> Parser::Run() {
    for (;;) {
        const Token token = lexer_.Next();
        switch (ActionOf(RowOf(state_), token)) {
            case Leaf: AddLeaf(token); break;
            case Open: OpenContainer(token); break;
            case Close: CloseContainer(); break;
            case Key: TakeKey(); break;
            case ToValue: state_ = State::Value; break;
            case ToKey: state_ = State::Key; break;
            case Finish: return std::move(root_);
            case Fail: RecordFault(token); return nullptr;
        }
    }
}

// A token that went wrong is only to blame where it could have stood.
void Parser::RecordFault(Token token) noexcept {
    const Row& row = RowOf(state_);
    const bool inside = token == Token::Error && ActionOf(row, lexer_.attempted()) != Fail;
    fault_ = inside ? lexer_.fault() : ParseFault{lexer_.offset(), row.expected, false};
}

// The node of the value that begins here: the root first, the others in the arena.
Value* Parser::Add(ValueKind kind) {
    if (!open_) {
        root_->kind_ = kind;
        return root_.get();
    }
    Value* const node = new (arena_.Allocate(sizeof(Value))) Value(kind, &arena_);
    node->key_ = key_;
    pending_.push_back(node);
    return node;
}

void Parser::AddLeaf(Token token) {
    switch (token) {
        case Token::String: Add(String)->text_ = TokenText(); break;
        case Token::Number: Add(Number)->number_ = lexer_.number(); break;
        case Token::Bool: Add(Bool)->flag_ = lexer_.flag(); break;
        default: Add(Null); break;
    }
    state_ = AfterValue();
}

void Parser::OpenContainer(Token token) {
    const bool isArray = token == Token::BeginArray;
    Value* const node = Add(isArray ? Array : Object);
    node->children_ = {nullptr, pending_.size()};
    node->link_ = std::exchange(open_, node);
    state_ = isArray ? State::FirstElement : State::FirstKey;
}

// The innermost container is complete: its children move from the pending ones into an array of just their
// number.
void Parser::CloseContainer() {
    Value* const node = open_;
    const std::size_t first = node->children_.count;
    if (node->kind_ == Object) OrderPendingFrom(first);
    const std::size_t count = pending_.size() - first;
    auto** const nodes = arena_.AllocateArray<Value*>(count);
    std::copy_n(pending_.data() + first, count, nodes);
    pending_.resize(first);
    node->children_ = {nodes, count};
    node->SetCapacity(count);
    open_ = std::exchange(node->link_, nullptr);
    node->cursor_ = 0;
    state_ = AfterValue();
}

// Members in ascending order of their keys, the first of equal ones; documents of our own writer are so
// already.
void Parser::OrderPendingFrom(std::size_t first) {
    const auto begin = pending_.begin() + static_cast<std::ptrdiff_t>(first);
    const Value::Less less;
    const auto notLess = [&](const Value* a, const Value* b) { return !less(a, b); };
    if (std::adjacent_find(begin, pending_.end(), notLess) == pending_.end()) return;
    std::stable_sort(begin, pending_.end(), less);
    pending_.erase(std::unique(begin, pending_.end(), notLess), pending_.end());
}

void Parser::TakeKey() noexcept {
    key_ = TokenText();
    state_ = State::Colon;
}

Value::Text Parser::TokenText() const noexcept {
    return {lexer_.text().data(), lexer_.text().size()};
}

Parser::State Parser::AfterValue() const noexcept {
    if (!open_) return State::AfterDocument;
    return open_->kind_ == Array ? State::AfterElement : State::AfterMember;
}

std::unique_ptr<Value> Parse(std::wstring_view text) noexcept {
    return ql::FailureIfThrown(nullptr, [text] { return Parser(text).Run(); });
}

}  // namespace JSON
