#pragma once

#include <cstddef>
#include <limits>
#include <memory>
#include <string_view>

#include "platform/export.h"
#include "rw/wide_string.h"

// JSON trees on wide (UTF-16) text: values, a parser and a writer. Nothing here recurses, so the nesting of a
// document is limited by memory only; a parsed document takes about 40 bytes a value beside its texts in a
// 32-bit process.
//
// Kept on purpose, and relied on by stored documents:
//  - members are held in ascending order of their keys' code units, never in document order;
//  - the first value of a repeated key is kept, later ones are dropped;
//  - the parser accepts leading zeros ("01" is 1) and any unit but zero unescaped inside a text;
//  - surrogate halves are taken one by one and never combined, so that lone ones survive a round trip;
//  - a zero unit ends the document; a byte-order mark is an error; a trailing comma fails;
//  - the writer always escapes the solidus, and writes numbers with five decimals at most and no exponent.
namespace JSON {

class Arena;

// What a value is.
enum ValueKind : int { String = 0, Number = 1, Object = 2, Array = 3, Bool = 4, Null = 5 };

// One node of a tree; it owns its children, and destroying it destroys all that is below. Pointers to nodes
// below stay valid as long as the root lives. A tree may be read by several threads or changed by one;
// FirstMember and NextMember change it. Only the constructors can throw: std::bad_alloc.
//
//     JSON::Value settings(JSON::Object);
//     settings.AddMember(L"12", std::make_unique<JSON::Value>(L"C:\\Temp"));
//     RWWString document = JSON::Serialize(&settings);  // {"12":"C:\\Temp"}
class QL_API Value {
  public:
    // A String, a Number or a Bool; a text is copied.
    explicit Value(const RWWString& text);
    explicit Value(const wchar_t* text);  // a null pointer is the empty text
    explicit Value(double number) noexcept;
    explicit Value(bool flag) noexcept;

    explicit Value(ValueKind kind) noexcept;  // an empty text, 0, an empty container, false, null
    ~Value();
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    // A copy of the node and of all below it, which shares nothing with it. Null when memory is short.
    std::unique_ptr<Value> Clone() const noexcept;

    ValueKind kind() const noexcept { return kind_; }  // settled at construction

    // The content; of a node of another kind the empty text, 0 and false. The text may hold zero units, is
    // not null-ended, and lives as long as the root.
    std::wstring_view text() const noexcept { return kind_ == String ? text_.view() : std::wstring_view(); }
    double number() const noexcept { return kind_ == Number ? number_ : 0.0; }
    bool flag() const noexcept { return kind_ == Bool && flag_; }

    // Appends to an Array. False when the node is no array, the child is null or memory is short: nothing has
    // changed then and the child stays the caller's. A node must not be put below itself.
    bool AddElement(std::unique_ptr<Value>&& child) noexcept;

    // The elements of an Array; 0 and null for any other kind, null beyond the last.
    std::size_t ElementCount() const noexcept { return kind_ == Array ? children_.count : 0; }
    Value* Element(std::size_t index) noexcept;
    const Value* Element(std::size_t index) const noexcept;

    // Puts a member into an Object. False, as for AddElement, also when the key is there already. Members may
    // come in any order; ascending keys are the quickest. While a walk is under way, or has come to its end,
    // another key moves the pointers to the members behind it.
    bool AddMember(const RWWString& key, std::unique_ptr<Value>&& child) noexcept;

    // The members of an Object; 0 and null for any other kind, null for a key that is not there.
    std::size_t MemberCount() const noexcept { return kind_ == Object ? children_.count : 0; }
    Value* Member(std::wstring_view key) noexcept;
    const Value* Member(std::wstring_view key) const noexcept;

    // Walk the members of an Object in key order: each returns the next member's node and stores its key, or
    // returns null after the last member, and for any other kind, and leaves the key alone. The place is kept
    // in the node: one walk at a time, and NextMember alone begins one when none is under way. Both return
    // null when memory is too short for the key.
    Value* FirstMember(RWWString& key) noexcept;
    Value* NextMember(RWWString& key) noexcept;

  private:
    friend class Parser;
    friend class Writer;

    struct Text {
        std::wstring_view view() const noexcept { return {units, count}; }
        const wchar_t* units;
        std::size_t count;
    };
    struct Children {  // an object's are ordered by their keys, but for those in runs
        Value** nodes;
        std::size_t count;
    };

    struct Less {  // by key
        bool operator()(const Value* a, const Value* b) const noexcept { return (*this)(a, b->key()); }
        bool operator()(const Value* a, std::wstring_view key) const noexcept;
    };

    Value(ValueKind kind, Arena* arena) noexcept;
    std::wstring_view key() const noexcept { return key_.view(); }
    void SetCapacity(std::size_t capacity) noexcept { capacity_ = capacity & ~std::size_t{0} >> 1; }
    std::size_t LowerBound(std::wstring_view key) const noexcept;
    const Value* FindInRuns(std::wstring_view key) const noexcept;
    void MergeLastRuns() noexcept;
    void OrderMembers() noexcept;
    bool Insert(std::size_t index, std::wstring_view key, std::unique_ptr<Value>& child) noexcept;
    void MakeRoomForChild();
    void ReleaseContent(Value*& doomed) noexcept;
    void CopyContent(const Value& original, Value*& unfinished);
    void CopyChildren(Value*& unfinished);

    // The root of a parsed or copied tree owns the arena that holds the rest of it. The nodes in there share
    // it and are never destroyed one by one. Null for a node made by hand: what it holds came from new.
    Arena* arena_;
    Text key_;  // under which the parent holds the node
    ValueKind kind_;
    union {
        Text text_;
        Children children_;
        double number_;
        bool flag_;
    };
    // Of children_. Members that come out of order are kept in runs, each in order: one for each bit that is
    // set in their number, of as many members as the bit is worth, the longest first.
    std::size_t capacity_ : std::numeric_limits<std::size_t>::digits - 1 = 0;
    std::size_t isInRuns_ : 1 = 0;
    union {
        std::size_t cursor_;  // the member that the walk comes to next
        Value* link_;         // parsing: the open container around this one; else: the next node of a list
    };
};

// Parses a whole document. Null on any error and when memory is short; json/diagnosis.h tells what
// is wrong. A number beyond the range of double is infinite, one too small is 0.
QL_API std::unique_ptr<Value> Parse(std::wstring_view text) noexcept;

// The document of a tree: on one line, or with line breaks (CR LF) and tabs when `pretty`. `asciiOnly`
// escapes every unit from 127 up. A number that is not finite is written as null. Empty for a null node and
// when memory is short. A node whose kind is none of the six is an assertion failure (and is written as null
// if the handler returns).
QL_API RWWString Serialize(const Value* node, bool asciiOnly = false, bool pretty = false) noexcept;

// Receives the text of an assertion failure. The default one shows it in an error box titled "Program halted"
// and aborts the process. A handler must not throw.
using AssertionHandler = void (*)(const wchar_t* text);

// Replaces the handler for the whole process and returns the former one; null restores the default.
// Thread-safe.
QL_API AssertionHandler SetAssertionHandler(AssertionHandler handler) noexcept;

}  // namespace JSON
