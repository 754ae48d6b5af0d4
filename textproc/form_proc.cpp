#include "textproc/form_proc.h"

#include <algorithm>
#include <iterator>

#include "platform/failure.h"
#include "prefs/known_directory.h"
#include "settings/preference_keys.h"
#include "settings/preference_texts.h"
#include "settings/preferences.h"
#include "text/blanks.h"
#include "text/characters.h"
#include "textproc/template_directory.h"

namespace {

using Kinds = unsigned;  // a bit for each kind below 32

template <class... Kind>
constexpr Kinds KindsOf(Kind... kinds) {
    return (... | (1U << kinds));
}

constexpr Kinds kWordPerfectKinds = KindsOf(FT_WP52_TEMPLATE, FT_WP_TEMPLATE);
constexpr Kinds kWord2003Kinds = KindsOf(FT_WORD_TEMPLATE, FT_RTF_TEMPLATE);
constexpr Kinds kWordKinds = kWord2003Kinds | KindsOf(FT_DOCX_TEMPLATE, FT_DOCM_TEMPLATE);
constexpr Kinds kFormKinds = KindsOf(FT_FORM_TEMPLATE, FT_PDF_TEMPLATE);

enum class Family { WordPerfect, Word, Own, Text };

struct Processor {
    FormProc number;
    Family family;
    const wchar_t *name, *exe, *windowClass, *service, *topic, *regKey;
    FileType textFileType;
    Kinds handles;
};

constexpr const wchar_t* kWinWord = L"winword.exe";
constexpr const wchar_t* kWordWindow = L"OpusApp";
constexpr const wchar_t* kWordService = L"WinWord";
constexpr const wchar_t* kWordDocument = L"Word.Document.8";
constexpr const wchar_t* kOwnService = L"QuilformServer";
constexpr const wchar_t* kOwnTopic = L"QuilformCommand";
constexpr const wchar_t* kAutomator = L"Quillet Automator";

// In the order of preference: Word before WordPerfect, the newest first.
constexpr Processor kProcessors[] = {
    {FP_WORD2013, Family::Word, L"Word 2013", kWinWord, kWordWindow, kWordService, L"System", kWordDocument,
     FT_WORD_TEMPLATE, kWordKinds},
    {FP_WORD2010, Family::Word, L"Word 2010", kWinWord, kWordWindow, kWordService, L"System", kWordDocument,
     FT_WORD_TEMPLATE, kWordKinds},
    {FP_WORD2007, Family::Word, L"Word 2007", kWinWord, kWordWindow, kWordService, L"System", kWordDocument,
     FT_WORD_TEMPLATE, kWordKinds},
    {FP_WORD2003, Family::Word, L"Word 2003", kWinWord, kWordWindow, kWordService, L"System", kWordDocument,
     FT_WORD_TEMPLATE, kWord2003Kinds},
    {FP_WP17, Family::WordPerfect, L"WordPerfect 17", L"wpwin17.exe", L"WordPerfect.17.00", L"WPWin17_Macros",
     L"Commands", L"WP17Doc", FT_WP_TEMPLATE, kWordPerfectKinds},
    {FP_WP16, Family::WordPerfect, L"WordPerfect 16", L"wpwin16.exe", L"WordPerfect.16.00", L"WPWin16_Macros",
     L"Commands", L"WP16Doc", FT_WP_TEMPLATE, kWordPerfectKinds},
    {FP_WP15, Family::WordPerfect, L"WordPerfect 15", L"wpwin15.exe", L"WordPerfect.15.00", L"WPWin15_Macros",
     L"Commands", L"WP15Doc", FT_WP_TEMPLATE, kWordPerfectKinds},
    {FP_WP14, Family::WordPerfect, L"WordPerfect 14", L"wpwin14.exe", L"WordPerfect.14.00", L"WPWin14_Macros",
     L"Commands", L"WP14Doc", FT_WP_TEMPLATE, kWordPerfectKinds},
    {FP_WP13, Family::WordPerfect, L"WordPerfect 13", L"wpwin13.exe", L"WordPerfect.13.00", L"WPWin13_Macros",
     L"Commands", L"WP13Doc", FT_WP_TEMPLATE, kWordPerfectKinds},
    {FP_AUTOMATOR, Family::Own, kAutomator, L"qlauto.exe", L"Quillet6AutomatorWnd32", kOwnService, kOwnTopic,
     kAutomator, FT_NONE, kFormKinds},
    {FP_FILLER, Family::Own, L"Quillet Filler", L"qlfill.exe", L"Quillet6FillerWnd32", kOwnService, kOwnTopic,
     kAutomator, FT_NONE, 0},
    {FP_TEXT, Family::Text, L"", nullptr, nullptr, nullptr, nullptr, nullptr, FT_NONE, 0},
};

constexpr Processor kNoProcessor = {FP_NONE, Family::Text, nullptr, nullptr, nullptr,
                                    nullptr, nullptr,      nullptr, FT_NONE, 0};

const Processor& Find(FormProc number) noexcept {
    const auto row = std::ranges::find(kProcessors, number, &Processor::number);
    return row != std::end(kProcessors) ? *row : kNoProcessor;
}

constexpr bool IsTextProcessor(const Processor& processor) {
    return processor.family == Family::Word || processor.family == Family::WordPerfect;
}

constexpr bool Handles(const Processor& processor, FileType kind) {
    return kind > FT_NONE && kind < 32 && (processor.handles & (1U << kind)) != 0;
}

RWWString WithBackslash(RWWString directory) {
    if (!directory.isNull() && !directory.ends_with(L"\\")) directory.append(L'\\');
    return directory;
}

RWWString SectionOf(FormProc processor) {
    return RWWString(QLIS_WORD_PROC).append(L'\\').append(ql::TextOf(GetFormProcName(processor)));
}

RWWString ProfileDirectory(FormProc processor, const wchar_t* entry) {
    const RWWString directory = ql::PreferenceDirectory(SectionOf(processor).data(), entry);
    return RWWString(ql::WithoutBlanks(directory));
}

bool IsInstalled(const Processor& processor) {
    return !ql::TemplateDirectoryOf(processor.number).isNull();
}

// The first processor in the order of preference that fits and is installed.
template <class Fits>
FormProc FirstInstalled(Fits fits) {
    const auto row =
        std::ranges::find_if(kProcessors, [&](const Processor& p) { return fits(p) && IsInstalled(p); });
    return row != std::end(kProcessors) ? row->number : FP_NONE;
}

template <class Fits>
FormProc FirstInstalledOrNone(Fits fits) noexcept {
    return ql::FailureIfThrown(FP_NONE, [&] { return FirstInstalled(fits); });
}

struct DocumentKind {
    FileType document, itsTemplate;
};

constexpr DocumentKind kDocumentKinds[] = {
    {FT_WP_DOCUMENT, FT_WP_TEMPLATE},     {FT_WORD_DOCUMENT, FT_WORD_TEMPLATE},
    {FT_RTF_DOCUMENT, FT_RTF_TEMPLATE},   {FT_TEXT_DOCUMENT, FT_TEXT_TEMPLATE},
    {FT_DOCX_DOCUMENT, FT_DOCX_TEMPLATE}, {FT_DOCM_DOCUMENT, FT_DOCM_TEMPLATE},
};

FileType TemplateKindOf(FileType kind) {
    const auto row = std::ranges::find(kDocumentKinds, kind, &DocumentKind::document);
    return row != std::end(kDocumentKinds) ? row->itsTemplate : kind;
}

struct Version {
    long number;
    FormProc processor;
};

constexpr Version kWordVersions[] = {
    {11, FP_WORD2003}, {12, FP_WORD2007}, {14, FP_WORD2010}, {15, FP_WORD2013}};

}  // namespace

const wchar_t* GetFormProcName(FormProc processor) noexcept {
    return Find(processor).name;
}

const wchar_t* GetFormProcExe(FormProc processor) noexcept {
    return Find(processor).exe;
}

const wchar_t* GetFormProcClass(FormProc processor) noexcept {
    return Find(processor).windowClass;
}

const wchar_t* GetFormProcService(FormProc processor) noexcept {
    return Find(processor).service;
}

const wchar_t* GetFormProcTopic(FormProc processor) noexcept {
    return Find(processor).topic;
}

const wchar_t* GetFormProcRegKey(FormProc processor) noexcept {
    return Find(processor).regKey;
}

RWWString GetFormProcRegName(FormProc processor) {
    return ql::FailureIfThrown({}, [&] { return SectionOf(processor); });
}

FileType GetTextFileType(FormProc processor) noexcept {
    return Find(processor).textFileType;
}

RWWString GetFormProcTmplDir(FormProc processor) {
    return ql::FailureIfThrown({}, [&] { return ql::TemplateDirectoryOf(processor); });
}

RWWString ql::TemplateDirectoryOf(FormProc processor) {
    const Processor& known = Find(processor);
    if (known.number == FP_NONE) return {};
    return WithBackslash(known.family == Family::Own ? ql::KnownDirectory(TemplateDirectory)
                                                     : ProfileDirectory(processor, QLIE_TEMPLATE_FILES_DIR));
}

RWWString GetFormProcDocDir(FormProc processor) {
    const Processor& known = Find(processor);
    if (known.number == FP_NONE) return {};
    return ql::FailureIfThrown({}, [&] {
        RWWString directory = known.family == Family::Own ? ql::KnownDirectory(FormDocumentDirectory)
                                                          : ProfileDirectory(processor, QLIE_DOC_DIR);
        if (directory.isNull()) directory = ql::KnownDirectory(PersonalDocumentsDirectory);
        return WithBackslash(std::move(directory));
    });
}

FormProc GetMSWordVersion() {
    return FirstInstalledOrNone([](const Processor& p) { return p.family == Family::Word; });
}

FormProc GetWordPerfectVersion() {
    return FirstInstalledOrNone([](const Processor& p) { return p.family == Family::WordPerfect; });
}

FormProc GetInstalledTextFormProc() {
    return FirstInstalledOrNone(IsTextProcessor);
}

FormProc GetDefaultTextFormProc() {
    return ql::FailureIfThrown(FP_NONE, ql::DefaultTextProcessor);
}

FormProc ql::DefaultTextProcessor() {
    const RWWString name = ql::PreferenceText(QLIS_WORD_PROC, QLIE_DEF_WP);
    const auto row = std::ranges::find_if(kProcessors, [&](const Processor& p) {
        return IsTextProcessor(p) && ql::EqualIgnoringCase(p.name, name);
    });
    return row != std::end(kProcessors) && IsInstalled(*row) ? row->number : FP_NONE;
}

FileType GetDefaultTextFileType() {
    return GetTextFileType(GetDefaultTextFormProc());
}

bool CanSaveInWord2007Format() {
    return Handles(Find(GetMSWordVersion()), FT_DOCX_TEMPLATE);  // a default processor is installed, too
}

FormProc GetFormProcFromVerStr(const wchar_t* version) {
    if (!version) return FP_NONE;
    const long number = std::wcstol(version, nullptr, 10);
    const auto row = std::ranges::find(kWordVersions, number, &Version::number);
    return row != std::end(kWordVersions) ? row->processor : FP_NONE;
}

FormProc GetFormProcType(FileType kind) {
    return ql::FailureIfThrown(FP_NONE, [kind] { return ql::ProcessorOf(kind); });
}

FormProc ql::ProcessorOf(FileType kind) {
    if (Handles(Find(FP_AUTOMATOR), kind)) return FP_AUTOMATOR;
    const FormProc usual = ql::DefaultTextProcessor();
    if (Handles(Find(usual), kind)) return usual;
    const FormProc installed =
        FirstInstalled([kind](const Processor& p) { return IsTextProcessor(p) && Handles(p, kind); });
    if (installed != FP_NONE) return installed;
    return kind == FT_TEXT_TEMPLATE ? FP_TEXT : FP_NONE;
}

FormProc GetSendDocToTextFormProc(const QLFileName& name) {
    const FileType kind = TemplateKindOf(GetFileType(name));
    if (GetQLRegBool(QLIS_WORD_PROC, QLIE_SEND_DOCS_TO_DEF_WP, false)) {
        const FormProc processor = GetFormProcType(kind);
        if (IsTextProcessor(Find(processor))) return processor;
    }
    const FormProc usual = GetDefaultTextFormProc();
    return usual != FP_NONE ? usual : GetInstalledTextFormProc();
}
