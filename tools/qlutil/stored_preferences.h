#pragma once

#include <functional>
#include <string>
#include <vector>

#include "settings/registry.h"
#include "tools/qlutil/answer.h"

// A preference by its names.
struct Preference {
    RWWString section;
    RWWString entry;

    const wchar_t* sectionText() const { return section.data(); }
    const wchar_t* entryText() const { return entry.data(); }
    std::wstring Name() const { return section.str() + L" / " + entry.str(); }
    // NOLINTNEXTLINE(modernize-use-nullptr): what the compiler makes of it
    auto operator<=>(const Preference&) const = default;
};

// A value of the registry as it is shown.
struct ShownValue {
    Node value;
    const wchar_t* type;  // "text", "int" or "other"
};
ShownValue Show(const RegistryValue& value);

// Every section of one root, those within sections too, the base key first as the empty section.
std::vector<RWWString> AllSections(bool machine);

// The preferences of the sections, ordered by section and entry as they are given and by name.
struct StoredPreference {
    Preference at;
    RegistryValue value;
};
std::vector<StoredPreference> StoredIn(const std::vector<RWWString>& sections, bool machine);
