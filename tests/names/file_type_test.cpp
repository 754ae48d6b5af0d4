#include "names/file_type.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace {

enum Owner { kOurs, kOthers };

// Each recognised extension: its kinds among all, among documents and among templates.
constexpr struct {
    const wchar_t* file;
    FileType type, document, templ;
    Owner owner;
} kFiles[] = {
    {L"a.TPL", FT_WP52_TEMPLATE, FT_NONE, FT_WP52_TEMPLATE, kOurs},
    {L"a.wpt", FT_WP_TEMPLATE, FT_NONE, FT_WP_TEMPLATE, kOurs},
    {L"a.dot", FT_WORD_TEMPLATE, FT_NONE, FT_WORD_TEMPLATE, kOurs},
    {L"a.rtf", FT_RTF_TEMPLATE, FT_RTF_DOCUMENT, FT_RTF_TEMPLATE, kOurs},
    {L"a.ttx", FT_TEXT_TEMPLATE, FT_NONE, FT_TEXT_TEMPLATE, kOurs},
    {L"a.qft", FT_FORM_TEMPLATE, FT_NONE, FT_FORM_TEMPLATE, kOurs},
    {L"a.qpt", FT_PDF_TEMPLATE, FT_NONE, FT_PDF_TEMPLATE, kOurs},
    {L"a.DocX", FT_DOCX_TEMPLATE, FT_DOCX_DOCUMENT, FT_DOCX_TEMPLATE, kOurs},
    {L"a.dotm", FT_DOCM_TEMPLATE, FT_NONE, FT_DOCM_TEMPLATE, kOurs},
    {L"a.qll", FT_CLAUSE_LIBRARY, FT_NONE, FT_CLAUSE_LIBRARY, kOurs},
    {L"a.cmp", FT_INTERVIEW_TEMPLATE, FT_NONE, FT_INTERVIEW_TEMPLATE, kOurs},
    {L"a.ans", FT_BINARY_ANSWER_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.anx", FT_ANSWER_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.ant", FT_TEXT_ANSWER_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.qli", FT_AUTO_INSTALL_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.qla", FT_AUTO_ASSEMBLE_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.qcl", FT_CLAUSE_FILE, FT_NONE, FT_NONE, kOurs},
    {L"a.js", FT_INTERVIEW_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.qvc", FT_VARIABLE_COLLECTION, FT_NONE, FT_NONE, kOthers},
    {L"a.wpd", FT_WP_DOCUMENT, FT_WP_DOCUMENT, FT_NONE, kOthers},
    {L"a.doc", FT_WORD_DOCUMENT, FT_WORD_DOCUMENT, FT_NONE, kOthers},
    {L"a.docm", FT_DOCM_DOCUMENT, FT_DOCM_DOCUMENT, FT_NONE, kOthers},
    {L"a.txt", FT_TEXT_DOCUMENT, FT_TEXT_DOCUMENT, FT_NONE, kOthers},
    {L"a.qfd", FT_FORM_DOCUMENT, FT_FORM_DOCUMENT, FT_NONE, kOthers},
    {L"a.qpd", FT_PDF_DOCUMENT, FT_PDF_DOCUMENT, FT_NONE, kOthers},
    {L"a.pdf", FT_PDF_FILE, FT_PDF_FILE, FT_NONE, kOthers},
    {L"a.evy", FT_ENVOY_FILE, FT_ENVOY_FILE, FT_NONE, kOthers},
    {L"a.qlp", FT_PUBLISH_SETTINGS, FT_NONE, FT_NONE, kOurs},
    {L"a.qcat", FT_CATALOG_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.html", FT_HTML_FILE, FT_HTML_FILE, FT_NONE, kOthers},
    {L"a.HTM", FT_HTML_FILE, FT_HTML_FILE, FT_NONE, kOthers},
    {L"a.qlpmx", FT_PUBLISHER_ANSWER_MAPPING, FT_NONE, FT_NONE, kOurs},
    {L"a.qlumx", FT_USER_ANSWER_MAPPING, FT_NONE, FT_NONE, kOurs},
    {L"a.cs", FT_CS_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.jpg", FT_JPG_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.png", FT_PNG_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.gif", FT_GIF_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.pdb", FT_PDB_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a.dll", FT_DLL_FILE, FT_NONE, FT_NONE, kOthers},
    {L"a", FT_NONE, FT_NONE, FT_NONE, kOthers},
    {L"a.", FT_NONE, FT_NONE, FT_NONE, kOthers},
    {L"", FT_NONE, FT_NONE, FT_NONE, kOthers},
    {L"a.doc.x", FT_NONE, FT_NONE, FT_NONE, kOthers},
    {L"C:\\a.doc\\b", FT_NONE, FT_NONE, FT_NONE, kOthers},
    {L".rtf", FT_RTF_TEMPLATE, FT_RTF_DOCUMENT, FT_RTF_TEMPLATE, kOurs},
};

}  // namespace

TEST(FileType, IsToldFromTheExtensionAlone) {
    for (const auto& row : kFiles) {
        const QLFileName name(row.file);
        const std::vector<FileType> kinds = {row.type, row.document, row.templ};
        EXPECT_EQ(kinds, (std::vector{GetFileType(name), GetDocumentType(name), GetTemplateType(name)}))
            << row.file;
        EXPECT_EQ(kinds, (std::vector{GetFileType(RWWString(row.file)), GetDocumentType(row.file),
                                      GetTemplateType(row.file)}))
            << row.file;
        EXPECT_EQ(row.owner == kOurs, IsQuilletFileType(name)) << row.file;
    }
}

TEST(FileType, TextIsNotParsedAsANameByGetFileTypeAlone) {
    const wchar_t* none = nullptr;
    EXPECT_EQ(FT_NONE, GetFileType(none));
    EXPECT_EQ(FT_NONE, GetDocumentType(none));
    EXPECT_EQ(FT_NONE, GetFileType(L"\"a.doc\""));
    EXPECT_EQ(FT_WORD_DOCUMENT, GetDocumentType(L"\"a.doc\""));
    EXPECT_EQ(FT_NONE, GetFileType(L"http://srv/a.htm?x"));
    EXPECT_EQ(FT_HTML_FILE, GetDocumentType(L"http://srv/a.htm?x"));
}

TEST(FileType, TemplatesKnowWhatTheyAreAssembledTo) {
    const std::map<FileType, FileType> assembled = {
        {FT_WP52_TEMPLATE, FT_WP_DOCUMENT},   {FT_WP_TEMPLATE, FT_WP_DOCUMENT},
        {FT_WORD_TEMPLATE, FT_WORD_DOCUMENT}, {FT_RTF_TEMPLATE, FT_RTF_DOCUMENT},
        {FT_TEXT_TEMPLATE, FT_TEXT_DOCUMENT}, {FT_FORM_TEMPLATE, FT_FORM_DOCUMENT},
        {FT_PDF_TEMPLATE, FT_PDF_DOCUMENT},   {FT_DOCX_TEMPLATE, FT_DOCX_DOCUMENT},
        {FT_DOCM_TEMPLATE, FT_DOCX_DOCUMENT},
    };
    for (int number = -1; number < 60; ++number) {
        const auto type = static_cast<FileType>(number);
        const auto known = assembled.find(type);
        EXPECT_EQ(known == assembled.end() ? FT_NONE : known->second, GetTemplateDocType(type)) << number;
    }
}

// Of every kind in the order of their numbers; those without name or extension are left out.
TEST(FileType, HasADisplayNameAndADefaultExtension) {
    std::wstring all;
    for (int number = -1; number < 60; ++number) {
        const auto type = static_cast<FileType>(number);
        const std::wstring facts = std::wstring(GetFileName(type)) + GetFileExt(type);
        if (!facts.empty()) all += std::to_wstring(number) + L' ' + facts + L'|';
    }
    EXPECT_EQ(
        L"1 WordPerfect 5.2 Template.tpl|2 WordPerfect Template.wpt|3 Word Document Template.dot|"
        L"4 Word RTF Template.rtf|5 Text Template.ttx|6 Quillet Form Template.qft|"
        L"7 Quillet PDF Template.qpt|9 Word DOCX Template.docx|10 Word DOCM Template.dotm|"
        L"16 Quillet Clause Library.qll|17 Quillet Interview Template.cmp|"
        L"18 Quillet Binary Answer File.ans|19 Quillet Answer File.anx|"
        L"20 Quillet Text Answer File.ant|21 Quillet Auto-Install File.qli|"
        L"22 Quillet Auto-Assemble File.qla|23 Quillet Clause File.qcl|24 Quillet Interview File.js|"
        L"25 Quillet Variable Collection File.qvc|26 WordPerfect Document.wpd|"
        L"27 Microsoft Word Document.doc|28 Rich Text File.rtf|29 Text File.txt|"
        L"30 Quillet Form Document.qfd|31 Quillet PDF Document.qpd|32 PDF File.pdf|33 Envoy File.evy|"
        L"34 Publish Settings File.qlp|37 Publisher Answer Mapping File.qlpmx|"
        L"38 User Answer Mapping File.qlumx|39 Microsoft Word Document.docx|"
        L"40 Microsoft Word Document.docm|41 .cs|42 Fillable PDF Form.pdf|43 .jpg|44 .png|45 .gif|"
        L"46 .js|47 .pdb|48 .dll|",
        all);
}
