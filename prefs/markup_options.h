#pragma once

#include <array>

#include "platform/export.h"
#include "rw/wide_string.h"

// The kinds of field that a template's markup has.
enum QLPrettyTplFieldType : int {
    VariableField = 0,
    InsertionField = 1,
    ConditionalText = 2,
    AlternativeText = 3,
    RepeatedText = 4,
    EditableText = 5,
};

// What a field's colour follows: its kind, how deep it is nested, or its place in the order of fields.
enum QLClrScheme : int { RegularColors = 0, NestedColors = 1, SequentialColors = 2 };

// Where annotations stand, and what they are counted by.
enum QLAnnotType : int { FootnoteAnnotations = 0, EndnoteAnnotations = 1 };
enum QLAnnotStyle : int { NumberedAnnotations = 0, LetteredAnnotations = 1 };

// The texts that the three choices are stored as, by their numbers; any case is read.
extern QL_API const wchar_t* const ANNOT_CLR_SCHEME_NAMES[3];  // "regular", "nested", "sequential"
extern QL_API const wchar_t* const ANNOT_TYPE_NAMES[2];        // "Footnote", "Endnote"
extern QL_API const wchar_t* const ANNOT_STYLE_NAMES[2];       // "Numbers", "Letters"

// The defaults of the annotation options.
extern QL_API const QLClrScheme DEF_ANNOT_CLR_SCHEME;
extern QL_API const QLAnnotType DEF_ANNOT_TYPE;
extern QL_API const QLAnnotStyle DEF_ANNOT_STYLE;
extern QL_API const bool DEF_ANNOTATE_FIELDS;
extern QL_API const bool DEF_ANNOTATE_END;
extern QL_API const bool DEF_BOLD_ANNOT_MARKERS;
extern QL_API const bool DEF_BOLD_ANNOT_LABELS;
extern QL_API const bool DEF_ITALIC_ANNOT_MARKERS;
extern QL_API const bool DEF_ITALIC_ANNOT_LABELS;
extern QL_API const bool DEF_COLOR_ANNOT_MARKERS;
extern QL_API const bool DEF_COLOR_ANNOT_LABELS;

// How a view shows the markup of a template: a snapshot of the preferences, taken at construction from the
// calling thread's settings (settings/preferences.h) and never read again. From the second object on, when
// the thread's store knows them all, they are of one moment; else each is as it was when it was read. Colours
// come from the section "Development", everything else from "Markup View"; what is absent or unreadable is
// the default, but a text that is no boolean is false, and a part of a colour that is no number 0.
//
// Colours are red + 256 green + 65536 blue; "B" stands for background. One object is for one thread at a
// time; a copy is independent (copying alone throws, when memory runs out; markers that find none are empty).
// A kind beyond the enumeration is processed never, its texts are empty and its colours 0.
//
// Kept on purpose: alternative text has no colours of its own but reads those of conditional text; and
// GetColors answers what its first call found.
class QL_API CPrettyTplOpt {
  public:
    CPrettyTplOpt();  // reads the preferences

    // A copy has its own texts and colours, GetColors' included.
    CPrettyTplOpt(const CPrettyTplOpt&);
    CPrettyTplOpt& operator=(const CPrettyTplOpt&);
    virtual ~CPrettyTplOpt();

    // Whether fields of the kind are marked at all. Setting changes the object alone, not the preference.
    bool GetProcessField(QLPrettyTplFieldType type) const noexcept { return KindOf(type).process; }
    void SetProcessField(QLPrettyTplFieldType type, bool process) noexcept;

    // The texts around a field, valid while the object lives and is not assigned to. The preference "NONE",
    // in any case, means none: the empty text.
    const wchar_t* GetBeginText(QLPrettyTplFieldType type) const noexcept {
        return KindOf(type).begin.data();
    }
    const wchar_t* GetEndText(QLPrettyTplFieldType type) const noexcept { return KindOf(type).end.data(); }

    // The text's colour and its background's, for RegularColors.
    unsigned long GetFieldColor(QLPrettyTplFieldType type) const noexcept { return KindOf(type).color; }
    unsigned long GetFieldBColor(QLPrettyTplFieldType type) const noexcept { return KindOf(type).bColor; }

    // By level, counted from 0 and taken modulo 20.
    unsigned long GetSeqColor(unsigned level) const noexcept { return sequential_[level % kLevels]; }
    unsigned long GetSeqBColor(unsigned level) const noexcept { return sequentialB_[level % kLevels]; }
    unsigned long GetNestColor(unsigned level) const noexcept { return nested_[level % kLevels]; }
    unsigned long GetNestBColor(unsigned level) const noexcept { return nestedB_[level % kLevels]; }

    // "Color Selection", "Annotation Type" and "Annotation Style"; the default for a text of none of theirs.
    QLClrScheme GetClrScheme() const noexcept { return scheme_; }
    QLAnnotType GetAnnotType() const noexcept { return annotType_; }
    QLAnnotStyle GetAnnotStyle() const noexcept { return annotStyle_; }

    // Developer comments in place of fields' names, and multiple choice options in place of variables.
    bool GetUseDevCmtsForAnsFields() const noexcept { return options_[kUseDevCmtsForAnsFields]; }
    bool GetUseDevCmtsForTextBlocks() const noexcept { return options_[kUseDevCmtsForTextBlocks]; }
    bool GetUseMCOptions() const noexcept { return options_[kUseMCOptions]; }

    // The switches of the same names: labels within the markers, and at the end of a field too; fields and
    // their ends annotated; markers and labels of annotations bold, italic, in colour.
    bool GetEncloseLabelsInMarkers() const noexcept { return options_[kEncloseLabelsInMarkers]; }
    bool GetLabelEndOfField() const noexcept { return options_[kLabelEndOfField]; }
    bool GetAnnotateFields() const noexcept { return options_[kAnnotateFields]; }
    bool GetAnnotateEnd() const noexcept { return options_[kAnnotateEnd]; }
    bool GetBoldMarkers() const noexcept { return options_[kBoldMarkers]; }
    bool GetBoldLabels() const noexcept { return options_[kBoldLabels]; }
    bool GetItalicMarkers() const noexcept { return options_[kItalicMarkers]; }
    bool GetItalicLabels() const noexcept { return options_[kItalicLabels]; }
    bool GetColorMarkers() const noexcept { return options_[kColorMarkers]; }
    bool GetColorLabels() const noexcept { return options_[kColorLabels]; }

    // The distinct colours of the object, at most 92, in the order sequential, nested, fields, backgrounds
    // after each: gathered by the first call and the same ever after. They belong to the object and are there
    // until it is assigned to or destroyed. The count may be null.
    const unsigned long* GetColors(unsigned* count) noexcept;

  private:
    static constexpr unsigned kLevels = 20;
    static constexpr unsigned kKinds = 6;
    using LevelColors = std::array<unsigned long, kLevels>;

    struct Kind {
        unsigned long color = 0;
        unsigned long bColor = 0;
        bool process = false;
        RWWString begin;
        RWWString end;
    };

    enum Option : unsigned {
        kUseDevCmtsForAnsFields,
        kUseDevCmtsForTextBlocks,
        kUseMCOptions,
        kEncloseLabelsInMarkers,
        kLabelEndOfField,
        kAnnotateFields,
        kAnnotateEnd,
        kBoldMarkers,
        kBoldLabels,
        kItalicMarkers,
        kItalicLabels,
        kColorMarkers,
        kColorLabels,
        kOptions
    };

    const Kind& KindOf(QLPrettyTplFieldType type) const noexcept;
    // From everyday reads, or from what a store knows.
    template <class Reads>
    void Load(Reads& reads);
    template <class Reads>
    void LoadChoices(Reads& reads);
    template <class Reads>
    void LoadLevels(Reads& reads);
    template <class Reads>
    void LoadKinds(Reads& reads);
    template <class Reads>
    void LoadOptions(Reads& reads);
    void AddColor(unsigned long color) noexcept;

    LevelColors sequential_;
    LevelColors sequentialB_;
    LevelColors nested_;
    LevelColors nestedB_;
    std::array<Kind, kKinds> kinds_;
    std::array<unsigned long, 4 * kLevels + 2 * kKinds> distinct_;
    unsigned distinctCount_ = 0;  // until asked for
    QLClrScheme scheme_ = RegularColors;
    QLAnnotType annotType_ = FootnoteAnnotations;
    QLAnnotStyle annotStyle_ = NumberedAnnotations;
    std::array<bool, kOptions> options_;
};
