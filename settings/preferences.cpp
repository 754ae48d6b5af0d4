#include "settings/preferences.h"

#include <cwchar>
#include <iterator>
#include <utility>

#include "platform/failure.h"
#include "settings/preference_texts.h"
#include "settings/registry.h"
#include "settings/registry_values.h"
#include "settings/settings_store.h"
#include "settings/thread_store.h"
#include "text/paths.h"

namespace {

// What the calling thread's store has, or while there is none the registry, by the reader of the value's
// type; else the value that it is given with.
template <class Value, class Default>
void Read(bool (*fromStore)(const wchar_t*, const wchar_t*, Value*, Default), const wchar_t* section,
          const wchar_t* entry, Default defaultValue, Value& value) {
    if (!fromStore(section, entry, &value, defaultValue) && !ql::HasSettingsStores())
        ql::ReadFromRegistry(section, entry, value);
}

RWWString StoredText(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    RWWString text(defaultText);
    Read(ql::ReadThreadText, section, entry, defaultText, text);
    return text;
}

template <class Value>
Value NumberOf(bool (*fromStore)(const wchar_t*, const wchar_t*, Value*, Value), const wchar_t* section,
               const wchar_t* entry, Value defaultValue) {
    return ql::FailureIfThrown(defaultValue, [&] {
        Value value = defaultValue;
        Read(fromStore, section, entry, defaultValue, value);
        return value;
    });
}

template <class Value>
void Write(const wchar_t* section, const wchar_t* entry, Value value) {
    ql::Completes([&] { ql::WritePreference(section, entry, value); });
}

int ColorByte(unsigned long color, int index) {
    return static_cast<int>(color >> (8 * index) & 0xff);
}

}  // namespace

RWWString GetQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    return ql::FailureIfThrown({}, [&] {
        RWWString text = StoredText(section, entry, defaultText);
        if (text.isNull()) text = defaultText;
        return text;
    });
}

int GetQLRegInt(const wchar_t* section, const wchar_t* entry, int defaultValue) {
    return NumberOf(CQlsSettings::GetThreadRegIntSetting, section, entry, defaultValue);
}

bool GetQLRegBool(const wchar_t* section, const wchar_t* entry, bool defaultValue) {
    return NumberOf(CQlsSettings::GetThreadRegBoolSetting, section, entry, defaultValue);
}

unsigned long GetQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long defaultColor) {
    return ql::FailureIfThrown(
        defaultColor, [&] { return ql::ColorOf(StoredText(section, entry, nullptr), defaultColor); });
}

void WriteQLRegString(const wchar_t* section, const wchar_t* entry, const wchar_t* text) {
    Write(section, entry, text);
}

void WriteQLRegInt(const wchar_t* section, const wchar_t* entry, int value) {
    Write(section, entry, value);
}

void WriteQLRegBool(const wchar_t* section, const wchar_t* entry, bool value) {
    Write(section, entry, value);
}

void WriteQLRegColor(const wchar_t* section, const wchar_t* entry, unsigned long color) {
    wchar_t text[64];
    std::swprintf(text, std::size(text), L"%d,%d,%d", ColorByte(color, 0), ColorByte(color, 1),
                  ColorByte(color, 2));
    WriteQLRegString(section, entry, text);
}

// NOLINTNEXTLINE(bugprone-reserved-identifier)
RWWString _GetQLProfileString(const wchar_t* section, const wchar_t* entry, const wchar_t* defaultText) {
    return ql::FailureIfThrown({}, [&] { return StoredText(section, entry, defaultText); });
}

RWWString GetQLProfileDir(const wchar_t* section, const wchar_t* entry) {
    return ql::FailureIfThrown({}, [&] { return ql::PreferenceDirectory(section, entry); });
}

RWWString ql::PreferenceText(const wchar_t* section, const wchar_t* entry) {
    return StoredText(section, entry, nullptr);
}

RWWString ql::PreferenceDirectory(const wchar_t* section, const wchar_t* entry) {
    RWWString folder = StoredText(section, entry, nullptr);
    ql::CutTrailingBackslash(folder.str());
    return folder;
}
