#include <algorithm>
#include <chrono>
#include <deque>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <thread>

#include "settings/preference_keys.h"
#include "settings/preference_layers.h"
#include "settings/preferences.h"
#include "settings/registry.h"
#include "settings/scopes.h"
#include "settings/settings_store.h"
#include "text/fields.h"
#include "text/letter_case.h"
#include "tools/qlutil/bad_document.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/preference_documents.h"
#include "tools/qlutil/stored_preferences.h"
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

// An empty section is the base key and an empty entry its default value: mostly a slip of the hand.
Preference PreferenceOf(const Arguments& arguments) {
    if ((arguments[0].empty() || arguments[1].empty()) && !arguments.Has(L"empty"))
        throw WrongCall(L"SECTION and ENTRY are empty only with --empty");
    return {RWWString(arguments[0]), RWWString(arguments[1])};
}

bool IsTruthWord(const RWWString& text) {
    return StrToBool(text, false) == StrToBool(text, true);
}

// Neither colour has any text of its own, so a text that reads as both defaults is no colour.
bool IsColor(const RWWString& text) {
    return QLRegStringToColor(text, 0) == QLRegStringToColor(text, 1);
}

bool RequireBool(std::wstring_view word) {
    const RWWString text(word);
    if (!IsTruthWord(text)) throw WrongCall(L"a truth value is true, yes, on, false, no or off");
    return StrToBool(text, false);
}

unsigned long RequireColor(std::wstring_view word) {
    const RWWString text(word);
    if (!IsColor(text)) throw WrongCall(L"a colour is red,green,blue");
    return QLRegStringToColor(text, 0);
}

RWWString ColorText(unsigned long color) {
    return RWWString(std::to_wstring(color & 0xFF) + L',' + std::to_wstring(color >> 8 & 0xFF) + L',' +
                     std::to_wstring(color >> 16 & 0xFF));
}

// --- one preference ----------------------------------------------------------------------------------------

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

// Why what is stored is not what was asked for; empty when it is that, or nothing is stored.
std::wstring Mismatch(const Preference& at, Kind kind) {
    RegistryValue value;
    if (!ReadRegValue(at.sectionText(), at.entryText(), false, value) &&
        !ReadRegValue(at.sectionText(), at.entryText(), true, value)) {
        return {};
    }
    RWWString text;
    const bool isText = TextOfRegValue(value, text);
    const auto holds = [&](const wchar_t* what) {
        const ShownValue shown = Show(value);
        const auto* asText = std::get_if<RWWString>(&shown.value.value);
        return at.Name() + L" holds " + shown.type + L" \"" +
               (asText ? asText->str()
                       : std::to_wstring(static_cast<int>(std::get<double>(shown.value.value)))) +
               L"\", not " + what;
    };
    switch (kind) {
        case Kind::kInt: return isText ? holds(L"a number") : L"";
        case Kind::kBool: return isText && IsTruthWord(text) ? L"" : holds(L"a truth value");
        case Kind::kColor: return isText && IsColor(text) ? L"" : holds(L"a colour");
        default: return isText ? L"" : holds(L"a text that programs find");
    }
}

Answer Get(const Arguments& arguments) {
    const Preference at = PreferenceOf(arguments);
    const Kind kind = KindOf(arguments);
    const auto otherwise = arguments.Value(L"default");
    Reading reading = Read(at, kind, otherwise);
    Record record = {
        {L"section", at.section}, {L"entry", at.entry}, {L"value", reading.value}, {L"found", reading.found}};
    if (std::wstring why = Mismatch(at, kind); !why.empty()) return Answer(std::move(record), std::move(why));
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

// --- all preferences ---------------------------------------------------------------------------------------

Answer Sections(const Arguments& arguments) {
    const std::vector<RWWString> sections = AllSections(arguments.Has(L"machine"));
    return List(sections.begin() + 1, sections.end());
}

RWWString IgnoringCase(std::wstring_view text) {
    return ChangeCase(RWWString(text), CASE_UPPER);
}

bool IsSection(const RWWString& section, bool machine) {
    const auto sections = AllSections(machine);
    return std::any_of(sections.begin(), sections.end(),
                       [&](const RWWString& known) { return IgnoringCase(known) == IgnoringCase(section); });
}

Answer ListAll(const Arguments& arguments) {
    const bool machine = arguments.Has(L"machine");
    const bool oneSection = arguments.count() > 0;
    const auto sections = oneSection ? std::vector{RWWString(arguments[0])} : AllSections(machine);
    if (oneSection && !IsSection(sections[0], machine)) {
        return Answer::Failure(std::wstring(machine ? L"the machine" : L"the user") + L" has no section " +
                               sections[0].str());
    }
    List rows;
    for (const StoredPreference& stored : StoredIn(sections, machine)) {
        const ShownValue shown = Show(stored.value);
        rows.push_back(Record{{L"section", stored.at.section},
                              {L"entry", stored.at.entry},
                              {L"value", shown.value},
                              {L"type", shown.type}});
    }
    return rows;
}

// --- where a value comes from ------------------------------------------------------------------------------

struct LayerRow {
    PreferenceLayer layer;
    const wchar_t* name;
};
constexpr LayerRow kLayers[] = {{PreferenceLayer::Context, L"context"},
                                {PreferenceLayer::User, L"user"},
                                {PreferenceLayer::Machine, L"machine"},
                                {PreferenceLayer::Default, L"default"}};

const wchar_t* NameOf(PreferenceType type) {
    switch (type) {
        case PreferenceType::None: return L"";
        case PreferenceType::Text: return L"text";
        case PreferenceType::Integer: return L"int";
        case PreferenceType::Boolean: return L"bool";
        default: return L"other";
    }
}

Answer Where(const Arguments& arguments) {
    const Preference at = PreferenceOf(arguments);
    const auto file = arguments.Value(L"settings");
    std::optional<QLContextScope> context;
    if (file) {
        std::wstring why;
        const auto text = ReadTextFile(*file, why);
        if (!text) return Answer::Failure(why);
        context.emplace();
        if (!context->ok()) return Answer::Failure(L"there is no room for a context");
        if (!context->settings()->SetFromSerializedSettings(text->c_str()))
            return Answer::Failure(DescribeBadDocument(*file, *text));
    }
    const PreferenceOrigin origin = FindPreference(at.sectionText(), at.entryText());
    List rows;
    bool anywhere = false;
    for (const LayerRow& row : kLayers) {
        if (row.layer == PreferenceLayer::Context && !file) continue;
        const PreferenceInLayer& content = origin[row.layer];
        const bool present = content.type != PreferenceType::None;
        anywhere |= present;
        rows.push_back(Record{{L"layer", row.name},
                              {L"present", present},
                              {L"type", NameOf(content.type)},
                              {L"value", content.value},
                              {L"wins", present && origin.winner == row.layer}});
    }
    if (anywhere) return rows;
    return Answer(Node(std::move(rows)), L"no layer has " + at.Name());
}

// --- what is wrong -----------------------------------------------------------------------------------------

struct Named {
    std::wstring_view constant;
    std::wstring_view text;
};
#define QL_WIDE(text) L##text
#define QL_NAMED(name, text) {QL_WIDE(#name), text},
constexpr Named kKnownSections[] = {QL_PREFERENCE_SECTIONS(QL_NAMED)};
constexpr Named kKnownEntries[] = {QL_PREFERENCE_ENTRIES(QL_NAMED, QL_NAMED)};
#undef QL_NAMED
#undef QL_WIDE

// Sections whose entries are named by what the user has: folders, files, plug-ins.
bool NamesItsEntriesFreely(std::wstring_view section) {
    const std::wstring_view free[] = {QLIS_ANSWER_FOLDER_STATUS, QLIS_ANSWER_SOURCES, QLIS_DISABLED_PLUGINS,
                                      QLIS_LIBRARY_FOLDER_STATUS, QLIS_PLUGINS};
    return std::find(std::begin(free), std::end(free), section) != std::end(free);
}

// The entry's number as the catalogue has it.
std::wstring WithoutNumber(const RWWString& entry) {
    const std::size_t last = entry.view().find_last_not_of(L"0123456789");
    return last + 1 < entry.length() ? entry.str().substr(0, last + 1) + L"%d" : entry.str();
}

bool IsKnown(std::span<const Named> names, std::wstring_view wanted) {
    return std::any_of(names.begin(), names.end(),
                       [&](const Named& row) { return IgnoringCase(row.text) == IgnoringCase(wanted); });
}

RWWString Nearest(std::span<const Named> names, std::wstring_view wanted) {
    return RWWString(std::min_element(names.begin(), names.end(), [&](const Named& a, const Named& b) {
                         return EditDistance(wanted, a.text) < EditDistance(wanted, b.text);
                     })->text);
}

struct Problem {
    const wchar_t* name;
    RWWString detail;
};

std::optional<Problem> NameProblem(const Preference& at) {
    const std::wstring section = at.section.str().substr(0, at.section.view().find(L'\\'));
    if (section.empty()) return std::nullopt;
    if (!IsKnown(kKnownSections, section))
        return Problem{L"unknown", L"section; the nearest is " + Nearest(kKnownSections, section)};
    if (NamesItsEntriesFreely(section) || section.size() != at.section.length()) return std::nullopt;
    if (IsKnown(kKnownEntries, at.entry) || IsKnown(kKnownEntries, WithoutNumber(at.entry)))
        return std::nullopt;
    return Problem{L"unknown", Nearest(kKnownEntries, at.entry)};
}

std::optional<Problem> ValueProblem(const Preference& at, const RegistryValue& value) {
    RWWString text;
    int number = 0;
    const bool isText = TextOfRegValue(value, text);
    const PreferenceType stored = isText                            ? PreferenceType::Text
                                  : NumberOfRegValue(value, number) ? PreferenceType::Integer
                                                                    : PreferenceType::Unreadable;
    if (stored == PreferenceType::Unreadable) {
        const bool isLongText = value.type == 1 || value.type == 2 || value.type == 7;
        if (isLongText) return Problem{L"too-long", L"a text of more than 511 characters is never found"};
        return Problem{L"type", L"no program reads " + std::get<RWWString>(Show(value).value.value).str()};
    }
    if (isText && value.bytes.size() / 2 == 512 && text.length() == 511)
        return Problem{L"too-long", L"cut to 511 characters"};
    const PreferenceInLayer expected =
        FindPreference(at.sectionText(), at.entryText())[PreferenceLayer::Default];
    if (expected.type == PreferenceType::None) return std::nullopt;
    const bool expectsNumber = expected.type == PreferenceType::Integer;
    if (expectsNumber != !isText)
        return Problem{L"type", expectsNumber ? L"a number is expected" : L"a text is expected"};
    if (expected.type == PreferenceType::Boolean && !IsTruthWord(text))
        return Problem{L"malformed", L"a truth value is expected, not " + text};
    if (expected.type == PreferenceType::Text && IsColor(expected.value) && !IsColor(text))
        return Problem{L"malformed", L"a colour is expected, not " + text};
    return std::nullopt;
}

Answer Check(const Arguments&) {
    List rows;
    for (const StoredPreference& stored : StoredIn(AllSections(false), false)) {
        for (const auto& problem : {NameProblem(stored.at), ValueProblem(stored.at, stored.value)}) {
            if (!problem) continue;
            rows.push_back(Record{{L"section", stored.at.section},
                                  {L"entry", stored.at.entry},
                                  {L"problem", problem->name},
                                  {L"detail", problem->detail}});
        }
    }
    if (rows.empty()) return rows;
    const std::wstring count = std::to_wstring(rows.size());
    return Answer(Node(std::move(rows)), L"problems found: " + count);
}

// --- changes as they happen --------------------------------------------------------------------------------

using Snapshot = std::map<Preference, RegistryValue>;

Snapshot TakeSnapshot(std::optional<std::wstring_view> section) {
    Snapshot snapshot;
    const auto sections = section ? std::vector{RWWString(*section)} : AllSections(false);
    for (StoredPreference& stored : StoredIn(sections, false))
        snapshot.emplace(std::move(stored.at), std::move(stored.value));
    return snapshot;
}

std::deque<Record> Changes(const Snapshot& before, const Snapshot& now) {
    std::deque<Record> changes;
    const auto add = [&](const Preference& at, const wchar_t* change, Node value) {
        changes.push_back(Record{{L"section", at.section},
                                 {L"entry", at.entry},
                                 {L"change", change},
                                 {L"value", std::move(value)}});
    };
    for (const auto& [at, value] : before) {
        if (!now.contains(at)) add(at, L"removed", nullptr);
    }
    for (const auto& [at, value] : now) {
        const auto former = before.find(at);
        if (former == before.end()) {
            add(at, L"added", Show(value).value);
        } else if (former->second != value) {
            add(at, L"changed", Show(value).value);
        }
    }
    return changes;
}

// Looks again and again for what has changed since it last looked, and tells of one change after the other.
class Watcher {
  public:
    Watcher(std::optional<std::wstring_view> section, int most)
        : section_(section), left_(most), seen_(TakeSnapshot(section)) {}

    std::optional<Record> Next() {
        if (left_ == 0) return std::nullopt;
        while (changes_.empty()) Look();
        --left_;
        Record change = std::move(changes_.front());
        changes_.pop_front();
        return change;
    }

  private:
    static constexpr auto kPause = std::chrono::milliseconds(200);

    void Look() {
        std::this_thread::sleep_for(kPause);
        Snapshot now = TakeSnapshot(section_);
        changes_ = Changes(seen_, now);
        seen_ = std::move(now);
    }

    const std::optional<std::wstring_view> section_;
    int left_;
    Snapshot seen_;
    std::deque<Record> changes_;
};

Answer Watch(const Arguments& arguments) {
    constexpr std::size_t kShown = 4;  // all there is
    const auto section = arguments.count() > 0 ? std::optional(arguments[0]) : std::nullopt;
    const auto given = arguments.Value(L"count");
    const int most = given ? RequireInt(*given, L"N") : std::numeric_limits<int>::max();
    if (most < 0) throw WrongCall(L"N must not be negative");
    const auto watcher = std::make_shared<Watcher>(section, most);
    return Feed{[watcher] { return watcher->Next(); }, kShown, true};
}

constexpr SwitchRow kGetSwitches[] = {{L"int"}, {L"bool"}, {L"color"}, {L"default", true}, {L"empty"}};
constexpr SwitchRow kSetSwitches[] = {{L"int"}, {L"bool"}, {L"color"}, {L"empty"}};
constexpr SwitchRow kUnsetSwitches[] = {{L"empty"}};
constexpr SwitchRow kWhereSwitches[] = {{L"settings", true}, {L"empty"}};
constexpr SwitchRow kWatchSwitches[] = {{L"count", true}};
constexpr SwitchRow kMachineSwitch[] = {{L"machine"}};

constexpr Command kCommands[] = {
    {L"prefs get", L"SECTION ENTRY [--int|--bool|--color] [--default V] [--empty]",
     L"A preference as the programs read it; absent and without --default: exit status 1.", kGetSwitches, 2,
     2, Get},
    {L"prefs set", L"SECTION ENTRY VALUE [--int|--bool|--color] [--empty]",
     L"Writes a preference of the user.", kSetSwitches, 3, 3, Set},
    {L"prefs unset", L"SECTION ENTRY [--empty]", L"Removes a preference of the user.", kUnsetSwitches, 2, 2,
     Unset},
    {L"prefs sections", L"[--machine]", L"The sections of the user, or of the machine.", kMachineSwitch, 0, 0,
     Sections},
    {L"prefs list", L"[SECTION] [--machine]", L"The preferences of a section, or of all.", kMachineSwitch, 0,
     1, ListAll},
    {L"prefs export",
     L"[FILE]",
     L"Every preference of the user as a settings document.",
     {},
     0,
     1,
     ExportPreferences},
    {L"prefs import",
     L"FILE",
     L"Writes the preferences of a settings document; a bad one, or one that the registry refuses half-way, "
     L"changes\n"
     L"    nothing. \"-\" is standard input.",
     {},
     1,
     1,
     ImportPreferences},
    {L"prefs diff", L"FILE", L"What changed from an export to the registry.", {}, 1, 1, DiffPreferences},
    {L"prefs where", L"SECTION ENTRY [--settings FILE] [--empty]",
     L"The layers that may hold a preference, and the one that programs get: a context made from FILE, the "
     L"user,\n"
     L"    the machine, the catalogue's default.",
     kWhereSwitches, 2, 2, Where},
    {L"prefs check",
     L"",
     L"The user's preferences that no program knows, or cannot read as it expects.",
     {},
     0,
     0,
     Check},
    {L"prefs watch", L"[SECTION] [--count N]",
     L"Changes of the user's preferences, a line each, until N were seen or the program is interrupted; what "
     L"changes\n"
     L"    and changes back within a fifth of a second is not seen.",
     kWatchSwitches, 0, 1, Watch},
};

}  // namespace

std::span<const Command> PreferenceCommands() {
    return kCommands;
}
