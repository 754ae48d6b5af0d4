#include "settings/preference_layers.h"

#include <cwchar>
#include <iterator>
#include <string>
#include <string_view>

#include "platform/failure.h"
#include "settings/locked_settings.h"
#include "settings/preference_keys.h"
#include "settings/registry.h"
#include "settings/thread_store.h"
#include "text/characters.h"

namespace {

const wchar_t* TruthText(bool flag) {
    return flag ? g_trueStr : g_falseStr;
}

// What a store knows; nothing when it has not heard of the setting.
struct Known {
    bool isKnown = false;
    bool isSet = false;
    PreferenceInLayer content;
};

Known InStore(CQlsSettings* store, const ql::SettingKey& key) {
    if (!store) return {};
    ql::LockedSettings& state = ql::LockedSettings::Of(*store);
    const ql::ReaderGuard guard(state.lock);
    const ql::Setting* const setting = state.settings.Find(key);
    if (!setting) return {};
    if (!setting->isSet()) return {true, false, {}};
    switch (setting->type()) {
        case ql::SettingType::Integer:
            return {true, true, {PreferenceType::Integer, std::to_wstring(setting->number())}};
        case ql::SettingType::Boolean:
            return {true, true, {PreferenceType::Boolean, TruthText(setting->number() != 0)}};
        default: return {true, true, {PreferenceType::Text, RWWString(setting->text())}};
    }
}

PreferenceInLayer InRegistry(const wchar_t* section, const wchar_t* entry, bool machine) {
    RegistryValue value;
    if (!ReadRegValue(section, entry, machine, value)) return {};
    RWWString text;
    if (TextOfRegValue(value, text)) return {PreferenceType::Text, text};
    if (int number = 0; NumberOfRegValue(value, number))
        return {PreferenceType::Integer, std::to_wstring(number)};
    return {PreferenceType::Unreadable,
            std::to_wstring(value.bytes.size()) + L" bytes of type " + std::to_wstring(value.type)};
}

// --- the catalogue's defaults

struct Named {
    std::wstring_view constant;
    const wchar_t* text;
};

#define QL_WIDE(text) L##text
#define QL_NAMED(name, text) {QL_WIDE(#name), text},
// clang-format off: a macro's rows are no expression
constexpr Named kEntries[] = {QL_PREFERENCE_ENTRIES(QL_NAMED, QL_NAMED)};
constexpr Named kTextDefaults[] = {QL_PREFERENCE_TEXT_DEFAULTS(QL_NAMED)};
#undef QL_NAMED
struct NamedNumber {
    std::wstring_view constant;
    PreferenceType type;
    int number;
};
#define QL_NAMED_BOOL(name, value) {QL_WIDE(#name), PreferenceType::Boolean, value},
#define QL_NAMED_INT(name, value) {QL_WIDE(#name), PreferenceType::Integer, value},
constexpr NamedNumber kNumberDefaults[] = {QL_PREFERENCE_BOOL_DEFAULTS(QL_NAMED_BOOL)
                                               QL_PREFERENCE_INT_DEFAULTS(QL_NAMED_INT)};
// clang-format on
#undef QL_NAMED_INT
#undef QL_NAMED_BOOL
#undef QL_WIDE

struct TierDefaults {
    const wchar_t* pattern;
    const wchar_t* const (&colors)[kPreferenceColorTiers];
};
const TierDefaults kTierDefaults[] = {
    {QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL, QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_DEFREGSTR},
    {QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B, QLIE_TEXT_TEMPLATE_COLOR_SEQUENTIAL_B_DEFREGSTR},
    {QLIE_TEXT_TEMPLATE_COLOR_TIERED, QLIE_TEXT_TEMPLATE_COLOR_TIERED_DEFREGSTR},
    {QLIE_TEXT_TEMPLATE_COLOR_TIERED_B, QLIE_TEXT_TEMPLATE_COLOR_TIERED_B_DEFREGSTR},
};

bool IsDefaultOf(std::wstring_view constant, std::wstring_view entry) {
    return constant.starts_with(entry) && constant.substr(entry.size()).starts_with(L"_DEFREG");
}

PreferenceInLayer DefaultOfTier(std::wstring_view entry) {
    for (const TierDefaults& row : kTierDefaults) {
        for (std::size_t tier = 0; tier < kPreferenceColorTiers; ++tier) {
            wchar_t name[64];
            std::swprintf(name, std::size(name), row.pattern, static_cast<int>(tier) + 1);
            if (ql::EqualIgnoringCase(entry, name)) return {PreferenceType::Text, row.colors[tier]};
        }
    }
    return {};
}

PreferenceInLayer InCatalogue(const wchar_t* entry) {
    const std::wstring_view wanted = ql::TextOf(entry);
    for (const Named& known : kEntries) {
        if (!ql::EqualIgnoringCase(wanted, known.text)) continue;
        for (const Named& row : kTextDefaults) {
            if (IsDefaultOf(row.constant, known.constant)) return {PreferenceType::Text, row.text};
        }
        for (const NamedNumber& row : kNumberDefaults) {
            if (!IsDefaultOf(row.constant, known.constant)) continue;
            const bool isFlag = row.type == PreferenceType::Boolean;
            return {row.type,
                    isFlag ? RWWString(TruthText(row.number != 0)) : RWWString(std::to_wstring(row.number))};
        }
    }
    return DefaultOfTier(wanted);
}

}  // namespace

PreferenceOrigin FindPreference(const wchar_t* section, const wchar_t* entry) noexcept {
    PreferenceOrigin origin;
    ql::Completes([&] {
        const auto set = [&](PreferenceLayer layer, PreferenceInLayer content) {
            origin.layers[static_cast<std::size_t>(layer)] = std::move(content);
        };
        const ql::SettingKey key(section, entry);
        const ql::ThreadStores stores = ql::StoresOfThread();
        Known context = InStore(stores.context.get(), key);
        Known global = InStore(stores.global.get(), key);
        const Known& asked = stores.context ? context : global;
        const bool isKnown = asked.isKnown;
        const bool isSet = asked.isSet;
        set(PreferenceLayer::Context, std::move(context.content));
        set(PreferenceLayer::Global, std::move(global.content));
        set(PreferenceLayer::User, InRegistry(section, entry, false));
        set(PreferenceLayer::Machine, InRegistry(section, entry, true));
        set(PreferenceLayer::Default, InCatalogue(entry));
        if (isKnown) {
            if (isSet) origin.winner = stores.context ? PreferenceLayer::Context : PreferenceLayer::Global;
            return;
        }
        for (const PreferenceLayer layer : {PreferenceLayer::User, PreferenceLayer::Machine}) {
            const PreferenceType type = origin[layer].type;
            if (type == PreferenceType::None || type == PreferenceType::Unreadable) continue;
            origin.winner = layer;
            return;
        }
    });
    return origin;
}
