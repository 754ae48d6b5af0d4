#include <algorithm>
#include <functional>
#include <limits>

#include "json/json.h"
#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/settings_store.h"
#include "text/fields.h"
#include "tools/qlutil/bad_document.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/text_file.h"

namespace {

// How a preference is read and written, chosen by a switch.
enum class Kind { kText, kInt, kBool, kColor };

struct KindRow {
    std::wstring_view name;
    Kind kind;
};
constexpr KindRow kKinds[] = {{L"int", Kind::kInt}, {L"bool", Kind::kBool}, {L"color", Kind::kColor}};

Kind KindOf(const Arguments& arguments) {
    Kind kind = Kind::kText;
    int given = 0;
    for (const KindRow& row : kKinds) {
        if (!arguments.Has(row.name)) continue;
        kind = row.kind;
        ++given;
    }
    if (given > 1) throw WrongCall(L"--int, --bool and --color exclude each other");
    return kind;
}

struct Preference {
    RWWString section;
    RWWString entry;
    const wchar_t* sectionText() const { return section.data(); }
    const wchar_t* entryText() const { return entry.data(); }
    std::wstring Name() const { return section.str() + L" / " + entry.str(); }
};

Preference PreferenceOf(const Arguments& arguments) {
    return {RWWString(arguments[0]), RWWString(arguments[1])};
}

bool RequireBool(std::wstring_view word) {
    const RWWString text(word);
    const bool value = StrToBool(text, false);
    if (value != StrToBool(text, true)) throw WrongCall(L"a truth value is true, yes, on, false, no or off");
    return value;
}

// Neither colour has any text of its own, so a text that reads as both defaults is no colour.
unsigned long RequireColor(std::wstring_view word) {
    const RWWString text(word);
    const unsigned long color = QLRegStringToColor(text.data(), 0);
    if (color != QLRegStringToColor(text.data(), 1)) throw WrongCall(L"a colour is red,green,blue");
    return color;
}

RWWString ColorText(unsigned long color) {
    return RWWString(std::to_wstring(color & 0xFF) + L',' + std::to_wstring(color >> 8 & 0xFF) + L',' +
                     std::to_wstring(color >> 16 & 0xFF));
}

// --- one preference ----------------------------------------------------------------------------------------------

struct Reading {
    Node value;
    bool found;
};

Reading Read(const Preference& at, Kind kind, std::optional<std::wstring_view> given) {
    const std::wstring_view otherwise = given.value_or(std::wstring_view());
    if (kind == Kind::kInt) {
        int value = 0;
        const int defaultValue = given ? RequireInt(otherwise, L"V") : 0;
        const bool found =
            CQlsSettings::GetThreadRegIntSetting(at.sectionText(), at.entryText(), &value, defaultValue);
        return {value, found};
    }
    if (kind == Kind::kBool) {
        bool value = false;
        const bool defaultValue = given && RequireBool(otherwise);
        const bool found =
            CQlsSettings::GetThreadRegBoolSetting(at.sectionText(), at.entryText(), &value, defaultValue);
        return {value, found};
    }
    RWWString text;
    const RWWString defaultText(otherwise);
    const bool found =
        CQlsSettings::GetThreadRegStrSetting(at.sectionText(), at.entryText(), &text, defaultText.data());
    if (kind == Kind::kText)
        return {GetQLRegString(at.sectionText(), at.entryText(), defaultText.data()), found};
    const unsigned long defaultColor = given ? RequireColor(otherwise) : 0;
    return {ColorText(GetQLRegColor(at.sectionText(), at.entryText(), defaultColor)), found};
}

Answer Get(const Arguments& arguments) {
    const Preference at = PreferenceOf(arguments);
    const auto otherwise = arguments.Value(L"default");
    Reading reading = Read(at, KindOf(arguments), otherwise);
    Record record = {
        {L"section", at.section}, {L"entry", at.entry}, {L"value", reading.value}, {L"found", reading.found}};
    if (reading.found || otherwise) return record;
    return Answer(std::move(record), L"there is no preference " + at.Name());
}

// The accessors report nothing, so what was written is read back from the registry itself.
bool StoredAsText(const Preference& at, const RWWString& text) {
    return GetQLRegStringEx(at.sectionText(), at.entryText(), false) == text;
}

bool WriteText(const Preference& at, const RWWString& text) {
    WriteQLRegString(at.sectionText(), at.entryText(), text.data());
    return StoredAsText(at, text);
}

bool WriteInt(const Preference& at, int value) {
    WriteQLRegInt(at.sectionText(), at.entryText(), value);
    unsigned int stored = 0;
    return GetRegIntVal(at.sectionText(), at.entryText(), &stored) && static_cast<int>(stored) == value;
}

bool WriteBool(const Preference& at, bool value) {
    WriteQLRegBool(at.sectionText(), at.entryText(), value);
    return StoredAsText(at, value ? g_trueStr : g_falseStr);
}

bool WriteWord(const Preference& at, Kind kind, std::wstring_view word) {
    switch (kind) {
        case Kind::kInt: return WriteInt(at, RequireInt(word, L"VALUE"));
        case Kind::kBool: return WriteBool(at, RequireBool(word));
        case Kind::kColor: return WriteText(at, ColorText(RequireColor(word)));
        case Kind::kText: break;
    }
    return WriteText(at, RWWString(word));
}

Record NameOf(const Preference& at) {
    return {{L"section", at.section}, {L"entry", at.entry}};
}

Answer Set(const Arguments& arguments) {
    const Preference at = PreferenceOf(arguments);
    if (WriteWord(at, KindOf(arguments), arguments[2])) return NameOf(at);
    return Answer::Failure(L"the registry did not take " + at.Name() +
                           L"; texts hold 511 characters at the most and no zero");
}

bool IsUsersEntry(const Preference& at) {
    EnumQLEntries entries(at.sectionText(), false);
    return entries.Index(at.entry, true) >= 0;
}

Answer Unset(const Arguments& arguments) {
    const Preference at = PreferenceOf(arguments);
    if (!IsUsersEntry(at)) return Answer::Failure(L"the user has no preference " + at.Name());
    WriteQLRegString(at.sectionText(), at.entryText(), nullptr);
    if (!IsUsersEntry(at)) return NameOf(at);
    return Answer::Failure(L"the registry kept " + at.Name());
}

// --- all preferences ---------------------------------------------------------------------------------------------

// Every section of one root, those within sections too, the base key first as the empty section.
std::vector<RWWString> AllSections(bool machine) {
    std::vector<RWWString> sections(1);
    for (std::size_t i = 0; i < sections.size(); ++i) {
        const RWWString above = sections[i];
        EnumQLSections children(above.data(), machine);
        for (RWWString child = children.GetNextSection(); !child.isNull();
             child = children.GetNextSection()) {
            sections.push_back(above.isNull() ? child : above + L"\\" + child);
        }
    }
    return sections;
}

Answer Sections(const Arguments& arguments) {
    const std::vector<RWWString> sections = AllSections(arguments.Has(L"machine"));
    return List(sections.begin() + 1, sections.end());
}

enum class Stored { kText, kInt, kOther };

struct Found {
    Preference at;
    Stored stored;
    Node value;
};

Found Look(const Preference& at, bool machine) {
    RWWString text;
    int number = 0;
    if (ReadRegString(at.sectionText(), at.entryText(), machine, text)) return {at, Stored::kText, text};
    if (ReadRegInt(at.sectionText(), at.entryText(), machine, number)) return {at, Stored::kInt, number};
    return {at, Stored::kOther, nullptr};
}

// In the order of their names: the registry has none of its own.
std::vector<RWWString> EntriesOf(const RWWString& section, bool machine) {
    EnumQLEntries entries(section.data(), machine);
    std::vector<RWWString> names;
    for (RWWString name; entries.GetNextEntry(name);) names.push_back(name);
    std::sort(names.begin(), names.end());
    return names;
}

void ForEachPreference(const std::vector<RWWString>& sections, bool machine,
                       const std::function<void(Found)>& visit) {
    for (const RWWString& section : sections) {
        for (const RWWString& entry : EntriesOf(section, machine)) visit(Look({section, entry}, machine));
    }
}

const wchar_t* NameOf(Stored stored) {
    return stored == Stored::kText ? L"text" : stored == Stored::kInt ? L"int" : L"other";
}

Answer ListAll(const Arguments& arguments) {
    const bool machine = arguments.Has(L"machine");
    const bool oneSection = arguments.count() > 0;
    const auto sections = oneSection ? std::vector{RWWString(arguments[0])} : AllSections(machine);
    List rows;
    ForEachPreference(sections, machine, [&](const Found& found) {
        rows.push_back(Record{{L"section", found.at.section},
                              {L"entry", found.at.entry},
                              {L"value", found.value},
                              {L"type", NameOf(found.stored)}});
    });
    return rows;
}

// --- documents ---------------------------------------------------------------------------------------------------

// The store's separator between section and entry.
constexpr std::wstring_view kKeySeparator = L"<-^->";

// Why a preference cannot stand in a document; empty when it can.
std::wstring WhyNotExported(const Found& found) {
    if (found.stored == Stored::kOther) return L"neither a text of 511 characters at the most nor a number";
    if (found.at.section.view().find(kKeySeparator) != RWWString::npos)
        return L"its section's name holds <-^->";
    return {};
}

Answer Export(const Arguments& arguments) {
    CQlsSettings store;
    int count = 0;
    std::wstring leftOut;
    ForEachPreference(AllSections(false), false, [&](const Found& found) {
        if (const std::wstring why = WhyNotExported(found); !why.empty()) {
            leftOut += L"left out " + found.at.Name() + L": " + why + L"\n";
            return;
        }
        const Preference& at = found.at;
        if (const auto* text = std::get_if<RWWString>(&found.value.value)) {
            store.SetRegStrSetting(at.sectionText(), at.entryText(), text->data());
        } else {
            store.SetRegIntSetting(at.sectionText(), at.entryText(),
                                   static_cast<int>(std::get<double>(found.value.value)));
        }
        ++count;
    });
    WriteToStream(Stream::kError, leftOut);
    RWWString document;
    store.GetSerializedSettings(&document);
    if (arguments.count() == 0) return Document{std::move(document)};
    std::wstring why;
    if (WriteTextFile(arguments[0], document.str() + L'\n', why)) return Record{{L"count", count}};
    return Answer::Failure(why);
}

struct Change {
    Preference at;
    const JSON::Value* value;
};

bool IsPreferenceValue(const JSON::Value& value) {
    constexpr double kLeast = std::numeric_limits<int>::min();
    constexpr double kMost = std::numeric_limits<int>::max();
    switch (value.kind()) {
        case JSON::String:
        case JSON::Bool: return true;
        case JSON::Number: return value.number() >= kLeast && value.number() <= kMost;
        default: return false;
    }
}

// Why a member of a document is no preference; empty when it is one.
std::wstring WhyNotImported(const RWWString& key, const JSON::Value& value) {
    if (key.view().find(kKeySeparator) == RWWString::npos) return L"is not a section, <-^-> and an entry";
    if (!IsPreferenceValue(value)) return L"is neither a text nor a truth value nor a number of 32 bits";
    return {};
}

bool Apply(const Change& change) {
    switch (change.value->kind()) {
        case JSON::Bool: return WriteBool(change.at, change.value->flag());
        case JSON::Number: return WriteInt(change.at, static_cast<int>(change.value->number()));
        default: return WriteText(change.at, RWWString(change.value->text()));
    }
}

Answer Import(const Arguments& arguments) {
    std::wstring why;
    const auto text = ReadTextFile(arguments[0], why);
    if (!text) return Answer::Failure(why);
    const auto root = JSON::Parse(*text);
    if (!root) return Answer::Failure(DescribeBadDocument(arguments[0], *text) + L"; nothing was changed");
    if (root->kind() != JSON::Object) {
        return Answer::Failure(std::wstring(arguments[0]) + L" is not a settings document: not an object");
    }
    std::vector<Change> changes;
    RWWString key;
    for (const auto* value = root->FirstMember(key); value; value = root->NextMember(key)) {
        if (const std::wstring fault = WhyNotImported(key, *value); !fault.empty()) {
            return Answer::Failure(L"member \"" + key.str() + L"\" " + fault + L"; nothing was changed");
        }
        const std::size_t separator = key.view().find(kKeySeparator);
        changes.push_back({{RWWString(key.view().substr(0, separator)),
                            RWWString(key.view().substr(separator + kKeySeparator.size()))},
                           value});
    }
    for (const Change& change : changes) {
        if (!Apply(change)) return Answer::Failure(L"the registry did not take " + change.at.Name());
    }
    return Record{{L"count", static_cast<unsigned>(changes.size())}};
}

constexpr SwitchRow kGetSwitches[] = {{L"int"}, {L"bool"}, {L"color"}, {L"default", true}};
constexpr SwitchRow kSetSwitches[] = {{L"int"}, {L"bool"}, {L"color"}};
constexpr SwitchRow kMachineSwitch[] = {{L"machine"}};

constexpr Command kCommands[] = {
    {L"prefs get", L"SECTION ENTRY [--int|--bool|--color] [--default V]",
     L"A preference as the programs read it; absent and without --default: exit status 1.", kGetSwitches, 2,
     2, Get},
    {L"prefs set", L"SECTION ENTRY VALUE [--int|--bool|--color]", L"Writes a preference of the user.",
     kSetSwitches, 3, 3, Set},
    {L"prefs unset", L"SECTION ENTRY", L"Removes a preference of the user.", {}, 2, 2, Unset},
    {L"prefs sections", L"[--machine]", L"The sections of the user, or of the machine.", kMachineSwitch, 0, 0,
     Sections},
    {L"prefs list", L"[SECTION] [--machine]", L"The preferences of a section, or of all.", kMachineSwitch, 0,
     1, ListAll},
    {L"prefs export", L"[FILE]", L"Every preference of the user as a settings document.", {}, 0, 1, Export},
    {L"prefs import",
     L"FILE",
     L"Writes the preferences of a settings document; a bad one changes nothing.",
     {},
     1,
     1,
     Import},
};

}  // namespace

std::span<const Command> PreferenceCommands() {
    return kCommands;
}
