#include "tools/qlutil/preference_documents.h"

#include <limits>
#include <map>
#include <optional>

#include "json/json.h"
#include "settings/settings_store.h"
#include "tools/qlutil/bad_document.h"
#include "tools/qlutil/stored_preferences.h"
#include "tools/qlutil/text_file.h"

namespace {

// The store's separator between section and entry.
constexpr std::wstring_view kKeySeparator = L"<-^->";

// The registry's numbers for the two types that a settings document has words for.
constexpr unsigned long kText = 1;
constexpr unsigned long kNumber = 4;
constexpr std::size_t kMostUnits = 511;  // that the readers of texts find

// A value of any other kind is an object with its type and its bytes; settings stores pass over it.
constexpr wchar_t kTypeKey[] = L"type";
constexpr wchar_t kBytesKey[] = L"bytes";

RegistryValue TextValue(std::wstring_view text) {
    RegistryValue value{kText, {}};
    for (const wchar_t unit : text) {
        value.bytes.push_back(static_cast<unsigned char>(unit & 0xff));
        value.bytes.push_back(static_cast<unsigned char>(unit >> 8));
    }
    value.bytes.insert(value.bytes.end(), 2, 0);
    return value;
}

RegistryValue NumberValue(int number) {
    RegistryValue value{kNumber, {}};
    for (int shift = 0; shift < 32; shift += 8)
        value.bytes.push_back(static_cast<unsigned char>(static_cast<unsigned>(number) >> shift & 0xff));
    return value;
}

std::unique_ptr<JSON::Value> AsMember(const RegistryValue& value) {
    RWWString text;
    if (TextOfRegValue(value, text) && TextValue(text) == value) return std::make_unique<JSON::Value>(text);
    int number = 0;
    if (NumberOfRegValue(value, number) && NumberValue(number) == value)
        return std::make_unique<JSON::Value>(static_cast<double>(number));
    std::wstring bytes;
    for (const unsigned char byte : value.bytes) {
        constexpr wchar_t kDigits[] = L"0123456789abcdef";
        bytes += kDigits[byte >> 4];
        bytes += kDigits[byte & 15];
    }
    auto member = std::make_unique<JSON::Value>(JSON::Object);
    member->AddMember(kTypeKey, std::make_unique<JSON::Value>(static_cast<double>(value.type)));
    member->AddMember(kBytesKey, std::make_unique<JSON::Value>(RWWString(bytes)));
    return member;
}

std::optional<int> WholeNumber(const JSON::Value& value) {
    constexpr double kLeast = std::numeric_limits<int>::min();
    constexpr double kMost = std::numeric_limits<int>::max();
    if (value.kind() != JSON::Number || !(value.number() >= kLeast && value.number() <= kMost))
        return std::nullopt;
    return static_cast<int>(value.number());
}

std::optional<std::vector<unsigned char>> Bytes(std::wstring_view digits) {
    const auto valueOf = [](wchar_t digit) {
        return static_cast<unsigned>(std::wstring_view(L"0123456789abcdef").find(digit));
    };
    std::vector<unsigned char> bytes;
    if (digits.size() % 2 != 0) return std::nullopt;
    for (; !digits.empty(); digits.remove_prefix(2)) {
        const unsigned high = valueOf(digits[0]);
        const unsigned low = valueOf(digits[1]);
        if (high > 15 || low > 15) return std::nullopt;
        bytes.push_back(static_cast<unsigned char>(high * 16 + low));
    }
    return bytes;
}

// What a member of a document stands for; nothing, and why, when for no preference.
std::optional<RegistryValue> FromMember(const JSON::Value& member, std::wstring& why) {
    why = L"is neither a text nor a truth value nor a number of 32 bits";
    if (member.kind() == JSON::String) {
        why = L"is a text with a zero or of more than 511 characters, which no program would find";
        if (member.text().size() > kMostUnits || member.text().find(L'\0') != std::wstring_view::npos)
            return std::nullopt;
        return TextValue(member.text());
    }
    if (member.kind() == JSON::Bool) return TextValue(member.flag() ? g_trueStr : g_falseStr);
    if (const auto number = WholeNumber(member)) return NumberValue(*number);
    const JSON::Value* const type = member.Member(kTypeKey);
    const JSON::Value* const digits = member.Member(kBytesKey);
    const auto typeNumber = type ? WholeNumber(*type) : std::nullopt;
    auto bytes = digits && digits->kind() == JSON::String ? Bytes(digits->text()) : std::nullopt;
    if (!typeNumber || !bytes) return std::nullopt;
    return RegistryValue{static_cast<unsigned long>(*typeNumber), std::move(*bytes)};
}

using Preferences = std::map<Preference, RegistryValue>;

// The preferences of a document; nothing, and why, when one member is bad. Settings that a host addresses by
// number are no preferences: they are counted and passed over.
std::optional<Preferences> ReadDocument(std::wstring_view file, std::wstring& why, int& numbered) {
    const auto text = ReadTextFile(file, why);
    if (!text) return std::nullopt;
    const auto root = JSON::Parse(*text);
    if (!root) {
        why = DescribeBadDocument(file, *text);
        return std::nullopt;
    }
    if (root->kind() != JSON::Object) {
        why = std::wstring(file) + L" is not a settings document: not an object";
        return std::nullopt;
    }
    Preferences preferences;
    RWWString key;
    for (const auto* member = root->FirstMember(key); member; member = root->NextMember(key)) {
        const std::size_t separator = key.view().find(kKeySeparator);
        if (separator == RWWString::npos && ToInt(key.view())) {
            ++numbered;
            continue;
        }
        std::wstring fault = L"is not a section, <-^-> and an entry";
        std::optional<RegistryValue> value;
        if (separator != RWWString::npos) value = FromMember(*member, fault);
        if (!value) {
            why = L"member \"" + key.str() + L"\" " + fault;
            return std::nullopt;
        }
        preferences.emplace(Preference{RWWString(key.view().substr(0, separator)),
                                       RWWString(key.view().substr(separator + kKeySeparator.size()))},
                            std::move(*value));
    }
    return preferences;
}

// A preference's value before the import, to be put back.
struct Undo {
    Preference at;
    std::optional<RegistryValue> former;
};

bool PutBack(const std::vector<Undo>& done) {
    bool isWhole = true;
    for (auto undo = done.rbegin(); undo != done.rend(); ++undo) {
        const wchar_t* const section = undo->at.sectionText();
        const wchar_t* const entry = undo->at.entryText();
        isWhole &=
            undo->former ? WriteRegValue(section, entry, *undo->former) : DeleteRegValue(section, entry);
    }
    return isWhole;
}

}  // namespace

Answer ExportPreferences(const Arguments& arguments) {
    JSON::Value document(JSON::Object);
    unsigned count = 0;
    std::wstring leftOut;
    for (const StoredPreference& stored : StoredIn(AllSections(false), false)) {
        const Preference& at = stored.at;
        if (at.section.view().find(kKeySeparator) != RWWString::npos) {
            leftOut += L"left out " + at.Name() + L": its section's name holds <-^->\n";
        } else if (document.AddMember(at.section + kKeySeparator + at.entry, AsMember(stored.value))) {
            ++count;
        }
    }
    WriteToStream(Stream::kError, leftOut);
    RWWString text = JSON::Serialize(&document);
    if (arguments.count() == 0) return Document{std::move(text)};
    std::wstring why;
    if (WriteTextFile(arguments[0], text.str() + L'\n', why)) return Record{{L"count", count}};
    return Answer::Failure(why);
}

Answer ImportPreferences(const Arguments& arguments) {
    std::wstring why;
    int numbered = 0;
    const auto preferences = ReadDocument(arguments[0], why, numbered);
    if (!preferences) return Answer::Failure(why + L"; nothing was changed");
    std::vector<Undo> done;
    for (const auto& [at, value] : *preferences) {
        RegistryValue former;
        const bool isThere = ReadRegValue(at.sectionText(), at.entryText(), false, former);
        if (!WriteRegValue(at.sectionText(), at.entryText(), value)) {
            const std::wstring where = L"the registry did not take " + at.Name() + L", number " +
                                       std::to_wstring(done.size() + 1) + L" of " +
                                       std::to_wstring(preferences->size());
            return Answer::Failure(where + (PutBack(done)
                                                ? L"; what was there before is back"
                                                : L"; not all that was there before could be put back"));
        }
        done.push_back({at, isThere ? std::optional(std::move(former)) : std::nullopt});
    }
    if (numbered > 0) {
        WriteToStream(Stream::kError, L"left out " + std::to_wstring(numbered) +
                                          L" settings that a program addresses by number\n");
    }
    return Record{{L"count", static_cast<unsigned>(preferences->size())}};
}

Answer DiffPreferences(const Arguments& arguments) {
    std::wstring why;
    int numbered = 0;
    const auto file = ReadDocument(arguments[0], why, numbered);
    if (!file) return Answer::Failure(why);
    std::map<Preference, std::pair<const RegistryValue*, const RegistryValue*>> both;
    const auto stored = StoredIn(AllSections(false), false);
    for (const auto& [at, value] : *file) both[at].first = &value;
    for (const auto& [at, value] : stored) both[at].second = &value;
    List rows;
    for (const auto& [at, values] : both) {
        const auto& [before, now] = values;
        if (before && now && *before == *now) continue;
        rows.push_back(Record{{L"section", at.section},
                              {L"entry", at.entry},
                              {L"change", !before ? L"added"
                                          : !now  ? L"removed"
                                                  : L"changed"},
                              {L"file", before ? Show(*before).value : Node(nullptr)},
                              {L"registry", now ? Show(*now).value : Node(nullptr)}});
    }
    return rows;
}
