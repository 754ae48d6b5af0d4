#include "names/file_type.h"

#include <gtest/gtest.h>

#include "tests/support/digest.h"

namespace {

std::wstring Told(const wchar_t* what, FileType type) {
    return type == FT_NONE ? L"" : what + std::to_wstring(type);
}

// What a file of that name is among all kinds, documents and templates, and whether it is ours.
std::wstring KindsOf(const std::wstring& file) {
    const QLFileName name(file);
    EXPECT_EQ(GetFileType(name), GetFileType(RWWString(file)));
    EXPECT_EQ(GetDocumentType(name), GetDocumentType(file.c_str()));
    EXPECT_EQ(GetTemplateType(name), GetTemplateType(file.c_str()));
    return Told(L" ", GetFileType(name)) + Told(L" document ", GetDocumentType(name)) +
           Told(L" template ", GetTemplateType(name)) + (IsQuilletFileType(name) ? L" ours" : L"");
}

}  // namespace

TEST(FileType, EachKindKeepsItsNameAndExtensionTheKindsOfItsFilesAndWhatItIsAssembledTo) {
    std::wstring facts;
    for (int number = -1; number < 60; ++number) {
        const auto type = static_cast<FileType>(number);
        const std::wstring extension = GetFileExt(type);
        facts += std::to_wstring(number) + L' ' + GetFileName(type) + extension + L':' +
                 KindsOf(L"a" + extension) + Told(L" to ", GetTemplateDocType(type)) + L'\n';
    }
    EXPECT_EQ(0x8d9b87379780e821, DigestOf(facts)) << facts;
}

TEST(FileType, IsToldFromTheLastExtensionInAnyCase) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"a.TPL", L" 1 template 1 ours"},
        {L".rtf", L" 4 document 28 template 4 ours"},
        {L"a.html", L" 35 document 35"},
        {L"a.HTM", L" 35 document 35"},
        {L"a.qcat", L" 36"},
        {L"a.doc.x", L""},
        {L"C:\\a.doc\\b", L""},
        {L"a.", L""},
    };
    for (const auto& [file, kinds] : cases) EXPECT_EQ(kinds, KindsOf(file)) << file;
}

TEST(FileType, TextIsNotParsedAsANameByGetFileTypeAlone) {
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"\"a.doc\"", L"http://srv/a.htm?x"})
        EXPECT_EQ(FT_NONE, GetFileType(text)) << testing::PrintToString(text);
    EXPECT_EQ(FT_NONE, GetDocumentType(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(FT_WORD_DOCUMENT, GetDocumentType(L"\"a.doc\""));
    EXPECT_EQ(FT_HTML_FILE, GetDocumentType(L"http://srv/a.htm?x"));
}
