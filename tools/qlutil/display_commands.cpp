#include <algorithm>
#include <iterator>
#include <string>

#include "platform/win32.h"
#include "prefs/markup_options.h"
#include "prefs/window_placement.h"
#include "tools/qlutil/command.h"

namespace {

Node ColorText(unsigned long color) {
    const auto part = [&](int shift) { return std::to_wstring(color >> shift & 0xff); };
    return RWWString(part(0) + L',' + part(8) + L',' + part(16));
}

constexpr QLPrettyTplFieldType kFieldTypes[] = {VariableField,   InsertionField, ConditionalText,
                                                AlternativeText, RepeatedText,   EditableText};
constexpr unsigned kLevels = 20;

// One node for each kind of field.
template <class Get>
List ByKind(Get get) {
    List nodes;
    for (const QLPrettyTplFieldType type : kFieldTypes) nodes.push_back(get(type));
    return nodes;
}

template <class Get>
List ByLevel(Get get) {
    List nodes;
    for (unsigned level = 0; level < kLevels; ++level) nodes.push_back(ColorText(get(level)));
    return nodes;
}

List Colors(CPrettyTplOpt& options) {
    unsigned count = 0;
    const unsigned long* const colors = options.GetColors(&count);
    List nodes;
    std::transform(colors, colors + count, std::back_inserter(nodes), ColorText);
    return nodes;
}

Answer Markup(const Arguments&) {
    using Type = QLPrettyTplFieldType;
    CPrettyTplOpt options;
    const CPrettyTplOpt& o = options;
    return Record{
        {L"processField", ByKind([&](Type type) { return o.GetProcessField(type); })},
        {L"beginText", ByKind([&](Type type) { return o.GetBeginText(type); })},
        {L"endText", ByKind([&](Type type) { return o.GetEndText(type); })},
        {L"fieldColor", ByKind([&](Type type) { return ColorText(o.GetFieldColor(type)); })},
        {L"fieldBColor", ByKind([&](Type type) { return ColorText(o.GetFieldBColor(type)); })},
        {L"seqColor", ByLevel([&](unsigned level) { return o.GetSeqColor(level); })},
        {L"seqBColor", ByLevel([&](unsigned level) { return o.GetSeqBColor(level); })},
        {L"nestColor", ByLevel([&](unsigned level) { return o.GetNestColor(level); })},
        {L"nestBColor", ByLevel([&](unsigned level) { return o.GetNestBColor(level); })},
        {L"clrScheme", ANNOT_CLR_SCHEME_NAMES[o.GetClrScheme()]},
        {L"annotType", ANNOT_TYPE_NAMES[o.GetAnnotType()]},
        {L"annotStyle", ANNOT_STYLE_NAMES[o.GetAnnotStyle()]},
        {L"useDevCmtsForAnsFields", o.GetUseDevCmtsForAnsFields()},
        {L"useDevCmtsForTextBlocks", o.GetUseDevCmtsForTextBlocks()},
        {L"useMCOptions", o.GetUseMCOptions()},
        {L"encloseLabelsInMarkers", o.GetEncloseLabelsInMarkers()},
        {L"labelEndOfField", o.GetLabelEndOfField()},
        {L"annotateFields", o.GetAnnotateFields()},
        {L"annotateEnd", o.GetAnnotateEnd()},
        {L"boldMarkers", o.GetBoldMarkers()},
        {L"boldLabels", o.GetBoldLabels()},
        {L"italicMarkers", o.GetItalicMarkers()},
        {L"italicLabels", o.GetItalicLabels()},
        {L"colorMarkers", o.GetColorMarkers()},
        {L"colorLabels", o.GetColorLabels()},
        {L"colors", Colors(options)},
    };
}

Node Numbers(std::initializer_list<LONG> numbers) {
    List nodes;
    for (const LONG number : numbers) nodes.push_back(static_cast<int>(number));
    return nodes;
}

Answer Placement(const Arguments& arguments) {
    WINDOWPLACEMENT p = {};
    const bool ok = PlacementFromString(p, RWWString(arguments[0]));
    const RECT& normal = p.rcNormalPosition;
    Record record = {
        {L"ok", ok},
        {L"length", p.length},
        {L"flags", p.flags},
        {L"showCmd", p.showCmd},
        {L"minPosition", Numbers({p.ptMinPosition.x, p.ptMinPosition.y})},
        {L"maxPosition", Numbers({p.ptMaxPosition.x, p.ptMaxPosition.y})},
        {L"normalPosition", Numbers({normal.left, normal.top, normal.right, normal.bottom})},
    };
    if (ok) return record;
    return Answer(std::move(record), L"\"" + std::wstring(arguments[0]) +
                                         L"\" is no window placement: it takes eleven whole numbers");
}

constexpr Command kCommands[] = {
    {L"markup",
     L"",
     L"How templates' markup is shown, lists by kind of field or by level; colours are red,green,blue.",
     {},
     0,
     0,
     Markup},
    {L"placement", L"TEXT", L"What a stored window placement says.", {}, 1, 1, Placement},
};

}  // namespace

std::span<const Command> DisplayCommands() {
    return kCommands;
}
