#include <gmock/gmock.h>

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

using Fields = std::pair<RWWString, RWWString>;
using Line = QLCmdLine;
using Table = QLStringTable;

Table ThreeOf(const RWWString& text) {
    Table table;
    for (int i = 0; i < 3; ++i) table.AppendString(text);
    return table;
}

// Texts that no string keeps in itself.
const RWWString kText(L"A text that is longer: it has \u00e9 and 'quotes' & \"more\"");
const RWCString kBytes("a narrow text that is longer than a string itself \x80");
const wchar_t kName[] = L"https://a.server.of.some.length/a/directory/a longer name.extension?with a tail";
const Line kLine{QLFileName(kName)};
const Table kTable = ThreeOf(kText);

RWWString Told(const Line& line) {
    return line.GetCmdLine();
}
RWWString Told(const Table& table) {
    RWWString text;
    table.AppendToString(text);
    return text;
}
RWWString Told(const RWWString& text) {
    return text;
}
RWWString Told(const Fields& fields) {
    return fields.first + L"|" + fields.second;
}

// A changed object reads as the whole change left it, or as it was (a name: as a new one), and takes the
// change once more.
template <class Object>
Row Changes(const char* what, const Object& former, std::type_identity_t<void (*)(Object&)> change) {
    return {what, [=](Attempt& attempt) {
                const Object otherwise = std::is_same_v<Object, Line> ? Object{} : former;
                Object whole = former, object = former;
                change(whole);
                attempt([&] { change(object); });
                EXPECT_THAT(Told(object), testing::AnyOf(Told(whole), Told(otherwise)));
                object = former;
                change(object);
                EXPECT_EQ(Told(whole), Told(object)) << "cannot be used any further";
            }};
}

// A part that memory has no room for changes nothing.
void Build(Attempt& attempt) {
    const std::wstring start(500, L'a'), more(600, L'x');
    CSpeedStr builder;
    builder += start;
    attempt([&] {
        builder += kText;  // moves to the heap
        builder += more;
        builder.prepend(kText);
    });
    const std::size_t whole = start.size() + kText.size() + more.size() + kText.size();
    EXPECT_EQ(attempt.HasFailed(), builder.length() < whole);
    EXPECT_THAT(builder.length(), testing::AnyOf(whole, whole - kText.size(), whole - more.size()));
    builder += L'!';
    EXPECT_EQ(L'!', builder[builder.length() - 1]);
}

void NextToken(Attempt& attempt) {
    const std::wstring_view whole = kText.view().substr(2, 20);
    TokenString text(whole, L"|");
    RWWString token;
    attempt([&] { text.Next(token); });
    if (token.empty()) token = text.Next();
    EXPECT_EQ(whole, token);
}

void StoreTable(Attempt& attempt) {
    std::stringbuf buffer;
    RWBufferOstream out(buffer);
    RWBufferIstream in(buffer);
    Table table;
    attempt([&] {
        kTable.saveOn(out);
        table.restoreFrom(in);
    });
    EXPECT_NE(attempt.HasFailed(), in.good());
    if (out.good()) EXPECT_EQ(kTable.binaryStoreSize(), buffer.str().size());
    for (unsigned i = 0; i < table.NumEntries(); ++i) EXPECT_EQ(kText, table(static_cast<int>(i)));
    EXPECT_TRUE(table.AppendString(L"more"));
}

void Collect(Attempt& attempt) {
    RWCollectableString text(kBytes);
    RWOrdered items;
    RWHashDictionary map;
    const RWCollectable* const originals[] = {&text, &items, &map};
    unsigned kept = 0, keys = 0, copies = 0;
    attempt([&] {
        kept = (items.append(&text) ? 1 : 0) + (items.prepend(&text) ? 1 : 0);
        keys = map.insertKeyAndValue(&text, &text) ? 1 : 0;
        for (const RWCollectable* original : originals) {
            for (RWCollectable* made : {original->copy(), original->newSpecies()}) {
                copies += made ? 1 : 0;
                delete made;
            }
        }
    });
    EXPECT_EQ(items.entries(), kept);
    EXPECT_EQ(map.entries(), keys);
    EXPECT_EQ(kept + keys + copies, attempt.HasFailed() ? 8u : 9u);
}

}  // namespace

std::vector<Row> TextCalls() {
    return {
        Answers("WideToStdString", [] { return WideToStdString(kText); }),
        Answers("AnsiToRWWString", [] { return AnsiToRWWString(kBytes.c_str()); }),
        Answers("RWCStringToRWWString", [] { return RWCStringToRWWString(kBytes); }),
        Answers("MakeRWTStringAnsiOnly", [] { return MakeRWTStringAnsiOnly(kText); }),
        Answers("QLToJSVarName", [] { return QLToJSVarName(kText, kText); }),
        Answers("JSToQLVarName", [] { return JSToQLVarName(kText); }),
        Answers("EscapeIllegalChars",
                [] { return EscapeIllegalChars(kText, kText, L"", kText, true, kText); }),
        Answers("ChangeCase to spaced capitals", [] { return ChangeCase(kText, CASE_SPACED_CAPITALS); }),
        Changes("SplitField", Fields{L"former", L"former"},
                [](Fields& fields) { SplitField(kText, fields.first, fields.second); }),
        {"CSpeedStr grows", Build},
        Answers("CSpeedStr::ToString", [] { return (CSpeedStr() += kText).ToString(); }),
        {"TokenString::Next", NextToken},
        Calls("TokenString is made and copied",
              [] {
                  TokenString text(kText, kText);
                  text.NewDelims(L"\u4e00\u4e01\u4e02\u4e03\u4e04");
                  TokenString copy(text);
                  copy = text;
              }),
        Changes("operator[] far beyond the end", kTable, [](Table& table) { table[40].clear(); }),
        Changes("PrependString", kTable, [](Table& table) { table.PrependString(kText); }),
        Changes("InsertString far beyond the end", kTable,
                [](Table& table) { table.InsertString(kText, 40); }),
        Changes("QLStringTable is assigned", Table(), [](Table& table) { table = kTable; }),
        Answers("QLStringTable is copied", [] { return Told(Table(kTable)); }),
        Answers("QLStringTable::operator()", [] { return kTable(1); }),
        {"QLStringTable is stored and restored", StoreTable},
        {"collections and texts", Collect},
        Changes("SetPathAndFileName", kLine, [](Line& line) { line.SetPathAndFileName(kName); }),
        Changes("SetPath", kLine,
                [](Line& line) { line.SetPath(L"\\\\another server of some length\\share"); }),
        Changes("SetFileName", kLine, [](Line& line) { line.SetFileName(kText); }),
        Changes("SetExtension", kLine, [](Line& line) { line.SetExtension(kText); }),
        Changes("PrependPath", kLine, [](Line& line) { line.PrependPath(L"C:\\some\\path\\of\\length"); }),
        Changes("ToUpper", kLine, [](Line& line) { line.ToUpper(); }),
        Changes("SetCmdLine", kLine,
                [](Line& line) { line.SetCmdLine(L"\"C:\\a long name\" /and-switches"); }),
        Changes("AppendSwitches", kLine, [](Line& line) { line.AppendSwitches(kText); }),
        Changes("QLCmdLine is assigned", kLine,
                [](Line& line) { line = Line(L"C:\\dir", L"a name", L"ext", kText); }),
        Changes("SubstPathPlaceholders", RWWString(L"a %REFERENCE_TO_NOTHING% and more"),
                [](RWWString& text) { QLFileName::SubstPathPlaceholders(text); }),
        Changes("GetExtension", RWWString(), [](RWWString& text) { QLFileName(kName).GetExtension(text); }),
        Answers("GetCmdLine", [] { return Line(kName, L"a /x", L"ext", kText).GetCmdLine(); }),
        Answers("GetPath", [] { return QLFileName(kName).GetPath(); }),
        Answers("GetRoot", [] { return QLFileName(kName).GetRoot(); }),
        Answers("GetFileName", [] { return QLFileName(kName).GetFileName(); }),
        Calls("GetDocumentType", [] { GetDocumentType(L"C:\\a path of some length\\a.longextension"); }),
    };
}

}  // namespace memory
