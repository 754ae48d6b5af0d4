#include "prefs/markup_options.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <iterator>
#include <span>

#include "platform/failure.h"
#include "settings/known_settings.h"
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

// The preferences that options are made of, one read after the other.
struct EverydayReads {
    bool Flag(const wchar_t* entry, bool defaultValue) const {
        return GetQLRegBool(QLIS_ANNOTATION, entry, defaultValue);
    }
    RWWString Text(const wchar_t* entry, const wchar_t* defaultText) const {
        return GetQLRegString(QLIS_ANNOTATION, entry, defaultText);
    }
    unsigned long Color(const wchar_t* entry, unsigned long defaultColor) const {
        return GetQLRegColor(QLIS_DEVELOPMENT, entry, defaultColor);
    }
};

// The same from what a store knows, all at one moment. Notes whether anything was unknown.
class KnownReads {
  public:
    explicit KnownReads(const ql::SettingsDictionary& known) : known_(known) {}

    bool Flag(const wchar_t* entry, bool defaultValue) {
        const ql::Setting* const setting = Find(QLIS_ANNOTATION, entry, ql::SettingType::Boolean);
        return setting ? setting->number() != 0 : defaultValue;
    }
    RWWString Text(const wchar_t* entry, const wchar_t* defaultText) {
        const std::wstring_view text = TextIn(QLIS_ANNOTATION, entry);
        return text.empty() ? RWWString(defaultText) : RWWString(text);
    }
    unsigned long Color(const wchar_t* entry, unsigned long defaultColor) {
        const std::wstring_view text = TextIn(QLIS_DEVELOPMENT, entry);
        return text.empty() ? defaultColor : ql::ColorOf(RWWString(text), defaultColor);
    }
    bool foundAll() const { return foundAll_; }

  private:
    // Null for a setting of another type, too.
    const ql::Setting* Find(const wchar_t* section, const wchar_t* entry, ql::SettingType type) {
        const ql::Setting* const setting = known_.Find(ql::SettingKey(section, entry));
        if (!setting) foundAll_ = false;
        return setting && setting->type() == type ? setting : nullptr;
    }
    std::wstring_view TextIn(const wchar_t* section, const wchar_t* entry) {
        const ql::Setting* const setting = Find(section, entry, ql::SettingType::Text);
        return setting ? setting->text() : std::wstring_view();
    }

    const ql::SettingsDictionary& known_;
    bool foundAll_ = true;
};

// The entries of a numbered colour and their defaults, spelt out once: a view makes its options each time it
// needs them.
struct LevelEntries {
    LevelEntries(const wchar_t* pattern, const wchar_t* const (&defaults)[kPreferenceColorTiers]) {
        int level = 0;
        for (auto& entry : entries) std::swprintf(entry.data(), entry.size(), pattern, ++level);
        std::ranges::transform(defaults, colors.begin(), DefaultColor);
    }

    template <class Reads>
    void Load(Reads& reads, std::span<unsigned long, kPreferenceColorTiers> target) const {
        std::ranges::transform(
            entries, colors, target.begin(),
            [&reads](const auto& entry, unsigned long color) { return reads.Color(entry.data(), color); });
    }

    std::array<std::array<wchar_t, 32>, kPreferenceColorTiers> entries;
    std::array<unsigned long, kPreferenceColorTiers> colors;
};

template <class Choice, std::size_t kCount>
Choice ChoiceOf(const RWWString& text, const wchar_t* const (&names)[kCount], Choice defaultChoice) {
    const auto name = std::find_if(std::begin(names), std::end(names),
                                   [&](const wchar_t* n) { return ql::EqualIgnoringCase(n, text); });
    return name == std::end(names) ? defaultChoice : static_cast<Choice>(name - std::begin(names));
}

RWWString Marker(RWWString text) {
    if (ql::EqualIgnoringCase(text, kNoMarker)) text.clear();
    return text;
}

}  // namespace

CPrettyTplOpt::CPrettyTplOpt() {
    const bool areKnown = ql::FailureIfThrown(false, [this] {
        return ql::WithKnownSettings([this](const ql::SettingsDictionary& known) {
            KnownReads reads(known);
            Load(reads);
            return reads.foundAll();
        });
    });
    if (areKnown) return;
    EverydayReads reads;
    Load(reads);
}

template <class Reads>
void CPrettyTplOpt::Load(Reads& reads) {
    LoadChoices(reads);
    LoadLevels(reads);
    LoadKinds(reads);
    LoadOptions(reads);
}

template <class Reads>
void CPrettyTplOpt::LoadChoices(Reads& reads) {
    const auto choice = [&reads](const wchar_t* entry, const auto& names, auto defaultChoice) {
        return ChoiceOf(reads.Text(entry, names[defaultChoice]), names, defaultChoice);
    };
    scheme_ = choice(QLIE_COLOR_SELECTION, ANNOT_CLR_SCHEME_NAMES, DEF_ANNOT_CLR_SCHEME);
    annotType_ = choice(QLIE_ANNOT_TYPE, ANNOT_TYPE_NAMES, DEF_ANNOT_TYPE);
    annotStyle_ = choice(QLIE_ANNOT_STYLE, ANNOT_STYLE_NAMES, DEF_ANNOT_STYLE);
}

CPrettyTplOpt::CPrettyTplOpt(const CPrettyTplOpt&) = default;
CPrettyTplOpt& CPrettyTplOpt::operator=(const CPrettyTplOpt&) = default;
CPrettyTplOpt::~CPrettyTplOpt() = default;

template <class Reads>
void CPrettyTplOpt::LoadLevels(Reads& reads) {
    static_assert(kLevels == kPreferenceColorTiers);
    static const LevelEntries sequential(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL,
                                         QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_DEFREGSTR);
    static const LevelEntries sequentialB(QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B,
                                          QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B_DEFREGSTR);
    static const LevelEntries nested(QLIE_TEXT_TEMPLATE_COLOR_TIERED,
                                     QLIE_TEXT_TEMPLATE_COLOR_TIERED_DEFREGSTR);
    static const LevelEntries nestedB(QLIE_TEXT_TEMPLATE_COLOR_TIERED_B,
                                      QLIE_TEXT_TEMPLATE_COLOR_TIERED_B_DEFREGSTR);
    sequential.Load(reads, sequential_);
    sequentialB.Load(reads, sequentialB_);
    nested.Load(reads, nested_);
    nestedB.Load(reads, nestedB_);
}

template <class Reads>
void CPrettyTplOpt::LoadKinds(Reads& reads) {
    static_assert(std::size(kKindRows) == kKinds);
    const auto color = [&reads](const ColorEntry& entry) {
        return reads.Color(entry.entry, DefaultColor(entry.defaultColor));
    };
    for (const KindRow& row : kKindRows) {
        kinds_[static_cast<std::size_t>(row.type)] = {.color = color(row.color),
                                                      .bColor = color(row.background),
                                                      .process = reads.Flag(row.processEntry, row.process),
                                                      .begin = Marker(reads.Text(row.beginEntry, row.begin)),
                                                      .end = Marker(reads.Text(row.endEntry, row.end))};
    }
}

template <class Reads>
void CPrettyTplOpt::LoadOptions(Reads& reads) {
    static_assert(std::size(kOptionRows) == kOptions);
    std::transform(std::begin(kOptionRows), std::end(kOptionRows), options_.begin(),
                   [&reads](const OptionRow& row) { return reads.Flag(row.entry, row.defaultValue); });
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
