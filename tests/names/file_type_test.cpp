#include "names/file_type.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
        const std::vector<int> kinds = {row.type, row.document, row.templ};
        EXPECT_EQ(kinds, (std::vector<int>{GetFileType(name), GetDocumentType(name), GetTemplateType(name)}));
        EXPECT_EQ(kinds, (std::vector<int>{GetFileType(row.file), GetDocumentType(row.file),
                                           GetTemplateType(row.file)}))
            << row.file;
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
    const auto facts = [](int type) {
        const auto kind = static_cast<FileType>(type);
        return std::wstring(GetFileName(kind)) + L'|' + GetFileExt(kind);
    };
    EXPECT_EQ(L"WordPerfect 5.2 Template|.tpl", facts(FT_WP52_TEMPLATE));
    EXPECT_EQ(L"Word DOCM Template|.dotm", facts(FT_DOCM_TEMPLATE));
    EXPECT_EQ(L"Rich Text File|.rtf", facts(FT_RTF_DOCUMENT));
    EXPECT_EQ(L"Microsoft Word Document|.docx", facts(FT_DOCX_DOCUMENT));
    EXPECT_EQ(L"Fillable PDF Form|.pdf", facts(FT_FILLABLE_PDF));
    EXPECT_EQ(L"|.dll", facts(FT_DLL_FILE));
    for (const int none : {-1, 0, 8, 15, 35, 36, 49}) EXPECT_EQ(L"|", facts(none)) << none;
}
