#include "prefs/markup_options.h"

#include <gtest/gtest.h>

#include <vector>

#include "settings/preferences.h"
#include "tests/support/private_registry.h"

namespace {

using Type = QLPrettyTplFieldType;

constexpr unsigned long Rgb(unsigned long red, unsigned long green, unsigned long blue) {
    return red | green << 8 | blue << 16;
}
constexpr unsigned long kWhite = Rgb(255, 255, 255);

// With a store that knows nothing, and with one that knows every preference of the options.
class MarkupOptions : public SettingsTest, public ::testing::WithParamInterface<bool> {
  protected:
    MarkupOptions() {
        if (GetParam()) CPrettyTplOpt();
    }
};

INSTANTIATE_TEST_SUITE_P(, MarkupOptions, ::testing::Bool(),
                         [](const auto& known) { return known.param ? "Known" : "Unknown"; });

std::vector<unsigned long> ColorsOf(CPrettyTplOpt& options) {
    unsigned count = 0;
    const unsigned long* const colors = options.GetColors(&count);
    EXPECT_EQ(colors, options.GetColors(nullptr)) << "found once";
    return {colors, colors + count};
}

TEST_P(MarkupOptions, KindsAndLevelsHaveTheirDefaultsAndLevelsStartAgainAfterTwenty) {
    CPrettyTplOpt options;
    EXPECT_EQ(13u, ColorsOf(options).size());
    const std::tuple<unsigned long, const wchar_t*, const wchar_t*> kKinds[] = {
        {Rgb(0, 0, 255), L"[", L"]"},
        {Rgb(152, 0, 200), L"[", L"]"},
        {Rgb(0, 128, 0), L"[", L"]"},
        {Rgb(0, 128, 0), L"][", L"]["},
        {Rgb(180, 0, 0), L"[", L"]"},
        {Rgb(0, 128, 128), L"[", L"]"},
        {0, L"", L""}};
    for (unsigned i = 0; i < std::size(kKinds); ++i) {
        const auto type = static_cast<Type>(i);
        const auto& [color, begin, end] = kKinds[i];
        EXPECT_EQ(color, options.GetFieldColor(type)) << i;
        EXPECT_EQ(i < 6 ? kWhite : 0, options.GetFieldBColor(type)) << i;
        EXPECT_STREQ(begin, options.GetBeginText(type)) << i;
        EXPECT_STREQ(end, options.GetEndText(type)) << i;
    }
    EXPECT_FALSE(options.GetProcessField(static_cast<Type>(6)));
    EXPECT_EQ(0u, options.GetFieldColor(static_cast<Type>(-1)));
    constexpr unsigned long kFive[] = {Rgb(0, 128, 0), Rgb(128, 0, 128), Rgb(192, 0, 0), Rgb(128, 128, 0),
                                       Rgb(255, 128, 128)};
    constexpr unsigned long kBack[] = {kWhite, Rgb(255, 255, 192), Rgb(192, 255, 255), Rgb(255, 192, 255)};
    for (const unsigned level : {0u, 1u, 2u, 3u, 4u, 5u, 9u, 10u, 15u, 19u, 20u, 4294967295u}) {
        EXPECT_EQ(kFive[level % 5], options.GetSeqColor(level)) << level;
        EXPECT_EQ(kFive[level % 5], options.GetNestColor(level)) << level;
        EXPECT_EQ(kBack[level % 20 / 5], options.GetSeqBColor(level)) << level;
        EXPECT_EQ(kWhite, options.GetNestBColor(level)) << level;
    }
}

template <auto kGet>
bool Has(const CPrettyTplOpt& options) {
    return (options.*kGet)();
}
template <Type kType>
bool Processes(const CPrettyTplOpt& options) {
    return options.GetProcessField(kType);
}

constexpr struct {
    const wchar_t* entry;
    bool (*get)(const CPrettyTplOpt&);
    bool byDefault;
} kFlags[] = {
    {L"Use Multiple Choice Options", Has<&CPrettyTplOpt::GetUseMCOptions>, true},
    {L"Enclose Labels in Markers", Has<&CPrettyTplOpt::GetEncloseLabelsInMarkers>, true},
    {L"Italic Labels", Has<&CPrettyTplOpt::GetItalicLabels>, true},
    {L"Color Markers", Has<&CPrettyTplOpt::GetColorMarkers>, true},
    {L"Color Labels", Has<&CPrettyTplOpt::GetColorLabels>, true},
    {L"Use Developer Comments For Answer Fields", Has<&CPrettyTplOpt::GetUseDevCmtsForAnsFields>, false},
    {L"Use Developer Comments For Text Blocks", Has<&CPrettyTplOpt::GetUseDevCmtsForTextBlocks>, false},
    {L"Label End of Field", Has<&CPrettyTplOpt::GetLabelEndOfField>, false},
    {L"Annotate Fields", Has<&CPrettyTplOpt::GetAnnotateFields>, false},
    {L"Annotate End", Has<&CPrettyTplOpt::GetAnnotateEnd>, false},
    {L"Bold Markers", Has<&CPrettyTplOpt::GetBoldMarkers>, false},
    {L"Bold Labels", Has<&CPrettyTplOpt::GetBoldLabels>, false},
    {L"Italic Markers", Has<&CPrettyTplOpt::GetItalicMarkers>, false},
    {L"Process Variable Field", Processes<VariableField>, true},
    {L"Process Insertion Field", Processes<InsertionField>, true},
    {L"Process Conditional Text", Processes<ConditionalText>, true},
    {L"Process Alternative Text", Processes<AlternativeText>, true},
    {L"Process Repeated Text", Processes<RepeatedText>, true},
    {L"Process Editable Text", Processes<EditableText>, false}};

// Every boolean by its entry: the default, and the other value, of it alone, when that is stored.
TEST_P(MarkupOptions, FlagsAreReadFromTheirOwnEntries) {
    for (const auto& stored : kFlags) {
        WriteQLRegBool(L"Markup View", stored.entry, !stored.byDefault);
        const CPrettyTplOpt options;
        for (const auto& flag : kFlags)
            EXPECT_EQ(flag.byDefault != (&flag == &stored), flag.get(options))
                << stored.entry << ": " << flag.entry;
        WriteQLRegBool(L"Markup View", stored.entry, stored.byDefault);
    }
}

TEST_P(MarkupOptions, MarkersAreTheStoredTextsAndNoneIsEmpty) {
    WriteQLRegString(L"Markup View", L"Variable Field Begin", L"none");
    WriteQLRegString(L"Markup View", L"Variable Field End", L"NONE ");
    WriteQLRegString(L"Markup View", L"Editable Text End", L"«");
    WriteQLRegString(L"Markup View", L"Repeated Text Begin", L"");
    const CPrettyTplOpt options;
    EXPECT_STREQ(L"", options.GetBeginText(VariableField));
    EXPECT_STREQ(L"NONE ", options.GetEndText(VariableField));
    EXPECT_STREQ(L"«", options.GetEndText(EditableText));
    EXPECT_STREQ(L"[", options.GetBeginText(RepeatedText)) << "an empty preference is none";
}

TEST(MarkupOptionsWithoutStores, AreReadFromTheRegistry) {
    PrivateRegistry registry;
    registry.Put(kUser, L"Markup View", L"Variable Field End", L"end");
    EXPECT_STREQ(L"end", CPrettyTplOpt().GetEndText(VariableField));
}

TEST_P(MarkupOptions, ChoicesAreReadByNameIgnoringCase) {
    const struct {
        const wchar_t *scheme, *type, *style;
        QLClrScheme colors;
        QLAnnotType annotation;
        QLAnnotStyle numbering;
    } kCases[] = {
        {L"Nested", L"ENDNOTE", L"letters", NestedColors, EndnoteAnnotations, LetteredAnnotations},
        {L"SEQUENTIAL", L"footnote", L"Numbers", SequentialColors, FootnoteAnnotations, NumberedAnnotations},
        {L"gradient", L"", L"1", RegularColors, FootnoteAnnotations, NumberedAnnotations}};
    for (const auto& c : kCases) {
        WriteQLRegString(L"Markup View", L"Color Selection", c.scheme);
        WriteQLRegString(L"Markup View", L"Annotation Type", c.type);
        WriteQLRegString(L"Markup View", L"Annotation Style", c.style);
        const CPrettyTplOpt options;
        EXPECT_EQ(c.colors, options.GetClrScheme()) << c.scheme;
        EXPECT_EQ(c.annotation, options.GetAnnotType()) << c.type;
        EXPECT_EQ(c.numbering, options.GetAnnotStyle()) << c.style;
    }
}

// Stores the colours 0, 1, 2 ... from entry to entry; alternative text has those of conditional text.
TEST_P(MarkupOptions, EveryColorIsReadFromItsOwnEntryAndListedOnce) {
    unsigned long next = 0;
    const auto put = [&](const std::wstring& entry) {
        WriteQLRegColor(L"Development", (L"Template " + entry).c_str(), next++);
    };
    for (const wchar_t* levels : {L"Sequential ", L"Sequential B ", L"Nested ", L"Nested B "})
        for (int level = 1; level <= 20; ++level) put(levels + std::to_wstring(level));
    for (const wchar_t* kind : {L"Var", L"Insert", L"If", L"Repeat", L"Span", L"Var B", L"Insert B", L"If B",
                                L"Repeat B", L"Span B"}) {
        put(kind);
    }
    CPrettyTplOpt options;
    std::vector<unsigned long> found;
    for (const auto get : {&CPrettyTplOpt::GetSeqColor, &CPrettyTplOpt::GetSeqBColor,
                           &CPrettyTplOpt::GetNestColor, &CPrettyTplOpt::GetNestBColor})
        for (unsigned level = 0; level < 20; ++level) found.push_back((options.*get)(level));
    constexpr Type kKinds[] = {VariableField, InsertionField, ConditionalText, RepeatedText, EditableText};
    for (const Type kind : kKinds) found.push_back(options.GetFieldColor(kind));
    for (const Type kind : kKinds) found.push_back(options.GetFieldBColor(kind));
    EXPECT_EQ(90u, next);
    EXPECT_EQ(found, ColorsOf(options));
    for (std::size_t i = 0; i < found.size(); ++i) EXPECT_EQ(i, found[i]);
    EXPECT_EQ(82u, options.GetFieldColor(AlternativeText));
    EXPECT_EQ(87u, options.GetFieldBColor(AlternativeText));
    WriteQLRegString(L"Development", L"Template Repeat", L"not a colour");
    EXPECT_EQ(Rgb(180, 0, 0), CPrettyTplOpt().GetFieldColor(RepeatedText));
}

TEST_P(MarkupOptions, AreASnapshotOfTheThreadsOwnSettingsAndCopiesAreIndependent) {
    CPrettyTplOpt first;
    ColorsOf(first);
    first.SetProcessField(EditableText, true);
    first.SetProcessField(static_cast<Type>(6), true);
    WriteQLRegString(L"Markup View", L"Variable Field Begin", L"<<");
    WriteQLRegString(L"Development", L"Template Var", L"1,2,3");
    EXPECT_STREQ(L"[", first.GetBeginText(VariableField));
    CPrettyTplOpt copy = first;
    copy.SetProcessField(VariableField, false);
    EXPECT_TRUE(copy.GetProcessField(EditableText));
    EXPECT_TRUE(first.GetProcessField(VariableField));
    EXPECT_EQ(ColorsOf(first), ColorsOf(copy));
    EXPECT_NE(first.GetColors(nullptr), copy.GetColors(nullptr));
    copy = CPrettyTplOpt();
    EXPECT_STREQ(L"<<", copy.GetBeginText(VariableField));
    EXPECT_FALSE(copy.GetProcessField(EditableText)) << "setting changed the object alone";
    EXPECT_EQ(Rgb(1, 2, 3), ColorsOf(copy)[9]);
    CQlsSettings::SetThreadRegStrSetting(L"Markup View", L"Color Selection", L"nested");
    EXPECT_EQ(NestedColors, CPrettyTplOpt().GetClrScheme());
    EXPECT_EQ(PrivateRegistry::Stored{}, PrivateRegistry::Get(L"Markup View", L"Color Selection"));
}

}  // namespace
