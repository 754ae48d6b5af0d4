#include "settings/preferences.h"

#include <cwchar>
#include <iterator>

#include "settings/registry.h"
#include "settings/registry_writers.h"
#include "settings/settings_store.h"
#include "settings/trailing_backslash.h"

namespace {

bool HasStores() {
    return CQlsSettings::GetSettings(-1, false) != nullptr;
}

RWWString Text(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    RWWString text;
    if (CQlsSettings::GetThreadRegStrSetting(section, entry, &text, defaultText) || HasStores()) return text;
    if (!GetRegStringVal(section, entry, &text)) text = defaultText;
    return text;
}

int ColorByte(unsigned long color, int index) {
    return static_cast<int>(color >> (8 * index) & 0xff);
}

}  // namespace

RWWString GetQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    RWWString text = Text(section, entry, defaultText);
    if (text.isNull()) text = defaultText;
    return text;
}

int GetQLRegInt(const wchar_t* section, const wchar_t* entry, int defaultValue) {
    int value = defaultValue;
    if (CQlsSettings::GetThreadRegIntSetting(section, entry, &value, defaultValue) || HasStores())
        return value;
    unsigned int content = 0;
    return GetRegIntVal(section, entry, &content) ? static_cast<int>(content) : defaultValue;
}

bool GetQLRegBool(const wchar_t* section, const wchar_t* entry, bool defaultValue) {
    bool value = defaultValue;
    if (CQlsSettings::GetThreadRegBoolSetting(section, entry, &value, defaultValue) || HasStores())
        return value;
    GetRegBoolVal(section, entry, &value);
    return value;
}

unsigned long GetQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long defaultColor) {
    return QLRegStringToColor(GetQLRegString(section, entry, nullptr), defaultColor);
}

void WriteQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    if (text) {
        CQlsSettings::SetDefRegStrSetting(section, entry, text);
        CQlsSettings::SetThreadRegStrSetting(section, entry, text);
    } else {
        ql::WriteRegistryText(section, entry, nullptr);
        CQlsSettings::ClearThreadRegSetting(section, entry);
    }
}

void WriteQLRegInt(const wchar_t* section, const wchar_t* entry, int value) {
    CQlsSettings::SetDefRegIntSetting(section, entry, value);
    CQlsSettings::SetThreadRegIntSetting(section, entry, value);
}

void WriteQLRegBool(const wchar_t* section, const wchar_t* entry, bool value) {
    CQlsSettings::SetDefRegBoolSetting(section, entry, value);
    CQlsSettings::SetThreadRegBoolSetting(section, entry, value);
}

void WriteQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long color) {
    wchar_t text[64];
    std::swprintf(text, std::size(text), L"%d,%d,%d", ColorByte(color, 0), ColorByte(color, 1),
                  ColorByte(color, 2));
    WriteQLRegString(section, entry, text);
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
RWWString _GetQLProfileString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    return Text(section, entry, defaultText);
}

RWWString GetQLProfileDir(const wchar_t* section, const wchar_t* entry) {
    return ql::WithoutTrailingBackslash(_GetQLProfileString(section, entry, nullptr));
}
