#pragma once

#include "names/file_name.h"
#include "platform/export.h"

// The kinds of file that the product knows, each with a display name and a default extension, told from a
// name's extension alone, ignoring case; no file is opened. All of this may be called from any thread.
//
// Kept on purpose: an extension that several kinds share is the first of them, so that GetFileType never
// answers FT_RTF_DOCUMENT, FT_DOCX_DOCUMENT, FT_FILLABLE_PDF or FT_JS_FILE.

// The numbers are stored and passed between programs; those that are missing here behave like FT_NONE.
enum FileType : int {
    FT_NONE = 0,
    FT_WP52_TEMPLATE = 1,
    FT_WP_TEMPLATE = 2,
    FT_WORD_TEMPLATE = 3,
    FT_RTF_TEMPLATE = 4,
    FT_TEXT_TEMPLATE = 5,
    FT_FORM_TEMPLATE = 6,
    FT_PDF_TEMPLATE = 7,
    FT_DOCX_TEMPLATE = 9,
    FT_DOCM_TEMPLATE = 10,
    FT_CLAUSE_LIBRARY = 16,
    FT_INTERVIEW_TEMPLATE = 17,
    FT_BINARY_ANSWER_FILE = 18,
    FT_ANSWER_FILE = 19,
    FT_TEXT_ANSWER_FILE = 20,
    FT_AUTO_INSTALL_FILE = 21,
    FT_AUTO_ASSEMBLE_FILE = 22,
    FT_CLAUSE_FILE = 23,
    FT_INTERVIEW_FILE = 24,
    FT_VARIABLE_COLLECTION = 25,
    FT_WP_DOCUMENT = 26,
    FT_WORD_DOCUMENT = 27,
    FT_RTF_DOCUMENT = 28,
    FT_TEXT_DOCUMENT = 29,
    FT_FORM_DOCUMENT = 30,
    FT_PDF_DOCUMENT = 31,
    FT_PDF_FILE = 32,
    FT_ENVOY_FILE = 33,
    FT_PUBLISH_SETTINGS = 34,
    FT_HTML_FILE = 35,
    FT_CATALOG_FILE = 36,
    FT_PUBLISHER_ANSWER_MAPPING = 37,
    FT_USER_ANSWER_MAPPING = 38,
    FT_DOCX_DOCUMENT = 39,
    FT_DOCM_DOCUMENT = 40,
    FT_CS_FILE = 41,
    FT_FILLABLE_PDF = 42,
    FT_JPG_FILE = 43,
    FT_PNG_FILE = 44,
    FT_GIF_FILE = 45,
    FT_JS_FILE = 46,
    FT_PDB_FILE = 47,
    FT_DLL_FILE = 48,
};

// Constant texts that live as long as the library: never null, empty for a kind without one and for any other
// number. FT_HTML_FILE and FT_CATALOG_FILE have neither, although their extensions are recognised.
QL_API const wchar_t* GetFileName(FileType type) noexcept;
QL_API const wchar_t* GetFileExt(FileType type) noexcept;  // with its dot

// The kind of an extension; FT_NONE for one that is not known, and for none. The text is not parsed as a
// name: what follows its last dot counts, tails included. A null pointer has no extension.
QL_API FileType GetFileType(const QLFileName& name);
QL_API FileType GetFileType(const wchar_t* text);
QL_API FileType GetFileType(std::wstring_view text);
template <ql::CountedText Text>
FileType GetFileType(const Text& text) {
    return GetFileType(std::wstring_view(text));
}

// The same among the kinds of documents and among those of templates, libraries and interview templates;
// FT_NONE when the extension is of neither. Texts are parsed as file names.
QL_API FileType GetDocumentType(const QLFileName& name);
QL_API FileType GetDocumentType(const wchar_t* text);
QL_API FileType GetTemplateType(const QLFileName& name);
QL_API FileType GetTemplateType(const wchar_t* text);

// The kind of document that a template of this kind is assembled to; FT_NONE for any other kind.
QL_API FileType GetTemplateDocType(FileType type) noexcept;

// Whether the file is of one of the product's own kinds, word processors' templates among them; interview
// files, variable collections and documents are not.
QL_API bool IsQuilletFileType(const QLFileName& name);
