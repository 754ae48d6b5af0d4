#include "tools/qlutil/answer.h"

#include <algorithm>
#include <memory>

#include "json/json.h"
#include "text/unicode.h"

namespace {

using JsonValue = std::unique_ptr<JSON::Value>;

// Joins the overloads that a std::visit takes.
template <class... Visitors>
struct Overloaded : Visitors... {
    using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;

JsonValue ToJson(const Node& node) {
    return std::visit(Overloaded{
                          [](std::nullptr_t) { return std::make_unique<JSON::Value>(JSON::Null); },
                          [](const RWWString& text) { return std::make_unique<JSON::Value>(text); },
                          [](double number) { return std::make_unique<JSON::Value>(number); },
                          [](bool flag) { return std::make_unique<JSON::Value>(flag); },
                          [](const List& list) {
                              auto array = std::make_unique<JSON::Value>(JSON::Array);
                              for (const Node& element : list) array->AddElement(ToJson(element));
                              return array;
                          },
                          [](const Record& record) {
                              auto object = std::make_unique<JSON::Value>(JSON::Object);
                              for (const auto& [key, value] : record) object->AddMember(key, ToJson(value));
                              return object;
                          },
                      },
                      node.value);
}

// Numbers and flags read alike in both forms; a text stands here without quotes.
std::wstring ToCell(const Node& node) {
    if (const auto* text = std::get_if<RWWString>(&node.value)) return text->str();
    if (std::holds_alternative<std::nullptr_t>(node.value)) return L"-";
    return JSON::Serialize(ToJson(node).get()).str();
}

// Names that strangers chose can hold characters that move a terminal's cursor; each is shown as its picture.
std::wstring WithoutControls(std::wstring text) {
    for (wchar_t& c : text) {
        if (c < 0x20) c = static_cast<wchar_t>(0x2400 + c);
        if (c >= 0x7f && c < 0xa0) c = L'\u2421';
    }
    return text;
}

using Row = std::vector<std::wstring>;

// Lines up all columns but the last, so that no line ends in blanks.
class Columns {
  public:
    void Fit(const Row& row) {
        widths_.resize(std::max(widths_.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths_[i] = std::max(widths_[i], row[i].size());
    }
    std::wstring LineOf(const Row& row) const {
        std::wstring line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            line += row[i];
            if (i + 1 < row.size()) line.append(widths_[i] - row[i].size() + 2, L' ');
        }
        line.resize(line.find_last_not_of(L' ') + 1);
        return line + L'\n';
    }

  private:
    std::vector<std::size_t> widths_;
};

std::wstring Align(const std::vector<Row>& rows) {
    Columns columns;
    for (const Row& row : rows) columns.Fit(row);
    std::wstring text;
    for (const Row& row : rows) text += columns.LineOf(row);
    return text;
}

Row TitlesOf(const Record& record) {
    Row titles;
    for (const auto& [key, value] : record) titles.push_back(key);
    return titles;
}

Row CellsOf(const Record& record) {
    Row cells;
    for (const auto& [key, value] : record) cells.push_back(WithoutControls(ToCell(value)));
    return cells;
}

std::wstring RenderList(const List& list) {
    std::vector<Row> rows;
    for (const Node& element : list) {
        const auto* record = std::get_if<Record>(&element.value);
        if (!record) {
            rows.push_back({ToCell(element)});
            continue;
        }
        if (rows.empty()) rows.push_back(TitlesOf(*record));
        rows.push_back(CellsOf(*record));
    }
    return Align(rows);
}

// Zeros, empty texts and the like say nothing of a command that failed.
bool SaysSomething(const Node& node) {
    return std::visit(Overloaded{
                          [](std::nullptr_t) { return false; },
                          [](const RWWString& text) { return !text.empty(); },
                          [](double number) { return number != 0; },
                          [](bool flag) { return flag; },
                          [](const auto& several) { return !several.empty(); },
                      },
                      node.value);
}

std::wstring RenderRecord(const Record& record, bool hasFailed) {
    std::vector<Row> rows;
    std::wstring lists;
    for (const auto& [key, value] : record) {
        if (hasFailed && !SaysSomething(value)) continue;
        if (const auto* list = std::get_if<List>(&value.value)) {
            lists += key + L":\n" + RenderList(*list);
        } else {
            rows.push_back({key, ToCell(value)});
        }
    }
    return Align(rows) + lists;
}

std::wstring RenderLine(const Record& record, std::size_t shown) {
    std::wstring line;
    for (std::size_t i = 0; i < shown; ++i) line += (i > 0 ? L"  " : L"") + ToCell(record.at(i).second);
    return line + L'\n';
}

std::wstring RenderPlain(const Node& node, bool hasFailed) {
    if (const auto* record = std::get_if<Record>(&node.value)) return RenderRecord(*record, hasFailed);
    if (const auto* list = std::get_if<List>(&node.value)) return RenderList(*list);
    return ToCell(node) + L'\n';
}

std::wstring RenderJson(const Node& node) {
    const JsonValue tree = ToJson(node);
    RWWString text = JSON::Serialize(tree.get());
    // UTF-8 has no form for half a pair; the escaped form has one.
    if (ql::HasLoneSurrogate(text)) text = JSON::Serialize(tree.get(), true);
    return text.str() + L'\n';
}

// Collects what is printed to pieces of some size.
class Pieces {
  public:
    Pieces(const Print& print, std::size_t enough) : print_(print), enough_(enough) {}
    // False once a piece was refused.
    bool Add(std::wstring_view text) {
        held_ += text;
        return held_.size() <= enough_ || End();
    }
    bool End() { return print_(std::exchange(held_, {})); }

  private:
    const Print& print_;
    const std::size_t enough_;
    std::wstring held_;
};

constexpr std::size_t kPiece = 0x10000;

bool RenderFeed(const Feed& feed, bool json, const Print& print) {
    const bool isArray = json && !feed.goesOn;
    // Many records are printed at once, but what is watched is not kept waiting.
    Pieces pieces(print, feed.goesOn ? 0 : kPiece);
    bool isTaken = pieces.Add(isArray ? L"[" : L"");
    std::wstring before;
    while (isTaken) {
        const std::optional<Record> record = feed.next();
        if (!record) return pieces.Add(isArray ? L"]\n" : L"") && pieces.End();
        std::wstring one = json ? RenderJson(*record) : RenderLine(*record, feed.shown);
        if (isArray) one.pop_back();
        isTaken = pieces.Add(before + one);
        before = isArray ? L"," : L"";
    }
    return false;
}

bool RenderTable(const Table& table, bool json, const Print& print) {
    if (json) {
        const auto next = [&table, i = std::size_t{0}]() mutable {
            return i < table.rows ? std::optional(table.row(i++)) : std::nullopt;
        };
        return RenderFeed({next, 0}, json, print);
    }
    if (table.rows == 0) return true;
    const Row titles = TitlesOf(table.row(0));
    Columns columns;
    columns.Fit(titles);
    for (std::size_t i = 0; i < table.rows; ++i) columns.Fit(CellsOf(table.row(i)));
    Pieces pieces(print, kPiece);
    bool isTaken = pieces.Add(columns.LineOf(titles));
    for (std::size_t i = 0; isTaken && i < table.rows; ++i)
        isTaken = pieces.Add(columns.LineOf(CellsOf(table.row(i))));
    return isTaken && pieces.End();
}

}  // namespace

bool Render(const Answer& answer, bool json, const Print& print) {
    return std::visit(
        Overloaded{
            [](std::monostate) { return true; },
            [&](const Document& document) { return print(document.text.str() + L'\n'); },
            [&](const Feed& feed) { return RenderFeed(feed, json, print); },
            [&](const Table& table) { return RenderTable(table, json, print); },
            [&](const Node& node) {
                return print(json ? RenderJson(node) : RenderPlain(node, answer.status != kDone));
            },
        },
        answer.output);
}
