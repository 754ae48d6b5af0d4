#include "prefs/markup_options.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <iterator>
#include <vector>

#include "settings/preferences.h"
#include "tests/settings/private_registry.h"

namespace {

using Type = QLPrettyTplFieldType;

constexpr unsigned long Rgb(unsigned long red, unsigned long green, unsigned long blue) {
    return red | green << 8 | blue << 16;
}
constexpr unsigned long kWhite = Rgb(255, 255, 255);

class MarkupOptions : public testing::Test {
  protected:
    static void Put(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
        WriteQLRegString(section, entry, text);
    }

    PrivateRegistry registry_;
    SettingsProcess process_;
    SettingsThread thread_;
};

TEST_F(MarkupOptions, KindsHaveTheirDefaults) {
    const CPrettyTplOpt options;
    const struct {
        unsigned long color;
        bool process;
        const wchar_t* begin;
        const wchar_t* end;
    } kKinds[] = {{Rgb(0, 0, 255), true, L"[", L"]"},
                  {Rgb(152, 0, 200), true, L"[", L"]"},
                  {Rgb(0, 128, 0), true, L"[", L"]"},
                  {Rgb(0, 128, 0), true, L"][", L"]["},
                  {Rgb(180, 0, 0), true, L"[", L"]"},
                  {Rgb(0, 128, 128), false, L"[", L"]"},
                  {0, false, L"", L""}};
    for (unsigned i = 0; i < std::size(kKinds); ++i) {
        const auto type = static_cast<Type>(i);
        EXPECT_EQ(kKinds[i].color, options.GetFieldColor(type)) << i;
        EXPECT_EQ(i < 6 ? kWhite : 0, options.GetFieldBColor(type)) << i;
        EXPECT_EQ(kKinds[i].process, options.GetProcessField(type)) << i;
        EXPECT_STREQ(kKinds[i].begin, options.GetBeginText(type)) << i;
        EXPECT_STREQ(kKinds[i].end, options.GetEndText(type)) << i;
    }
    EXPECT_EQ(0u, options.GetFieldColor(static_cast<Type>(-1)));
}

TEST_F(MarkupOptions, LevelsHaveTheirDefaultsAndStartAgainAfterTwenty) {
    const CPrettyTplOpt options;
    constexpr unsigned long kFive[] = {Rgb(0, 128, 0), Rgb(128, 0, 128), Rgb(192, 0, 0), Rgb(128, 128, 0),
                                       Rgb(255, 128, 128)};
    constexpr unsigned long kBack[] = {kWhite, Rgb(255, 255, 192), Rgb(192, 255, 255), Rgb(255, 192, 255)};
    for (unsigned level = 0; level < 45; ++level) {
        EXPECT_EQ(kFive[level % 5], options.GetSeqColor(level)) << level;
        EXPECT_EQ(kFive[level % 5], options.GetNestColor(level)) << level;
        EXPECT_EQ(kBack[level % 20 / 5], options.GetSeqBColor(level)) << level;
        EXPECT_EQ(kWhite, options.GetNestBColor(level)) << level;
    }
    EXPECT_EQ(options.GetSeqColor(4294967295u % 20), options.GetSeqColor(4294967295u));
}

// Every boolean by its entry: the default, and the other value when that is stored.
TEST_F(MarkupOptions, OptionsAreReadFromTheirOwnEntries) {
    using Options = const CPrettyTplOpt;
    const struct {
        const wchar_t* entry;
        bool (*get)(Options&);
        bool isSet;
    } kRows[] = {
        {L"Process Variable Field", [](Options& o) { return o.GetProcessField(VariableField); }, true},
        {L"Process Insertion Field", [](Options& o) { return o.GetProcessField(InsertionField); }, true},
        {L"Process Conditional Text", [](Options& o) { return o.GetProcessField(ConditionalText); }, true},
        {L"Process Alternative Text", [](Options& o) { return o.GetProcessField(AlternativeText); }, true},
        {L"Process Repeated Text", [](Options& o) { return o.GetProcessField(RepeatedText); }, true},
        {L"Process Editable Text", [](Options& o) { return o.GetProcessField(EditableText); }, false},
        {L"Use Developer Comments For Answer Fields",
         [](Options& o) { return o.GetUseDevCmtsForAnsFields(); }, false},
        {L"Use Developer Comments For Text Blocks", [](Options& o) { return o.GetUseDevCmtsForTextBlocks(); },
         false},
        {L"Use Multiple Choice Options", [](Options& o) { return o.GetUseMCOptions(); }, true},
        {L"Enclose Labels in Markers", [](Options& o) { return o.GetEncloseLabelsInMarkers(); }, true},
        {L"Label End of Field", [](Options& o) { return o.GetLabelEndOfField(); }, false},
        {L"Annotate Fields", [](Options& o) { return o.GetAnnotateFields(); }, false},
        {L"Annotate End", [](Options& o) { return o.GetAnnotateEnd(); }, false},
        {L"Bold Markers", [](Options& o) { return o.GetBoldMarkers(); }, false},
        {L"Bold Labels", [](Options& o) { return o.GetBoldLabels(); }, false},
        {L"Italic Markers", [](Options& o) { return o.GetItalicMarkers(); }, false},
        {L"Italic Labels", [](Options& o) { return o.GetItalicLabels(); }, true},
        {L"Color Markers", [](Options& o) { return o.GetColorMarkers(); }, true},
        {L"Color Labels", [](Options& o) { return o.GetColorLabels(); }, true},
    };
    for (const auto& stored : kRows) {
        WriteQLRegBool(L"Markup View", stored.entry, !stored.isSet);
        const CPrettyTplOpt options;
        for (const auto& row : kRows) {
            EXPECT_EQ(row.isSet != (&row == &stored), row.get(options))
                << row.entry << L" / " << stored.entry;
        }
        WriteQLRegBool(L"Markup View", stored.entry, stored.isSet);
    }
}

TEST_F(MarkupOptions, ColorsAreReadFromTheirOwnEntries) {
    Put(L"Development", L"Template Var", L"1,2,3");
    Put(L"Development", L"Template Insert B", L"4,5,6");
    Put(L"Development", L"Template If", L"7,8,9");
    Put(L"Development", L"Template Repeat", L"not a colour");
    Put(L"Development", L"Template Sequential 1", L"10,0,0");
    Put(L"Development", L"Template Sequential B 20", L"11,0,0");
    Put(L"Development", L"Template Nested 4", L"12,0,0");
    Put(L"Development", L"Template Nested B 7", L"300,0,0");
    const CPrettyTplOpt options;
    EXPECT_EQ(Rgb(1, 2, 3), options.GetFieldColor(VariableField));
    EXPECT_EQ(Rgb(4, 5, 6), options.GetFieldBColor(InsertionField));
    EXPECT_EQ(Rgb(7, 8, 9), options.GetFieldColor(ConditionalText));
    EXPECT_EQ(Rgb(7, 8, 9), options.GetFieldColor(AlternativeText));
    EXPECT_EQ(Rgb(180, 0, 0), options.GetFieldColor(RepeatedText)) << "unreadable";
    EXPECT_EQ(Rgb(10, 0, 0), options.GetSeqColor(0));
    EXPECT_EQ(Rgb(11, 0, 0), options.GetSeqBColor(19));
    EXPECT_EQ(Rgb(12, 0, 0), options.GetNestColor(23));
    EXPECT_EQ(Rgb(44, 0, 0), options.GetNestBColor(6));
}

TEST_F(MarkupOptions, MarkersAreTheStoredTextsAndNoneIsEmpty) {
    Put(L"Markup View", L"Variable Field Begin", L"none");
    Put(L"Markup View", L"Variable Field End", L"NONE ");
    Put(L"Markup View", L"Editable Text End", L"«");
    Put(L"Markup View", L"Repeated Text Begin", L"");
    const CPrettyTplOpt options;
    EXPECT_STREQ(L"", options.GetBeginText(VariableField));
    EXPECT_STREQ(L"NONE ", options.GetEndText(VariableField));
    EXPECT_STREQ(L"«", options.GetEndText(EditableText));
    EXPECT_STREQ(L"[", options.GetBeginText(RepeatedText)) << "an empty preference is none";
}

TEST_F(MarkupOptions, ChoicesAreReadByNameIgnoringCase) {
    const struct {
        const wchar_t* scheme;
        const wchar_t* type;
        const wchar_t* style;
        int numbers[3];
    } kCases[] = {{L"Nested", L"ENDNOTE", L"letters", {1, 1, 1}},
                  {L"SEQUENTIAL", L"footnote", L"Numbers", {2, 0, 0}},
                  {L"regular", L"Endnotes", L"Roman", {0, 0, 0}},
                  {L"gradient", L"", L"1", {0, 0, 0}}};
    for (const auto& c : kCases) {
        Put(L"Markup View", L"Color Selection", c.scheme);
        Put(L"Markup View", L"Annotation Type", c.type);
        Put(L"Markup View", L"Annotation Style", c.style);
        const CPrettyTplOpt options;
        EXPECT_EQ(c.numbers[0], options.GetClrScheme()) << c.scheme;
        EXPECT_EQ(c.numbers[1], options.GetAnnotType()) << c.type;
        EXPECT_EQ(c.numbers[2], options.GetAnnotStyle()) << c.style;
    }
}

std::vector<unsigned long> ColorsOf(CPrettyTplOpt& options) {
    unsigned count = 0;
    const unsigned long* const colors = options.GetColors(&count);
    EXPECT_EQ(colors, options.GetColors(nullptr)) << "found once";
    return {colors, colors + count};
}

TEST_F(MarkupOptions, TheDefaultsHaveThirteenDistinctColors) {
    CPrettyTplOpt options;
    const std::vector<unsigned long> expected = {
        Rgb(0, 128, 0),   Rgb(128, 0, 128),   Rgb(192, 0, 0),     Rgb(128, 128, 0),   Rgb(255, 128, 128),
        kWhite,           Rgb(255, 255, 192), Rgb(192, 255, 255), Rgb(255, 192, 255), Rgb(0, 0, 255),
        Rgb(152, 0, 200), Rgb(180, 0, 0),     Rgb(0, 128, 128)};
    EXPECT_EQ(expected, ColorsOf(options));
}

TEST_F(MarkupOptions, EveryColorOfTheStoreCanDiffer) {
    unsigned long next = 0;
    const auto put = [&](const wchar_t* entry) { WriteQLRegColor(L"Development", entry, next++); };
    for (const wchar_t* pattern : {L"Template Sequential %d", L"Template Sequential B %d",
                                   L"Template Nested %d", L"Template Nested B %d"}) {
        for (int level = 1; level <= 20; ++level) {
            wchar_t entry[64];
            std::swprintf(entry, std::size(entry), pattern, level);
            put(entry);
        }
    }
    for (const wchar_t* entry : {L"Template Var", L"Template Insert", L"Template If", L"Template Repeat",
                                 L"Template Span", L"Template Var B", L"Template Insert B", L"Template If B",
                                 L"Template Repeat B", L"Template Span B"}) {
        put(entry);
    }
    CPrettyTplOpt options;
    std::vector<unsigned long> expected;
    for (unsigned long color = 0; color < next; ++color) expected.push_back(color);
    EXPECT_EQ(90u, next);
    EXPECT_EQ(expected, ColorsOf(options));
}

TEST_F(MarkupOptions, AreASnapshotAndCopiesAreIndependent) {
    CPrettyTplOpt first;
    ColorsOf(first);
    first.SetProcessField(EditableText, true);
    first.SetProcessField(static_cast<Type>(6), true);
    Put(L"Markup View", L"Variable Field Begin", L"<<");
    Put(L"Development", L"Template Var", L"1,2,3");
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
}

TEST_F(MarkupOptions, FollowTheThreadsOwnSettings) {
    CQlsSettings::SetThreadRegStrSetting(L"Markup View", L"Color Selection", L"nested");
    EXPECT_EQ(NestedColors, CPrettyTplOpt().GetClrScheme());
    EXPECT_EQ(REG_NONE, static_cast<int>(PrivateRegistry::Get(L"Markup View", L"Color Selection").type));
}

}  // namespace
