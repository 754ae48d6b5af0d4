#include "names/file_type.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "names/name_access.h"
#include "text/characters.h"

namespace {

// What a kind is besides a kind.
enum Trait : unsigned {
    kPlain = 0,
    kTemplate = 1,
    kDocument = 2,
    kQuillet = 4,
    kNoDefault = 8,  // the extension is recognised but is no default
};

struct KindRow {
    FileType type;
    unsigned traits;
    FileType assembledTo;
    std::wstring_view name;  // of a literal, hence null-ended; so is the extension
    std::wstring_view extension;
};

// In the order in which extensions are looked up: of rows with one extension the first wins.
constexpr KindRow kKinds[] = {
    {FT_WP52_TEMPLATE, kTemplate | kQuillet, FT_WP_DOCUMENT, L"WordPerfect 5.2 Template", L".tpl"},
    {FT_WP_TEMPLATE, kTemplate | kQuillet, FT_WP_DOCUMENT, L"WordPerfect Template", L".wpt"},
    {FT_WORD_TEMPLATE, kTemplate | kQuillet, FT_WORD_DOCUMENT, L"Word Document Template", L".dot"},
    {FT_RTF_TEMPLATE, kTemplate | kQuillet, FT_RTF_DOCUMENT, L"Word RTF Template", L".rtf"},
    {FT_TEXT_TEMPLATE, kTemplate | kQuillet, FT_TEXT_DOCUMENT, L"Text Template", L".ttx"},
    {FT_FORM_TEMPLATE, kTemplate | kQuillet, FT_FORM_DOCUMENT, L"Quillet Form Template", L".qft"},
    {FT_PDF_TEMPLATE, kTemplate | kQuillet, FT_PDF_DOCUMENT, L"Quillet PDF Template", L".qpt"},
    {FT_DOCX_TEMPLATE, kTemplate | kQuillet, FT_DOCX_DOCUMENT, L"Word DOCX Template", L".docx"},
    {FT_DOCM_TEMPLATE, kTemplate | kQuillet, FT_DOCX_DOCUMENT, L"Word DOCM Template", L".dotm"},
    {FT_CLAUSE_LIBRARY, kTemplate | kQuillet, FT_NONE, L"Quillet Clause Library", L".qll"},
    {FT_INTERVIEW_TEMPLATE, kTemplate | kQuillet, FT_NONE, L"Quillet Interview Template", L".cmp"},
    {FT_BINARY_ANSWER_FILE, kQuillet, FT_NONE, L"Quillet Binary Answer File", L".ans"},
    {FT_ANSWER_FILE, kQuillet, FT_NONE, L"Quillet Answer File", L".anx"},
    {FT_TEXT_ANSWER_FILE, kQuillet, FT_NONE, L"Quillet Text Answer File", L".ant"},
    {FT_AUTO_INSTALL_FILE, kQuillet, FT_NONE, L"Quillet Auto-Install File", L".qli"},
    {FT_AUTO_ASSEMBLE_FILE, kQuillet, FT_NONE, L"Quillet Auto-Assemble File", L".qla"},
    {FT_CLAUSE_FILE, kQuillet, FT_NONE, L"Quillet Clause File", L".qcl"},
    {FT_INTERVIEW_FILE, kPlain, FT_NONE, L"Quillet Interview File", L".js"},
    {FT_VARIABLE_COLLECTION, kPlain, FT_NONE, L"Quillet Variable Collection File", L".qvc"},
    {FT_WP_DOCUMENT, kDocument, FT_NONE, L"WordPerfect Document", L".wpd"},
    {FT_WORD_DOCUMENT, kDocument, FT_NONE, L"Microsoft Word Document", L".doc"},
    {FT_RTF_DOCUMENT, kDocument, FT_NONE, L"Rich Text File", L".rtf"},
    {FT_TEXT_DOCUMENT, kDocument, FT_NONE, L"Text File", L".txt"},
    {FT_FORM_DOCUMENT, kDocument, FT_NONE, L"Quillet Form Document", L".qfd"},
    {FT_PDF_DOCUMENT, kDocument, FT_NONE, L"Quillet PDF Document", L".qpd"},
    {FT_PDF_FILE, kDocument, FT_NONE, L"PDF File", L".pdf"},
    {FT_ENVOY_FILE, kDocument, FT_NONE, L"Envoy File", L".evy"},
    {FT_PUBLISH_SETTINGS, kQuillet, FT_NONE, L"Publish Settings File", L".qlp"},
    {FT_HTML_FILE, kDocument | kNoDefault, FT_NONE, L"", L".html"},
    {FT_HTML_FILE, kDocument | kNoDefault, FT_NONE, L"", L".htm"},
    {FT_CATALOG_FILE, kNoDefault, FT_NONE, L"", L".qcat"},
    {FT_PUBLISHER_ANSWER_MAPPING, kQuillet, FT_NONE, L"Publisher Answer Mapping File", L".qlpmx"},
    {FT_USER_ANSWER_MAPPING, kQuillet, FT_NONE, L"User Answer Mapping File", L".qlumx"},
    {FT_DOCX_DOCUMENT, kDocument, FT_NONE, L"Microsoft Word Document", L".docx"},
    {FT_DOCM_DOCUMENT, kDocument, FT_NONE, L"Microsoft Word Document", L".docm"},
    {FT_CS_FILE, kPlain, FT_NONE, L"", L".cs"},
    {FT_FILLABLE_PDF, kPlain, FT_NONE, L"Fillable PDF Form", L".pdf"},
    {FT_JPG_FILE, kPlain, FT_NONE, L"", L".jpg"},
    {FT_PNG_FILE, kPlain, FT_NONE, L"", L".png"},
    {FT_GIF_FILE, kPlain, FT_NONE, L"", L".gif"},
    {FT_JS_FILE, kPlain, FT_NONE, L"", L".js"},
    {FT_PDB_FILE, kPlain, FT_NONE, L"", L".pdb"},
    {FT_DLL_FILE, kPlain, FT_NONE, L"", L".dll"},
};

constexpr KindRow kNoKind = {FT_NONE, kNoDefault, FT_NONE, L"", L""};

const KindRow& RowOf(FileType type) noexcept {
    const auto row = std::ranges::find(kKinds, type, &KindRow::type);
    return row != std::end(kKinds) ? *row : kNoKind;
}

// The first row of this extension, given without its dot, that has all of the traits.
const KindRow& RowOf(std::wstring_view extension, unsigned traits) noexcept {
    const auto row = std::ranges::find_if(kKinds, [=](const KindRow& kind) {
        return (kind.traits & traits) == traits && ql::EqualIgnoringCase(kind.extension.substr(1), extension);
    });
    return row != std::end(kKinds) ? *row : kNoKind;
}

const KindRow& RowOf(const QLFileName& name, unsigned traits) noexcept {
    return RowOf(ql::NameAccess::Extension(name), traits);
}

}  // namespace

const wchar_t* GetFileName(FileType type) noexcept {
    return RowOf(type).name.data();
}

const wchar_t* GetFileExt(FileType type) noexcept {
    const KindRow& row = RowOf(type);
    return row.traits & kNoDefault ? L"" : row.extension.data();
}

FileType GetFileType(const QLFileName& name) {
    return RowOf(name, kPlain).type;
}

FileType GetFileType(const wchar_t* text) {
    return GetFileType(ql::TextOf(text));
}

FileType GetFileType(std::wstring_view text) {
    const std::size_t dot = text.rfind(L'.');
    return dot == std::wstring_view::npos ? FT_NONE : RowOf(text.substr(dot + 1), kPlain).type;
}

FileType GetDocumentType(const QLFileName& name) {
    return RowOf(name, kDocument).type;
}

FileType GetDocumentType(const wchar_t* text) {
    return GetDocumentType(QLFileName(text));
}

FileType GetTemplateType(const QLFileName& name) {
    return RowOf(name, kTemplate).type;
}

FileType GetTemplateType(const wchar_t* text) {
    return GetTemplateType(QLFileName(text));
}

FileType GetTemplateDocType(FileType type) noexcept {
    return RowOf(type).assembledTo;
}

bool IsQuilletFileType(const QLFileName& name) {
    return (RowOf(name, kPlain).traits & kQuillet) != 0;
}
