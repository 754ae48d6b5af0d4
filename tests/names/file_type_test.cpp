#include "names/file_type.h"

#include <gtest/gtest.h>

namespace {

std::wstring Told(const wchar_t* what, FileType type) {
    return type == FT_NONE ? L"" : what + std::to_wstring(type);
}

// What a file of that name is among all kinds, documents and templates, and whether it is ours.
std::wstring KindsOf(const std::wstring& file) {
    const QLFileName name(file);
    EXPECT_EQ(GetFileType(name), GetFileType(RWWString(file)));
    EXPECT_EQ(GetFileType(name), GetFileType(file.c_str()));
    EXPECT_EQ(GetDocumentType(name), GetDocumentType(file.c_str()));
    EXPECT_EQ(GetTemplateType(name), GetTemplateType(file.c_str()));
    return Told(L" ", GetFileType(name)) + Told(L" document ", GetDocumentType(name)) +
           Told(L" template ", GetTemplateType(name)) + (IsQuilletFileType(name) ? L" ours" : L"");
}

}  // namespace

// Every kind that has a name or an extension: both, the kinds of a file of that extension, and what it is
// assembled to.
TEST(FileType, HasANameAnExtensionAndTheKindsOfItsFiles) {
    std::wstring facts;
    for (int number = -1; number < 60; ++number) {
        const auto type = static_cast<FileType>(number);
        const std::wstring extension = GetFileExt(type);
        const std::wstring name = GetFileName(type) + extension;
        const std::wstring assembled = Told(L" to ", GetTemplateDocType(type));
        if (!(name + assembled).empty())
            facts +=
                std::to_wstring(number) + L' ' + name + L':' + KindsOf(L"a" + extension) + assembled + L'\n';
    }
    EXPECT_EQ(
        L"1 WordPerfect 5.2 Template.tpl: 1 template 1 ours to 26\n"
        L"2 WordPerfect Template.wpt: 2 template 2 ours to 26\n"
        L"3 Word Document Template.dot: 3 template 3 ours to 27\n"
        L"4 Word RTF Template.rtf: 4 document 28 template 4 ours to 28\n"
        L"5 Text Template.ttx: 5 template 5 ours to 29\n"
        L"6 Quillet Form Template.qft: 6 template 6 ours to 30\n"
        L"7 Quillet PDF Template.qpt: 7 template 7 ours to 31\n"
        L"9 Word DOCX Template.docx: 9 document 39 template 9 ours to 39\n"
        L"10 Word DOCM Template.dotm: 10 template 10 ours to 39\n"
        L"16 Quillet Clause Library.qll: 16 template 16 ours\n"
        L"17 Quillet Interview Template.cmp: 17 template 17 ours\n"
        L"18 Quillet Binary Answer File.ans: 18 ours\n19 Quillet Answer File.anx: 19 ours\n"
        L"20 Quillet Text Answer File.ant: 20 ours\n21 Quillet Auto-Install File.qli: 21 ours\n"
        L"22 Quillet Auto-Assemble File.qla: 22 ours\n23 Quillet Clause File.qcl: 23 ours\n"
        L"24 Quillet Interview File.js: 24\n25 Quillet Variable Collection File.qvc: 25\n"
        L"26 WordPerfect Document.wpd: 26 document 26\n27 Microsoft Word Document.doc: 27 document 27\n"
        L"28 Rich Text File.rtf: 4 document 28 template 4 ours\n29 Text File.txt: 29 document 29\n"
        L"30 Quillet Form Document.qfd: 30 document 30\n31 Quillet PDF Document.qpd: 31 document 31\n"
        L"32 PDF File.pdf: 32 document 32\n33 Envoy File.evy: 33 document 33\n"
        L"34 Publish Settings File.qlp: 34 ours\n37 Publisher Answer Mapping File.qlpmx: 37 ours\n"
        L"38 User Answer Mapping File.qlumx: 38 ours\n"
        L"39 Microsoft Word Document.docx: 9 document 39 template 9 ours\n"
        L"40 Microsoft Word Document.docm: 40 document 40\n41 .cs: 41\n"
        L"42 Fillable PDF Form.pdf: 32 document 32\n43 .jpg: 43\n44 .png: 44\n45 .gif: 45\n46 .js: 24\n"
        L"47 .pdb: 47\n48 .dll: 48\n",
        facts);
}

TEST(FileType, IsToldFromTheLastExtensionInAnyCase) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {{L"a.TPL", L" 1 template 1 ours"},
                                                               {L".rtf", L" 4 document 28 template 4 ours"},
                                                               {L"a.html", L" 35 document 35"},
                                                               {L"a.HTM", L" 35 document 35"},
                                                               {L"a.qcat", L" 36"},
                                                               {L"a.doc.x", L""},
                                                               {L"C:\\a.doc\\b", L""},
                                                               {L"a.", L""}};
    for (const auto& [file, kinds] : cases) EXPECT_EQ(kinds, KindsOf(file)) << file;
}

TEST(FileType, TextIsNotParsedAsANameByGetFileTypeAlone) {
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"\"a.doc\"", L"http://srv/a.htm?x"})
        EXPECT_EQ(FT_NONE, GetFileType(text)) << testing::PrintToString(text);
    EXPECT_EQ(FT_NONE, GetDocumentType(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(FT_WORD_DOCUMENT, GetDocumentType(L"\"a.doc\""));
    EXPECT_EQ(FT_HTML_FILE, GetDocumentType(L"http://srv/a.htm?x"));
}
