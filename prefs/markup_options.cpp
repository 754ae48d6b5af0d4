#include "prefs/markup_options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <iterator>
#include <span>

#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "settings/registry_values.h"
#include "text/characters.h"

const wchar_t* const ANNOT_CLR_SCHEME_NAMES[3] = {L"regular", L"nested", L"sequential"};
const wchar_t* const ANNOT_TYPE_NAMES[2] = {L"Footnote", L"Endnote"};
const wchar_t* const ANNOT_STYLE_NAMES[2] = {L"Numbers", L"Letters"};

const QLClrScheme DEF_ANNOT_CLR_SCHEME = RegularColors;
const QLAnnotType DEF_ANNOT_TYPE = FootnoteAnnotations;
const QLAnnotStyle DEF_ANNOT_STYLE = NumberedAnnotations;
const bool DEF_ANNOTATE_FIELDS = false;
const bool DEF_ANNOTATE_END = false;
const bool DEF_BOLD_ANNOT_MARKERS = false;
const bool DEF_BOLD_ANNOT_LABELS = false;
const bool DEF_ITALIC_ANNOT_MARKERS = false;
const bool DEF_ITALIC_ANNOT_LABELS = true;
const bool DEF_COLOR_ANNOT_MARKERS = true;
const bool DEF_COLOR_ANNOT_LABELS = true;

namespace {

constexpr unsigned long kPureGreen = 0x00ff00;  // for a default that cannot be read
constexpr const wchar_t* kNoMarker = L"NONE";

struct ColorEntry {
    const wchar_t* entry;
    const wchar_t* defaultColor;
};

// NOLINTNEXTLINE(clang-analyzer-optin.performance.Padding): in the order that rows are read in
struct KindRow {
    QLPrettyTplFieldType type;
    ColorEntry color;
    ColorEntry background;
    const wchar_t* processEntry;
    bool process;
    const wchar_t* beginEntry;
    const wchar_t* begin;
    const wchar_t* endEntry;
    const wchar_t* end;
};

#define QL_COLORS_OF(kind)                                                                 \
    {QLIE_TEXT_TEMPLATE_COLOR_##kind, QLIE_TEXT_TEMPLATE_COLOR_##kind##_DEFREGSTR}, {      \
        QLIE_TEXT_TEMPLATE_COLOR_##kind##_B, QLIE_TEXT_TEMPLATE_COLOR_##kind##_B_DEFREGSTR \
    }

constexpr KindRow kKindRows[] = {
    {VariableField, QL_COLORS_OF(VARIABLE), QLIE_PROCESS_VAR_FIELD, true, QLIE_VAR_FIELD_BEGIN, L"[",
     QLIE_VAR_FIELD_END, L"]"},
    {InsertionField, QL_COLORS_OF(INSERT), QLIE_PROCESS_INS_FIELD, true, QLIE_INS_FIELD_BEGIN, L"[",
     QLIE_INS_FIELD_END, L"]"},
    {ConditionalText, QL_COLORS_OF(IF), QLIE_PROCESS_COND_FIELD, true, QLIE_COND_TXT_BEGIN, L"[",
     QLIE_COND_TXT_END, L"]"},
    {AlternativeText, QL_COLORS_OF(IF), QLIE_PROCESS_ALT_FIELD, true, QLIE_ALT_TXT_BEGIN, L"][",
     QLIE_ALT_TXT_END, L"]["},
    {RepeatedText, QL_COLORS_OF(REPEAT), QLIE_PROCESS_RPT_TXT, true, QLIE_RPT_TXT_BEGIN, L"[",
     QLIE_RPT_TXT_END, L"]"},
    {EditableText, QL_COLORS_OF(SPAN), QLIE_PROCESS_EDIT_TXT, false, QLIE_EDIT_TXT_BEGIN, L"[",
     QLIE_EDIT_TXT_END, L"]"},
};
#undef QL_COLORS_OF

struct OptionRow {
    const wchar_t* entry;
    bool defaultValue;
};

// In the order of CPrettyTplOpt::Option.
constexpr OptionRow kOptionRows[] = {
    {QLIE_USE_DEV_CMTS_FOR_ANS_FIELDS, false},
    {QLIE_USE_DEV_CMTS_FOR_TEXT_BLOCKS, false},
    {QLIE_USE_MC_OPTS, true},
    {QLIE_ENCLOSE_LABELS, true},
    {QLIE_LABEL_END_OF_FIELD, false},
    {QLIE_ANNOTATE_FIELDS, DEF_ANNOTATE_FIELDS},
    {QLIE_ANNOTATE_END, DEF_ANNOTATE_END},
    {QLIE_BOLD_ANNOT_MARKERS, DEF_BOLD_ANNOT_MARKERS},
    {QLIE_BOLD_ANNOT_LABELS, DEF_BOLD_ANNOT_LABELS},
    {QLIE_ITALIC_ANNOT_MARKERS, DEF_ITALIC_ANNOT_MARKERS},
    {QLIE_ITALIC_ANNOT_LABELS, DEF_ITALIC_ANNOT_LABELS},
    {QLIE_COLOR_ANNOT_MARKERS, DEF_COLOR_ANNOT_MARKERS},
    {QLIE_COLOR_ANNOT_LABELS, DEF_COLOR_ANNOT_LABELS},
};

unsigned long DefaultColor(const wchar_t* text) {
    return ql::ColorOf(text, kPureGreen);
}

unsigned long LoadColor(const ColorEntry& color) {
    return GetQLRegColor(QLIS_DEVELOPMENT, color.entry, DefaultColor(color.defaultColor));
}

// The entries of a numbered colour and their defaults, spelt out once: a view makes its options each time it
// needs them.
struct LevelEntries {
    LevelEntries(const wchar_t* pattern, const wchar_t* const (&defaults)[kPreferenceColorTiers]) {
        for (std::size_t level = 0; level < kPreferenceColorTiers; ++level) {
            std::swprintf(entries[level].data(), entries[level].size(), pattern, static_cast<int>(level) + 1);
            colors[level] = DefaultColor(defaults[level]);
        }
    }

    void Load(std::span<unsigned long, kPreferenceColorTiers> target) const {
        for (std::size_t level = 0; level < kPreferenceColorTiers; ++level)
            target[level] = GetQLRegColor(QLIS_DEVELOPMENT, entries[level].data(), colors[level]);
    }

    std::array<std::array<wchar_t, 32>, kPreferenceColorTiers> entries;
    std::array<unsigned long, kPreferenceColorTiers> colors;
};

template <class Choice, std::size_t kCount>
Choice LoadChoice(const wchar_t* entry, const wchar_t* const (&names)[kCount], Choice defaultChoice) {
    const RWWString text = GetQLRegString(QLIS_ANNOTATION, entry, names[defaultChoice]);
    const auto name = std::find_if(std::begin(names), std::end(names),
                                   [&](const wchar_t* n) { return ql::EqualIgnoringCase(n, text); });
    return name == std::end(names) ? defaultChoice : static_cast<Choice>(name - std::begin(names));
}

}  // namespace

CPrettyTplOpt::CPrettyTplOpt()
    : scheme_(LoadChoice(QLIE_COLOR_SELECTION, ANNOT_CLR_SCHEME_NAMES, DEF_ANNOT_CLR_SCHEME)),
      annotType_(LoadChoice(QLIE_ANNOT_TYPE, ANNOT_TYPE_NAMES, DEF_ANNOT_TYPE)),
      annotStyle_(LoadChoice(QLIE_ANNOT_STYLE, ANNOT_STYLE_NAMES, DEF_ANNOT_STYLE)) {
    LoadLevels();
    LoadKinds();
    LoadOptions();
}

CPrettyTplOpt::CPrettyTplOpt(const CPrettyTplOpt&) = default;
CPrettyTplOpt& CPrettyTplOpt::operator=(const CPrettyTplOpt&) = default;
CPrettyTplOpt::~CPrettyTplOpt() = default;

void CPrettyTplOpt::LoadLevels() {
    static_assert(kLevels == kPreferenceColorTiers);
    static const LevelEntries sequential(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL,
                                         QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_DEFREGSTR);
    static const LevelEntries sequentialB(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B,
                                          QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B_DEFREGSTR);
    static const LevelEntries nested(QLIE_TEXT_TEMPLATE_COLOR_TIERED,
                                     QLIE_TEXT_TEMPLATE_COLOR_TIERED_DEFREGSTR);
    static const LevelEntries nestedB(QLIE_TEXT_TEMPLATE_COLOR_TIERED_B,
                                      QLIE_TEXT_TEMPLATE_COLOR_TIERED_B_DEFREGSTR);
    sequential.Load(sequential_);
    sequentialB.Load(sequentialB_);
    nested.Load(nested_);
    nestedB.Load(nestedB_);
}

void CPrettyTplOpt::LoadKinds() {
    static_assert(std::size(kKindRows) == kKinds);
    for (const KindRow& row : kKindRows) {
        kinds_[static_cast<std::size_t>(row.type)] = {
            .color = LoadColor(row.color),
            .bColor = LoadColor(row.background),
            .process = GetQLRegBool(QLIS_ANNOTATION, row.processEntry, row.process),
            .begin = GetFieldMarker(row.beginEntry, row.begin),
            .end = GetFieldMarker(row.endEntry, row.end)};
    }
}

void CPrettyTplOpt::LoadOptions() {
    static_assert(std::size(kOptionRows) == kOptions);
    std::transform(
        std::begin(kOptionRows), std::end(kOptionRows), options_.begin(),
        [](const OptionRow& row) { return GetQLRegBool(QLIS_ANNOTATION, row.entry, row.defaultValue); });
}

RWWString CPrettyTplOpt::GetFieldMarker(const wchar_t* entry, const wchar_t* defaultText) {
    RWWString marker = GetQLRegString(QLIS_ANNOTATION, entry, defaultText);
    if (ql::EqualIgnoringCase(marker, kNoMarker)) marker.clear();
    return marker;
}

const CPrettyTplOpt::Kind& CPrettyTplOpt::KindOf(QLPrettyTplFieldType type) const noexcept {
    static const Kind unknown;
    const auto index = static_cast<unsigned>(type);
    return index < kKinds ? kinds_[index] : unknown;
}

void CPrettyTplOpt::SetProcessField(QLPrettyTplFieldType type, bool process) noexcept {
    const auto index = static_cast<unsigned>(type);
    if (index < kKinds) kinds_[index].process = process;
}

const unsigned long* CPrettyTplOpt::GetColors(unsigned* count) noexcept {
    if (distinctCount_ == 0) {
        for (const LevelColors* levels : {&sequential_, &sequentialB_, &nested_, &nestedB_}) {
            for (const unsigned long color : *levels) AddColor(color);
        }
        for (const Kind& kind : kinds_) AddColor(kind.color);
        for (const Kind& kind : kinds_) AddColor(kind.bColor);
    }
    if (count) *count = distinctCount_;
    return distinct_.data();
}

void CPrettyTplOpt::AddColor(unsigned long color) noexcept {
    const auto end = distinct_.begin() + distinctCount_;
    if (std::find(distinct_.begin(), end, color) == end) distinct_[distinctCount_++] = color;
}
