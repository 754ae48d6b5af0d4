#include <gmock/gmock.h>

#include <memory>
#include <sstream>
#include <string>

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

Row ChangesName(const char* what, void (*change)(QLCmdLine&)) {
    return Changes<QLCmdLine, std::wstring>(
        what, [] { return QLCmdLine(QLFileName(kName)); }, change,
        [](const QLCmdLine& line) { return line.GetCmdLine().str(); });
}

QLStringTable ThreeEntries() {
    QLStringTable table;
    for (int i = 0; i < 3; ++i) table.AppendString(kText);
    return table;
}

const QLStringTable& Table() {
    static const QLStringTable table = ThreeEntries();
    return table;
}

std::wstring Joined(const QLStringTable& table) {
    RWWString text;
    table.AppendToString(text);
    return text.str();
}

Row ChangesTable(const char* what, void (*change)(QLStringTable&)) {
    return Changes<QLStringTable, std::wstring>(what, ThreeEntries, change, Joined);
}

Row Builds(const char* what, std::size_t former, void (*change)(CSpeedStr&), bool takesEffect = true) {
    return {what, [=](Attempt& attempt) {
                const std::wstring text(former, L'a');
                CSpeedStr builder;
                builder += text;
                attempt([&] { change(builder); });
                EXPECT_EQ(takesEffect && !attempt.HasFailed(), builder.ToString() != text);
                builder += L'!';
                EXPECT_EQ(L'!', builder[builder.length() - 1]);
            }};
}

void SaveTable(Attempt& attempt) {
    std::stringbuf buffer;
    RWBufferOstream stream(buffer);
    attempt([&] { Table().saveOn(stream); });
    EXPECT_NE(attempt.HasFailed(), stream.good());
    if (stream.good()) EXPECT_EQ(Table().binaryStoreSize(), buffer.str().size());
}

void RestoreTable(Attempt& attempt) {
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    Table().saveOn(out);
    RWBufferIstream stream(buffer);
    QLStringTable table;
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
        Builds(
            "CSpeedStr is asked for more than there can be", 5,
            [](CSpeedStr& text) { text.append(L"x", 0xFFFFFFFF); }, false),
        Answers("CSpeedStr::ToString",
                [] {
                    CSpeedStr builder;
                    builder += kText.view().substr(0, 30);
                    return builder.ToString();
                }),
        {"TokenString::Next", NextToken},
        Calls("TokenString is made",
              [] { TokenString(kText, kText).NewDelims(L"\u4e00\u4e01\u4e02\u4e03\u4e04"); }),
        ChangesTable("AppendString", [](QLStringTable& table) { table.AppendString(kText); }),
        ChangesTable("PrependString", [](QLStringTable& table) { table.PrependString(kText); }),
        ChangesTable("InsertString far beyond the end",
                     [](QLStringTable& table) { table.InsertString(kText, 40); }),
        ChangesTable("QLStringTable is assigned", [](QLStringTable& table) { table = QLStringTable(table); }),
        Calls("QLStringTable is copied", [] { QLStringTable(Table()).NumEntries(); }),
        {"QLStringTable grows by a bracket",
         [](Attempt& attempt) {
             const QLStringTable table = ThreeEntries();
             attempt([&] { table[30] = L"x"; });
             EXPECT_EQ(kText, table(2));
         }},
        Answers("QLStringTable::operator()", [] { return Table()(1); }),
        {"QLStringTable::saveOn", SaveTable},
        {"QLStringTable::restoreFrom", RestoreTable},
        {"RWOrdered and RWHashDictionary take items", Collect},
        Copies<RWOrdered>("RWOrdered is copied"),
        Copies<RWHashDictionary>("RWHashDictionary is copied"),
        Copies<RWCollectableString>("RWCollectableString is copied"),
        ChangesName("SetPathAndFileName", [](QLCmdLine& name) { name.SetPathAndFileName(kName); }),
        ChangesName("SetPath",
                    [](QLCmdLine& name) { name.SetPath(L"\\\\another server of some length\\share"); }),
        ChangesName("SetFileName", [](QLCmdLine& name) { name.SetFileName(kText); }),
        ChangesName("SetExtension", [](QLCmdLine& name) { name.SetExtension(kText); }),
        ChangesName("PrependPath",
                    [](QLCmdLine& name) { name.PrependPath(L"C:\\some\\path\\of\\some\\length"); }),
        ChangesName("ToUpper", [](QLCmdLine& name) { name.ToUpper(); }),
        ChangesName("ToLower", [](QLCmdLine& name) { name.ToLower(); }),
        ChangesName("SetCmdLine",
                    [](QLCmdLine& line) { line.SetCmdLine(L"\"C:\\a long name.of\" /and-long-switches"); }),
        ChangesName("SetSwitches", [](QLCmdLine& line) { line.SetSwitches(kText); }),
        ChangesName("AppendSwitches", [](QLCmdLine& line) { line.AppendSwitches(kText); }),
        ChangesName("QLCmdLine is assigned",
                    [](QLCmdLine& line) { line = QLCmdLine(L"C:\\dir", L"a name", L"ext", kText); }),
        {"SubstPathPlaceholders",
         [](Attempt& attempt) {
             const RWWString former(L"a %REFERENCE_TO_NOTHING% and more");
             RWWString text = former;
             attempt([&] { QLFileName::SubstPathPlaceholders(text); });
             EXPECT_EQ(former, text);
         }},
        Answers("GetCmdLine", [] { return QLCmdLine(kName, L"a /x", L"ext", kText).GetCmdLine(); }),
        Answers("GetPath", [] { return QLFileName(kName).GetPath(); }),
        Answers("GetRoot", [] { return QLFileName(kName).GetRoot(); }),
        Answers("GetFileName", [] { return QLFileName(kName).GetFileName(); }),
        Answers("GetTail", [] { return QLFileName(kName).GetTail(); }),
        {"GetExtension",
         [](Attempt& attempt) {
             const QLFileName name(kName);
             RWWString extension;
             int isThere = 0;
             attempt([&] { isThere = name.GetExtension(extension); });
             EXPECT_EQ(extension, isThere ? L".extension" : L"");
         }},
        Calls("GetDocumentType", [] { GetDocumentType(L"C:\\a path of some length\\a.longextension"); }),
    };
}

}  // namespace memory
