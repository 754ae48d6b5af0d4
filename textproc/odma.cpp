#include "textproc/odma.h"

#include <algorithm>
#include <string_view>

#include "platform/failure.h"
#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "text/characters.h"

namespace {

struct Application {
    const wchar_t* entry;
    const wchar_t* usualId;
};

constexpr Application kWordPerfect = {L"WordPerfect Application ID", L"WORDPERFECT"};
constexpr Application kWord = {L"Word Application ID", L"MS WORD"};
constexpr Application kAutomator = {L"Automator Application ID", L"QUILLETAUTO"};
constexpr Application kFiller = {L"Filler Application ID", L"QUILLETFILLER"};
constexpr Application kAcrobat = {L"Acrobat Application ID", L"ACROBAT"};
constexpr Application kQuillet = {L"Quillet Application ID", L"QUILLET"};

struct Row {
    FileType kind;
    const Application& application;
};

constexpr Row kApplications[] = {
    {FT_WP52_TEMPLATE, kWordPerfect}, {FT_WP_TEMPLATE, kWordPerfect}, {FT_WP_DOCUMENT, kWordPerfect},
    {FT_WORD_TEMPLATE, kWord},        {FT_RTF_TEMPLATE, kWord},       {FT_DOCX_TEMPLATE, kWord},
    {FT_DOCM_TEMPLATE, kWord},        {FT_WORD_DOCUMENT, kWord},      {FT_RTF_DOCUMENT, kWord},
    {FT_DOCX_DOCUMENT, kWord},        {FT_DOCM_DOCUMENT, kWord},      {FT_FORM_TEMPLATE, kAutomator},
    {FT_PDF_TEMPLATE, kAutomator},    {FT_FORM_DOCUMENT, kFiller},    {FT_PDF_DOCUMENT, kFiller},
    {FT_ENVOY_FILE, kFiller},         {FT_PDF_FILE, kAcrobat},        {FT_FILLABLE_PDF, kAcrobat},
};

const Application& ApplicationOf(FileType kind) {
    const auto row = std::ranges::find(kApplications, kind, &Row::kind);
    return row != std::end(kApplications) ? row->application : kQuillet;
}

RWWString FormatNameEntry(FileType kind) {
    std::wstring entry = GetFileExt(kind);
    if (!entry.empty()) entry.erase(0, 1);  // the dot
    ql::MakeUpper(entry);
    return RWWString(std::move(entry)) + L" Format Name";
}

}  // namespace

RWWString GetOdmaApplicationId(FileType kind) {
    const Application& application = ApplicationOf(kind);
    return GetQLRegString(QLIS_DOCUMENT_MANAGEMENT, application.entry, application.usualId);
}

void SetOdmaApplicationId(FileType kind, const wchar_t* id) {
    WriteQLRegString(QLIS_DOCUMENT_MANAGEMENT, ApplicationOf(kind).entry, id);
}

RWWString GetOdmaFormatName(FileType kind) {
    return ql::FailureIfThrown({}, [&] {
        return GetQLRegString(QLIS_DOCUMENT_MANAGEMENT, FormatNameEntry(kind).data(), GetFileExt(kind));
    });
}

void SetOdmaFormatName(FileType kind, const wchar_t* name) {
    const std::wstring_view text = name ? name : L"";
    const bool clears = text.empty() || text == GetFileExt(kind);
    ql::Completes([&] {
        WriteQLRegString(QLIS_DOCUMENT_MANAGEMENT, FormatNameEntry(kind).data(), clears ? nullptr : name);
    });
}
