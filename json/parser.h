#pragma once

#include <memory>
#include <memory_resource>
#include <string_view>
#include <vector>

#include "json/json.h"
#include "json/lexer.h"

namespace JSON {

// Builds the tree of one document. An automaton walks over the tokens; the containers that are still open are
// linked from the innermost outwards through their own nodes, so that depth costs no stack.
class Parser {
  public:
    explicit Parser(std::wstring_view document);  // can throw std::bad_alloc

    // The root, or null where the document is wrong: then fault() tells. Can throw std::bad_alloc.
    std::unique_ptr<Value> Run();
    const ParseFault& fault() const noexcept { return fault_; }

  private:
    // What the automaton waits for: the rows of its table.
    enum class State { Value, FirstElement, FirstKey, Key, Colon, AfterElement, AfterMember, AfterDocument };

    void RecordFault(Token token) noexcept;
    Value* Add(ValueKind kind);
    void AddLeaf(Token token);
    void OpenContainer(Token token);
    void CloseContainer();
    void OrderPendingFrom(std::size_t first);
    void TakeKey() noexcept;
    Value::Text TokenText() const noexcept;
    State AfterValue() const noexcept;

    std::unique_ptr<Value> root_;
    Arena& arena_;  // the root's
    Lexer lexer_;
    State state_ = State::Value;
    Value* open_ = nullptr;  // the innermost open container; children_.count is where its pending ones begin
    Value* usual_[256];      // room for a usual document's without the heap
    std::pmr::monotonic_buffer_resource memory_{usual_, sizeof(usual_)};
    std::pmr::vector<Value*> pending_{&memory_};  // the children so far of all open containers
    Value::Text key_{};                           // of the member to come
    ParseFault fault_{};
};

}  // namespace JSON
