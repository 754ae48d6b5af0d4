#include "files/names/file_type.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// Each recognised extension: its kinds among all, among documents and among templates.
constexpr struct {
    const wchar_t* file;
    int type, document, templ;
    bool quillet;
} kFiles[] = {
    {L"a.TPL", 1, 0, 1, true},     {L"a.wpt", 2, 0, 2, true},         {L"a.dot", 3, 0, 3, true},
    {L"a.rtf", 4, 28, 4, true},    {L"a.ttx", 5, 0, 5, true},         {L"a.qft", 6, 0, 6, true},
    {L"a.qpt", 7, 0, 7, true},     {L"a.DocX", 9, 39, 9, true},       {L"a.dotm", 10, 0, 10, true},
    {L"a.qll", 16, 0, 16, true},   {L"a.cmp", 17, 0, 17, true},       {L"a.ans", 18, 0, 0, true},
    {L"a.anx", 19, 0, 0, true},    {L"a.ant", 20, 0, 0, true},        {L"a.qli", 21, 0, 0, true},
    {L"a.qla", 22, 0, 0, true},    {L"a.qcl", 23, 0, 0, true},        {L"a.js", 24, 0, 0, false},
    {L"a.qvc", 25, 0, 0, false},   {L"a.wpd", 26, 26, 0, false},      {L"a.doc", 27, 27, 0, false},
    {L"a.docm", 40, 40, 0, false}, {L"a.txt", 29, 29, 0, false},      {L"a.qfd", 30, 30, 0, false},
    {L"a.qpd", 31, 31, 0, false},  {L"a.pdf", 32, 32, 0, false},      {L"a.evy", 33, 33, 0, false},
    {L"a.qlp", 34, 0, 0, true},    {L"a.qcat", 36, 0, 0, false},      {L"a.html", 35, 35, 0, false},
    {L"a.HTM", 35, 35, 0, false},  {L"a.qlpmx", 37, 0, 0, true},      {L"a.qlumx", 38, 0, 0, true},
    {L"a.cs", 41, 0, 0, false},    {L"a.jpg", 43, 0, 0, false},       {L"a.png", 44, 0, 0, false},
    {L"a.gif", 45, 0, 0, false},   {L"a.pdb", 47, 0, 0, false},       {L"a.dll", 48, 0, 0, false},
    {L"a", 0, 0, 0, false},        {L"a.", 0, 0, 0, false},           {L"", 0, 0, 0, false},
    {L"a.doc.x", 0, 0, 0, false},  {L"C:\\a.doc\\b", 0, 0, 0, false}, {L".rtf", 4, 28, 4, true},
};

}  // namespace

TEST(FileType, IsToldFromTheExtensionAlone) {
    for (const auto& row : kFiles) {
        const QLFileName name(row.file);
        EXPECT_EQ(row.type, GetFileType(name)) << row.file;
        EXPECT_EQ(row.type, GetFileType(row.file)) << row.file;
        EXPECT_EQ(row.document, GetDocumentType(name)) << row.file;
        EXPECT_EQ(row.document, GetDocumentType(row.file)) << row.file;
        EXPECT_EQ(row.templ, GetTemplateType(name)) << row.file;
        EXPECT_EQ(row.templ, GetTemplateType(row.file)) << row.file;
        EXPECT_EQ(row.quillet, IsQuilletFileType(name)) << row.file;
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
    constexpr int kAssembled[] = {0, 26, 26, 27, 28, 29, 30, 31, 0, 39, 39, 0, 0, 0, 0, 0, 0, 0};
    for (int type = 0; type < static_cast<int>(std::size(kAssembled)); ++type) {
        EXPECT_EQ(kAssembled[type], GetTemplateDocType(static_cast<FileType>(type))) << type;
    }
}

TEST(FileType, HasADisplayNameAndADefaultExtension) {
    constexpr struct {
        int type;
        std::wstring_view name, extension;
    } kRows[] = {
        {-1, L"", L""},
        {FT_NONE, L"", L""},
        {FT_WP52_TEMPLATE, L"WordPerfect 5.2 Template", L".tpl"},
        {8, L"", L""},
        {FT_DOCM_TEMPLATE, L"Word DOCM Template", L".dotm"},
        {15, L"", L""},
        {FT_RTF_DOCUMENT, L"Rich Text File", L".rtf"},
        {FT_HTML_FILE, L"", L""},
        {FT_CATALOG_FILE, L"", L""},
        {FT_DOCX_DOCUMENT, L"Microsoft Word Document", L".docx"},
        {FT_FILLABLE_PDF, L"Fillable PDF Form", L".pdf"},
        {FT_JS_FILE, L"", L".js"},
        {FT_DLL_FILE, L"", L".dll"},
        {49, L"", L""},
    };
    for (const auto& row : kRows) {
        EXPECT_EQ(row.name, GetFileName(static_cast<FileType>(row.type))) << row.type;
        EXPECT_EQ(row.extension, GetFileExt(static_cast<FileType>(row.type))) << row.type;
    }
}
