#include "tools/qlutil/stored_preferences.h"

#include <algorithm>

namespace {

std::wstring Hexadecimal(const std::vector<unsigned char>& bytes) {
    constexpr wchar_t kDigits[] = L"0123456789abcdef";
    std::wstring text;
    for (const unsigned char byte : bytes) {
        text += kDigits[byte >> 4];
        text += kDigits[byte & 15];
    }
    return text;
}

}  // namespace

ShownValue Show(const RegistryValue& value) {
    RWWString text;
    if (TextOfRegValue(value, text)) return {text, L"text"};
    if (int number = 0; NumberOfRegValue(value, number)) return {number, L"int"};
    constexpr std::size_t kShown = 32;
    const auto shown = static_cast<std::ptrdiff_t>(std::min(value.bytes.size(), kShown));
    std::wstring bytes = Hexadecimal({value.bytes.begin(), value.bytes.begin() + shown});
    if (value.bytes.size() > kShown) bytes += L"...";
    return {RWWString(L"type " + std::to_wstring(value.type) + L", " + std::to_wstring(value.bytes.size()) +
                      L" bytes: " + bytes),
            L"other"};
}

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

std::vector<StoredPreference> StoredIn(const std::vector<RWWString>& sections, bool machine) {
    std::vector<StoredPreference> stored;
    for (const RWWString& section : sections) {
        EnumQLEntries entries(section.data(), machine);
        std::vector<RWWString> names;  // the registry has no order of its own
        for (RWWString name; entries.GetNextEntry(name);) names.push_back(name);
        std::sort(names.begin(), names.end());
        for (const RWWString& name : names) {
            RegistryValue value;
            if (ReadRegValue(section.data(), name.data(), machine, value))
                stored.push_back({{section, name}, std::move(value)});
        }
    }
    return stored;
}
