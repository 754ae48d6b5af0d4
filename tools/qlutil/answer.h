#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "rw/wide_string.h"

// What a command found out: a tree of named values in the order in which a reader wants them. It is printed
// as aligned lines or, with --json, through the library's JSON writer.
struct Node;
using List = std::vector<Node>;
using Record = std::vector<std::pair<std::wstring, Node>>;

struct Node {
    Node(std::nullptr_t) {}  // an absent text
    Node(RWWString text) : value(std::move(text)) {}
    Node(std::wstring_view text) : value(RWWString(text)) {}
    Node(std::wstring text) : value(RWWString(std::move(text))) {}
    Node(const wchar_t* text) : value(RWWString(text)) {}
    Node(double number) : value(number) {}
    Node(int number) : value(static_cast<double>(number)) {}
    Node(unsigned number) : value(static_cast<double>(number)) {}
    Node(unsigned long number) : value(static_cast<double>(number)) {}
    Node(bool flag) : value(flag) {}
    Node(List list) : value(std::move(list)) {}
    Node(Record record) : value(std::move(record)) {}

    bool operator==(const Node& other) const = default;

    std::variant<std::nullptr_t, RWWString, double, bool, List, Record> value = nullptr;
};

// A document that is itself the output, printed as it stands.
struct Document {
    RWWString text;
};

// What is found while it is printed, one record after the other, as long as there is one. With --json it is
// an array or, for what goes on while it is watched, one object a line; else a line for each record, of its
// first values.
struct Feed {
    std::function<std::optional<Record>()> next;
    std::size_t shown;
    bool goesOn = false;
};

// Many records of the same fields, each made when its turn comes to be printed; more than once, where columns
// are lined up.
struct Table {
    std::size_t rows;
    std::function<Record(std::size_t)> row;
};

enum ExitStatus { kDone = 0, kFailed = 1, kWrongCall = 2 };

struct Answer {
    Answer(Node result) : output(std::move(result)) {}
    Answer(Record result) : output(Node(std::move(result))) {}
    Answer(List result) : output(Node(std::move(result))) {}
    Answer(Document document) : output(std::move(document)) {}
    Answer(Feed feed) : output(std::move(feed)) {}
    Answer(Table table) : output(std::move(table)) {}
    // Failed, with what there is to print all the same; of a record, the plain form leaves out what says
    // nothing.
    Answer(Node result, std::wstring why)
        : output(std::move(result)), message(std::move(why)), status(kFailed) {}

    static Answer Failure(std::wstring why) {
        Answer answer{Node(nullptr), std::move(why)};
        answer.output = std::monostate();
        return answer;
    }

    std::variant<std::monostate, Node, Document, Feed, Table> output;
    std::wstring message;  // for standard error
    ExitStatus status = kDone;
};

// Takes a piece of what is printed; false ends the printing.
using Print = std::function<bool(std::wstring_view)>;

// Hands the answer's text for standard output over, line feeds included, piece by piece until one is refused;
// nothing for a failure without output. Answers whether all was taken.
bool Render(const Answer& answer, bool json, const Print& print);
