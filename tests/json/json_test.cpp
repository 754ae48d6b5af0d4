#include "json/json.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>
#include <utility>

#include "json/diagnosis.h"

using JSON::Parse;
using JSON::Value;
using std::wstring;
using namespace std::string_view_literals;

namespace {

wstring Written(const Value* node, bool asciiOnly = false, bool pretty = false) {
    return JSON::Serialize(node, asciiOnly, pretty).str();
}

wstring Rewritten(std::wstring_view document, bool asciiOnly = false, bool pretty = false) {
    return Written(Parse(document).get(), asciiOnly, pretty);
}

}  // namespace

TEST(JsonParse, AcceptsAndNormalises) {
    constexpr std::pair<std::wstring_view, std::wstring_view> kRows[] = {
        {L" \t\n\f\r[ \t\n\f\r] \t\n\f\r", L"[]"},
        {L"[[],{},[[{}]],false, true ]\0x"sv, L"[[],{},[[{}]],false,true]"},
        {L"[true]]"sv.substr(0, 6), L"[true]"},
        {L"truest"sv.substr(0, 4), L"true"},
        {L"{\"b\":1,\"a\":{},\"a\":[[]],\"\":null}", L"{\"\":null,\"a\":{},\"b\":1}"},
        {L"{\"\\u0062\":1,\"b\":2}", L"{\"b\":1}"},
        {L"{\"\uFFFD\":3,\"\\ud83d\":2,\"z\":1,\"Z\":0}", L"{\"Z\":0,\"z\":1,\"\xd83d\":2,\"\uFFFD\":3}"},
        {L"\"\\\"\\\\\\/\\b\\f\\n\\r\\t\"", L"\"\\\"\\\\\\/\\b\\f\\n\\r\\t\""},
        {L"\"a/\t\n\x1f\"", L"\"a\\/\\t\\n\\u001f\""},
        {L"\"\\u00E9\\u00e9\\u0041\"", L"\"\u00e9\u00e9A\""}};
    for (const auto& [document, written] : kRows)
        EXPECT_EQ(wstring(written), Rewritten(document)) << wstring(document);
}

// A sound document has no fault; the others are refused, and the diagnosis says where and why.
TEST(JsonParse, RefusesAndDiagnosisPointsAtTheFirstFault) {
    constexpr const wchar_t* kEscape = L"one of \" \\ / b f n r t u after the backslash";
    const struct {
        std::wstring_view document;
        std::size_t line, column;
        std::wstring_view expected, found;
    } kRows[] = {{L"", 1, 1, L"a value", L"the end of the text"},
                 {L"\r\n\n\r  ]", 4, 3, L"a value", L"]"},
                 {L"[1,]", 1, 4, L"a value", L"]"},
                 {L"[{]", 1, 3, L"a key or }", L"]"},
                 {L"[\"a\"", 1, 5, L", or ]", L"the end of the text"},
                 {L"{\"a\":1,}", 1, 8, L"a key", L"}"},
                 {L"{\"a\" 1}", 1, 6, L":", L"a number"},
                 {L"{\"a\":1 \"b\":2}", 1, 8, L", or }", L"a text"},
                 {L"{\"a\":}", 1, 6, L"a value", L"}"},
                 {L"true false", 1, 6, L"the end of the text", L"false"},
                 {L"truest", 1, 1, L"a value", L"truest"},
                 {L"abcdefghijklmnopqrstuvwxyz", 1, 1, L"a value", L"abcdefghijklmnop"},
                 {L"1.", 1, 3, L"a digit", L"the end of the text"},
                 {L"0x10", 1, 2, L"the end of the text", L"x"},
                 {L"[1 -]", 1, 4, L", or ]", L"a number"},
                 {L"\"abc", 1, 5, L"a closing double quote", L"the end of the text"},
                 {L"\"abc\\", 1, 6, kEscape, L"the end of the text"},
                 {L"\"a\0b\""sv, 1, 3, L"a closing double quote", L"the end of the text"},
                 {L"[\"C:\\dir\"]", 1, 6, kEscape, L"d"},
                 {L"\"\\\u00e9\"", 1, 3, kEscape, L"U+00E9"},
                 {L"\"\\u12\"", 1, 6, L"a hexadecimal digit", L"\""},
                 {L"\"\\u 123\"", 1, 4, L"a hexadecimal digit", L"U+0020"},
                 {L"\uFEFF{}", 1, 1, L"a value", L"U+FEFF"},
                 {L"\x7f", 1, 1, L"a value", L"U+007F"},
                 {L"[\u0661]", 1, 2, L"a value or ]", L"U+0661"}};
    for (const auto& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(wstring(row.document)));
        EXPECT_FALSE(Parse(row.document));
        const auto fault = JSON::Diagnose(row.document);
        ASSERT_TRUE(fault);
        EXPECT_EQ(std::pair(row.line, row.column), std::pair(fault->line, fault->column));
        EXPECT_EQ(row.expected, fault->expected);
        EXPECT_EQ(wstring(row.found), fault->found.str());
    }
    EXPECT_FALSE(JSON::Diagnose(L"[1, {\"a\": null}]"));
}

TEST(JsonNumber, ReadsExactlyAndLikewiseUnderALocaleWithADecimalComma) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::pair<const wchar_t*, double> kRows[] = {
        {L"01", 1},    {L"-007.50", -7.5}, {L"-75E-1", -7.5},       {L"-0.75e+1", -7.5},
        {L"0.1", 0.1}, {L"1e-1", 0.1},     {L"-1e400", -kInfinity}, {L"1e-400", 0}};
    // The last one is known on Windows, the other one on some other systems.
    for (const char* locale : {"C", "de_DE.UTF-8", "German"}) {
        std::setlocale(LC_ALL, locale);
        for (const auto& [document, value] : kRows) {
            const auto node = Parse(document);
            ASSERT_TRUE(node && node->kind() == JSON::Number) << document;
            EXPECT_EQ(value, node->number()) << document;
        }
        EXPECT_EQ(L"[2.5,-0.125]", Rewritten(L"[2.5,-0.125]"));
        std::setlocale(LC_ALL, "C");
    }
    EXPECT_TRUE(std::signbit(Parse(L"-0")->number()));
    EXPECT_TRUE(std::signbit(Parse(L"-1e-400")->number()));
}

TEST(JsonNumber, IsWrittenWithFiveDecimalsAtMost) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const std::pair<const wchar_t*, std::vector<double>> kRows[] = {
        {L"-0.00001", {-0.00001}},
        {L"0.1", {0.1}},
        {L"-2147483649", {-2147483649.0}},
        {L"2147483648", {2147483648.0}},
        {L"10000000000000000000000", {1e22}},
        {L"0", {0, -0.0, 0.0000001, -0.000001}},
        {L"null", {kInfinity, -kInfinity, std::nan("")}},
        {L"0.00001", {0.000005}},
        {L"0.33333", {1.0 / 3}},
        {L"100000", {99999.999999, 100000}},
        {L"0.50001", {0.500015}},  // the double is just below
        {L"0.01562", {0.015625}},  // exact halves go to the even neighbour
        {L"0.04688", {0.046875}}};
    for (const auto& [text, numbers] : kRows) {
        for (const double number : numbers) {
            const Value node(number);
            EXPECT_EQ(text, Written(&node)) << number;
        }
    }
    const Value least(-std::numeric_limits<double>::max());
    EXPECT_EQ(310u, Written(&least).size());
}

TEST(JsonText, EscapesByUnit) {
    constexpr std::pair<wchar_t, const wchar_t*> kRows[] = {
        {0, L"\\u0000"},      {7, L"\\u0007"},      {8, L"\\b"},         {9, L"\\t"},
        {10, L"\\n"},         {11, L"\\u000b"},     {12, L"\\f"},        {13, L"\\r"},
        {31, L"\\u001f"},     {32, L" "},           {L'"', L"\\\""},     {L'/', L"\\/"},
        {L'\\', L"\\\\"},     {126, L"~"},          {127, L"\\u007f"},   {0xe9, L"\\u00e9"},
        {0x2028, L"\\u2028"}, {0xd83d, L"\\ud83d"}, {0xffff, L"\\uffff"}};
    for (const auto& [unit, ascii] : kRows) {
        const wstring plain = unit < 127 ? ascii : wstring(1, unit);
        // Behind 0 to 8 plain units, so that the unit stands at each place of a block; and in a key too.
        for (std::size_t before = 0; before <= 8; ++before) {
            const wstring start(before, L'x');
            Value node(JSON::Object);
            node.AddMember(start + unit, std::make_unique<Value>(RWWString(start + unit + L"y")));
            const auto expected = [&](const wstring& text) {
                return L"{\"" + start + text + L"\":\"" + start + text + L"y\"}";
            };
            EXPECT_EQ(expected(plain), Written(&node)) << before;
            EXPECT_EQ(expected(ascii), Written(&node, true)) << before;
        }
    }
}

TEST(JsonSerialize, PrettyBreaksLinesInContainersEvenInEmptyOnes) {
    EXPECT_EQ(L"{\r\n\t\"x\": 1\r\n}", Rewritten(L"{\"x\":1}", false, true));
    EXPECT_EQ(L"[\r\n\t{\r\n\t},\r\n\t{\r\n\t\t\"a\": [\r\n\t\t],\r\n\t\t\"b\": \"\\u00e9\"\r\n\t}\r\n]",
              Rewritten(L"[{},{\"b\":\"\u00e9\",\"a\":[]}]", true, true));
    EXPECT_EQ(L"7", Rewritten(L"7", false, true));
    EXPECT_EQ(L"", Written(nullptr));
}

TEST(JsonSerialize, UnknownKindGoesToTheAssertionHandler) {
    static wstring message;
    const auto record = [](const wchar_t* text) { message = text; };
    const auto standard = JSON::SetAssertionHandler(record);
    Value document(JSON::Array);
    document.AddElement(std::make_unique<Value>(static_cast<JSON::ValueKind>(6)));
    EXPECT_EQ(L"[null]", Written(&document));
    EXPECT_EQ(L"JSON, line 329:\nAssertion failure", message);
    EXPECT_EQ(+record, JSON::SetAssertionHandler(nullptr));
    EXPECT_EQ(standard, JSON::SetAssertionHandler(standard));
}

TEST(JsonValue, HoldsOnlyWhatItsKindSays) {
    Value ofEachKind(JSON::Array);
    for (const auto kind : {JSON::String, JSON::Number, JSON::Object, JSON::Array, JSON::Bool, JSON::Null})
        ofEachKind.AddElement(std::make_unique<Value>(kind));
    ofEachKind.AddElement(std::make_unique<Value>(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(L"[\"\",0,{},[],false,null,\"\"]", Written(&ofEachKind));
    EXPECT_TRUE(Value(true).flag());
    for (std::size_t i = 0; i < ofEachKind.ElementCount(); ++i) {
        const Value& value = *ofEachKind.Element(i);
        EXPECT_EQ(L"", value.text());
        EXPECT_EQ(0, value.number());
        EXPECT_FALSE(value.flag());
        EXPECT_EQ(nullptr, value.Element(0));
        EXPECT_EQ(nullptr, value.Member(L"a"));
    }
}

TEST(JsonValue, RefusedChildrenStayTheCallers) {
    Value object(JSON::Object), array(JSON::Array), null(JSON::Null);
    auto child = std::make_unique<Value>(1.0);
    for (Value* other : {&object, &null}) EXPECT_FALSE(other->AddElement(std::move(child))) << other->kind();
    for (Value* other : {&array, &null})
        EXPECT_FALSE(other->AddMember(L"a", std::move(child))) << other->kind();
    ASSERT_TRUE(object.AddMember(L"a", child->Clone()));
    EXPECT_FALSE(object.AddMember(L"a", std::move(child)));
    EXPECT_TRUE(child);
    EXPECT_FALSE(object.AddMember(L"b", nullptr));
    EXPECT_FALSE(array.AddElement(nullptr));
    EXPECT_EQ(L"{\"a\":1}", Written(&object));
}

TEST(JsonValue, WalkVisitsMembersInKeyOrderEvenWhileOthersAreAdded) {
    const auto document = Parse(L"{\"d\":4,\"b\":2}");
    RWWString key;
    EXPECT_EQ(2, document->FirstMember(key)->number());
    ASSERT_TRUE(document->AddMember(L"a", std::make_unique<Value>(0.0)));  // behind the walk
    ASSERT_TRUE(document->AddMember(L"c", std::make_unique<Value>(3.0)));  // before it
    for (const double next : {3.0, 4.0}) EXPECT_EQ(next, document->NextMember(key)->number());
    EXPECT_EQ(nullptr, document->NextMember(key));
    for (const wchar_t* memberless : {L"{}", L"[1]"}) EXPECT_EQ(nullptr, Parse(memberless)->FirstMember(key));
    EXPECT_EQ(L"d", key.str()) << "left alone where there is none";
}

TEST(JsonValue, ManyMembersInAnyOrderAreFoundAndKeptSorted) {
    Value object(JSON::Object);
    for (int i = 0; i < 1000; ++i) {
        const wstring key = std::to_wstring(1000 + i * 367 % 1000);
        ASSERT_TRUE(object.AddMember(key, std::make_unique<Value>(RWWString(key))));
        for (const wstring& known : {key, wstring(L"1000")})
            ASSERT_FALSE(object.AddMember(known, std::make_unique<Value>(L"again"))) << known;
    }
    const wstring written = Written(&object);
    Value copies(JSON::Array);
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(copies.AddElement(object.Clone()));
    EXPECT_EQ(L"[" + written + L"," + written + L"]", Written(&copies));
    RWWString key;
    int next = 1000;
    for (Value* node = object.NextMember(key); node; node = object.NextMember(key), ++next) {
        ASSERT_EQ(std::to_wstring(next), key.str());
        ASSERT_EQ(key.view(), node->text());
        ASSERT_EQ(node, object.Member(key));
    }
    EXPECT_EQ(2000, next);
    EXPECT_EQ(written, Written(&object));
    for (const wchar_t* absent : {L"1000x", L""}) EXPECT_EQ(nullptr, std::as_const(object).Member(absent));
}

TEST(JsonValue, ParsedAndHandMadeTreesCanBePutIntoOneAnother) {
    auto parsed = Parse(L"[{}]");
    for (int i = 0; i < 100; ++i) ASSERT_TRUE(parsed->AddElement(Parse(L"[\"text of another arena\"]")));
    auto handMade = std::make_unique<Value>(JSON::Array);
    ASSERT_TRUE(handMade->AddElement(Parse(L"{\"deep\":[]}")));
    ASSERT_TRUE(handMade->Element(0)->Member(L"deep")->AddElement(std::make_unique<Value>(L"leaf")));
    ASSERT_TRUE(parsed->Element(0)->AddMember(L"y", std::move(handMade)));
    const wstring written = Written(parsed.get()), start = L"[{\"y\":[{\"deep\":[\"leaf\"]}]},[\"text";
    EXPECT_EQ(start, written.substr(0, start.size()));
    EXPECT_EQ(101u, Parse(written)->ElementCount());
}

TEST(JsonValue, CopiesShareNothingWithTheOriginal) {
    auto original = Parse(L"{\"a\":[1,\"t\\u0000\"],\"b\":{}}");
    RWWString key;
    original->FirstMember(key);
    const auto copy = original->Clone(), part = original->Member(L"a")->Clone();
    ASSERT_TRUE(copy->Member(L"b")->AddMember(L"n", Value(false).Clone()));
    ASSERT_TRUE(original->Member(L"a")->AddElement(part->Element(1)->Clone()));
    EXPECT_EQ(1, copy->NextMember(key)->Element(0)->number()) << "a walk of its own";
    EXPECT_EQ(L"{\"a\":[1,\"t\\u0000\",\"t\\u0000\"],\"b\":{}}", Written(original.get()));
    original.reset();
    EXPECT_EQ(L"{\"a\":[1,\"t\\u0000\"],\"b\":{\"n\":false}}", Written(copy.get()));
    EXPECT_EQ(L"[1,\"t\\u0000\"]", Written(part.get()));
}

// A call on each level, and be it the shortest, would need more stack than any thread has.
TEST(JsonDepth, TwoMillionLevelsAreNoMatter) {
    constexpr std::size_t kPairs = 1'000'000;
    EXPECT_FALSE(Parse(wstring(2 * kPairs, L'[')));
    auto tree = std::make_unique<Value>(JSON::Array);
    for (std::size_t i = 1; i < 2 * kPairs; ++i) {
        auto outer = std::make_unique<Value>(JSON::Array);
        ASSERT_TRUE(outer->AddElement(std::move(tree)));
        tree = std::move(outer);
    }
    tree.reset();
    wstring document;
    for (std::size_t i = 0; i < kPairs; ++i) document += L"[{\"\":";
    document += L"[]";
    for (std::size_t i = 0; i < kPairs; ++i) document += L"}]";
    tree = Parse(document);
    ASSERT_TRUE(tree);
    EXPECT_TRUE(document == Written(tree.get())) << "megabytes differ";
    const auto copy = tree->Clone();
    tree.reset();
    EXPECT_TRUE(document == Written(copy.get())) << "megabytes differ";
}
