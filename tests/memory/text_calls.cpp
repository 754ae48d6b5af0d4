#include <gmock/gmock.h>

#include <memory>
#include <sstream>

#include "names/cmd_line.h"
#include "names/file_type.h"
#include "rw/hash_dictionary.h"
#include "rw/ordered.h"
#include "rw/virtual_streams.h"
#include "tests/memory/failing_memory.h"
#include "text/ansi_text.h"
#include "text/fields.h"
#include "text/letter_case.h"
#include "text/script_text.h"
#include "text/speed_str.h"
#include "text/string_table.h"
#include "text/token_string.h"

namespace memory {

namespace {

using Line = QLCmdLine;
using Table = QLStringTable;

// Texts that no string keeps in itself.
const RWWString kText(L"A text that is longer: it has \u00e9 and 'quotes' & \"more\"");
const RWCString kBytes("a narrow text that is longer than a string itself \x80");
const std::wstring kBeyondTheBuilder(600, L'x');
const wchar_t kName[] = L"https://a.server.of.some.length/a/directory/a longer name.extension?with a tail";

// The whole result, or none.
template <class Answer>
Row Answers(const char* what, Answer answer) {
    return {what, [answer](Attempt& attempt) {
                const auto whole = answer();
                decltype(answer()) text{};
                attempt([&] { text = answer(); });
                if (!text.empty()) EXPECT_EQ(whole, text);
            }};
}

// A changed object reads as the whole change left it, as it was, or as a new one, and takes the change once
// more.
template <class Object, class Text>
Row Changes(const char* what, Object (*make)(), void (*change)(Object&), Text (*read)(const Object&)) {
    return {what, [=](Attempt& attempt) {
                Object changed = make();
                const Text former = read(changed);
                change(changed);
                const Text whole = read(changed);
                Object object = make();
                attempt([&] { change(object); });
                EXPECT_THAT(read(object), testing::AnyOf(whole, former, read(Object{})));
                object = make();
                change(object);
                EXPECT_EQ(whole, read(object)) << "cannot be used any further";
            }};
}

Row ChangesName(const char* what, void (*change)(Line&)) {
    return Changes<Line, RWWString>(
        what, [] { return Line(QLFileName(kName)); }, change,
        [](const Line& line) { return line.GetCmdLine(); });
}

Table ThreeEntries() {
    Table table;
    for (int i = 0; i < 3; ++i) table.AppendString(kText);
    return table;
}

const Table& Kept() {
    static const Table table = ThreeEntries();
    return table;
}

std::wstring Joined(const Table& table) {
    RWWString text;
    table.AppendToString(text);
    return text.str();
}

Row ChangesTable(const char* what, void (*change)(Table&)) {
    return Changes<Table, std::wstring>(what, ThreeEntries, change, Joined);
}

Row Builds(const char* what, std::size_t former, void (*change)(CSpeedStr&)) {
    return {what, [=](Attempt& attempt) {
                const std::wstring text(former, L'a');
                CSpeedStr builder;
                builder += text;
                attempt([&] { change(builder); });
                EXPECT_EQ(!attempt.HasFailed(), builder.ToString() != text);
                builder += L'!';
                EXPECT_EQ(L'!', builder[builder.length() - 1]);
            }};
}

void SaveTable(Attempt& attempt) {
    std::stringbuf buffer;
    RWBufferOstream stream(buffer);
    attempt([&] { Kept().saveOn(stream); });
    EXPECT_NE(attempt.HasFailed(), stream.good());
    if (stream.good()) EXPECT_EQ(Kept().binaryStoreSize(), buffer.str().size());
}

void RestoreTable(Attempt& attempt) {
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    Kept().saveOn(out);
    RWBufferIstream stream(buffer);
    Table table;
    attempt([&] { table.restoreFrom(stream); });
    EXPECT_NE(attempt.HasFailed(), stream.good());
    for (unsigned i = 0; i < table.NumEntries(); ++i) EXPECT_EQ(kText, table(static_cast<int>(i)));
    EXPECT_TRUE(table.AppendString(L"more"));
}

void Collect(Attempt& attempt) {
    RWCollectableWString text(kText);
    RWOrdered items;
    RWHashDictionary map;
    RWCollectable *kept = nullptr, *prepended = nullptr, *key = nullptr;
    attempt([&] {
        kept = items.append(&text);
        prepended = items.prepend(&text);
        key = map.insertKeyAndValue(&text, &text);
    });
    EXPECT_EQ(items.entries(), (kept ? 1u : 0u) + (prepended ? 1u : 0u));
    EXPECT_EQ(map.entries(), key ? 1u : 0u);
}

template <class Object>
Row Copies(const char* what) {
    return {what, [](Attempt& attempt) {
                const Object original;
                std::unique_ptr<RWCollectable> copy, fresh;
                attempt([&] {
                    copy.reset(original.copy());
                    fresh.reset(original.newSpecies());
                });
                EXPECT_EQ(attempt.HasFailed(), !copy || !fresh);
            }};
}

void NextToken(Attempt& attempt) {
    TokenString text(kText.view().substr(2, 20), L"|");
    RWWString token;
    attempt([&] { token = text.Next(); });
    if (token.empty()) token = text.Next();
    EXPECT_EQ(kText.view().substr(2, 20), token);
}

}  // namespace

std::vector<Row> TextCalls() {
    return {
        Answers("WideToStdString", [] { return WideToStdString(kText); }),
        Answers("RWTStringToRWCString", [] { return RWTStringToRWCString(kText); }),
        Answers("AnsiToRWWString", [] { return AnsiToRWWString(kBytes.c_str()); }),
        Answers("RWCStringToRWWString", [] { return RWCStringToRWWString(kBytes); }),
        Answers("MakeRWTStringAnsiOnly", [] { return MakeRWTStringAnsiOnly(kText); }),
        Answers("QLToJSVarName", [] { return QLToJSVarName(kText, kText); }),
        Answers("JSToQLVarName", [] { return JSToQLVarName(kText); }),
        Answers("EscapeIllegalChars",
                [] { return EscapeIllegalChars(kText, kText, L"", kText, true, kText); }),
        Answers("ChangeCase to titles", [] { return ChangeCase(kText, CASE_TITLE); }),
        Answers("ChangeCase to spaced capitals", [] { return ChangeCase(kText, CASE_SPACED_CAPITALS); }),
        {"SplitField",
         [](Attempt& attempt) {
             RWWString name(L"former"), rest(L"former");
             attempt([&] { SplitField(kText, name, rest); });
             for (const auto& text : {name, rest}) EXPECT_EQ(attempt.HasFailed(), text == L"former");
         }},
        Builds("CSpeedStr moves to the heap", 500, [](CSpeedStr& text) { text += kText; }),
        Builds("CSpeedStr grows", 1000, [](CSpeedStr& text) { text += kBeyondTheBuilder; }),
        Builds("CSpeedStr takes a text in front", 500, [](CSpeedStr& text) { text.prepend(kText); }),
        Answers("CSpeedStr::ToString", [] { return (CSpeedStr() += kText).ToString(); }),
        {"TokenString::Next", NextToken},
        Calls("TokenString is made",
              [] { TokenString(kText, kText).NewDelims(L"\u4e00\u4e01\u4e02\u4e03\u4e04"); }),
        ChangesTable("AppendString", [](Table& table) { table.AppendString(kText); }),
        ChangesTable("PrependString", [](Table& table) { table.PrependString(kText); }),
        ChangesTable("InsertString far beyond the end", [](Table& table) { table.InsertString(kText, 40); }),
        ChangesTable("QLStringTable is assigned", [](Table& table) { table = Table(table); }),
        Calls("QLStringTable is copied", [] { Table(Kept()).NumEntries(); }),
        {"QLStringTable grows by a bracket",
         [](Attempt& attempt) {
             const Table table = ThreeEntries();
             attempt([&] { table[30] = L"x"; });
             EXPECT_EQ(kText, table(2));
         }},
        Answers("QLStringTable::operator()", [] { return Kept()(1); }),
        {"QLStringTable::saveOn", SaveTable},
        {"QLStringTable::restoreFrom", RestoreTable},
        {"RWOrdered and RWHashDictionary take items", Collect},
        Copies<RWOrdered>("RWOrdered is copied"),
        Copies<RWHashDictionary>("RWHashDictionary is copied"),
        Copies<RWCollectableString>("RWCollectableString is copied"),
        ChangesName("SetPathAndFileName", [](Line& line) { line.SetPathAndFileName(kName); }),
        ChangesName("SetPath", [](Line& line) { line.SetPath(L"\\\\another server of some length\\share"); }),
        ChangesName("SetFileName", [](Line& line) { line.SetFileName(kText); }),
        ChangesName("SetExtension", [](Line& line) { line.SetExtension(kText); }),
        ChangesName("PrependPath", [](Line& line) { line.PrependPath(L"C:\\some\\path\\of\\length"); }),
        ChangesName("ToUpper", [](Line& line) { line.ToUpper(); }),
        ChangesName("ToLower", [](Line& line) { line.ToLower(); }),
        ChangesName("SetCmdLine", [](Line& line) { line.SetCmdLine(L"\"C:\\a long name\" /and-switches"); }),
        ChangesName("SetSwitches", [](Line& line) { line.SetSwitches(kText); }),
        ChangesName("AppendSwitches", [](Line& line) { line.AppendSwitches(kText); }),
        ChangesName("it is assigned", [](Line& line) { line = Line(L"C:\\dir", L"a name", L"ext", kText); }),
        {"SubstPathPlaceholders",
         [](Attempt& attempt) {
             const RWWString former(L"a %REFERENCE_TO_NOTHING% and more");
             RWWString text = former;
             attempt([&] { QLFileName::SubstPathPlaceholders(text); });
             EXPECT_EQ(former, text);
         }},
        Answers("GetCmdLine", [] { return Line(kName, L"a /x", L"ext", kText).GetCmdLine(); }),
        Answers("GetPath", [] { return QLFileName(kName).GetPath(); }),
        Answers("GetRoot", [] { return QLFileName(kName).GetRoot(); }),
        Answers("GetFileName", [] { return QLFileName(kName).GetFileName(); }),
        Answers("GetTail", [] { return QLFileName(kName).GetTail(); }),
        Answers("GetExtension",
                [] {
                    RWWString extension;
                    QLFileName(kName).GetExtension(extension);
                    return extension;
                }),
        Calls("GetDocumentType", [] { GetDocumentType(L"C:\\a path of some length\\a.longextension"); }),
    };
}

}  // namespace memory
