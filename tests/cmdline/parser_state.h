#pragma once

#include <string>

#include "tools/qlutil/switch_accessors.h"

// What the parsers of command lines hold, as texts.

inline std::wstring Number(const wchar_t* name, long value, long initial) {
    return value == initial ? L"" : name + std::to_wstring(value);
}

inline std::wstring List(const wchar_t* name, const QLStringTable& list) {
    std::wstring told;
    for (unsigned i = 0; i < list.NumEntries(); ++i) told += name + list(static_cast<int>(i)).str();
    return told;
}

// Absent and empty differ.
template <class Parser, class Rows>
std::wstring Texts(const Parser& parser, const Rows& rows) {
    std::wstring told;
    for (const auto& [key, get] : rows)
        if (const wchar_t* const text = (parser.*get)()) told += std::wstring(L" ") + key + L"=" + text;
    return told;
}

template <class Parser, class Rows>
std::wstring Flags(const Parser& parser, const Rows& rows) {
    std::wstring told;
    for (const auto& [key, get] : rows) told += (parser.*get)() ? std::wstring(L" ") + key : L"";
    return told;
}

template <class Parser>
std::wstring WithTheRest(std::wstring told, const Parser& parser) {
    told += Number(L" copies=", parser.GetPrintCopies(), 1) + List(L" ignored=", parser.GetIgnoredWords());
    return told.substr(told.empty() ? 0 : 1);
}

// All that differs from the state without switches.
inline std::wstring StateOf(QuilletCmdSwitchParser& parser) {
    return WithTheRest(
        Texts(parser, kMainTexts) + Flags(parser, kMainFlags) + Number(L" mode=", parser.GetLibMode(), 2) +
            Number(L" exit=", parser.GetExit(), 2) + Number(L" type=", parser.GetOutputFileType(), 0) +
            Number(L" ask=", parser.GetInitialAskState(), 0) + List(L" overlay=", parser.GetOverlayFiles()),
        parser);
}

inline std::wstring StateOf(const ServerCmdSwitches& parser) {
    return WithTheRest(Texts(parser, kServerTexts) + Flags(parser, kServerFlags), parser);
}
