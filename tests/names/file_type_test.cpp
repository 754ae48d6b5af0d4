#include "names/file_type.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

std::string Narrow(const wchar_t* text) {
    std::string narrow;
    for (; *text; ++text) narrow += static_cast<char>(*text);
    return narrow;
}

std::string Told(const char* what, FileType type) {
    return type == FT_NONE ? "" : what + std::to_string(type);
}

// What a file of that name is among all kinds, documents and templates, and whether it is ours.
std::string KindsOf(const std::wstring& file) {
    const QLFileName name(file);
    EXPECT_EQ(GetFileType(name), GetFileType(RWWString(file)));
    EXPECT_EQ(GetDocumentType(name), GetDocumentType(file.c_str()));
    EXPECT_EQ(GetTemplateType(name), GetTemplateType(file.c_str()));
    return Told(" ", GetFileType(name)) + Told(" document ", GetDocumentType(name)) +
           Told(" template ", GetTemplateType(name)) + (IsQuilletFileType(name) ? " ours" : "");
}

}  // namespace

// Every kind that has a name or an extension: both, the kinds of a file of that extension, and what it is
// assembled to.
TEST(FileType, HasANameAnExtensionAndTheKindsOfItsFiles) {
    std::string facts;
    for (int number = -1; number < 60; ++number) {
        const auto type = static_cast<FileType>(number);
        const std::wstring extension = GetFileExt(type);
        const std::string name = Narrow(GetFileName(type)) + Narrow(extension.c_str());
        const std::string assembled = Told(" to ", GetTemplateDocType(type));
        if (!(name + assembled).empty())
            facts += std::to_string(number) + " " + name + ":" + KindsOf(L"a" + extension) + assembled + "\n";
    }
    EXPECT_EQ(
        "1 WordPerfect 5.2 Template.tpl: 1 template 1 ours to 26\n"
        "2 WordPerfect Template.wpt: 2 template 2 ours to 26\n"
        "3 Word Document Template.dot: 3 template 3 ours to 27\n"
        "4 Word RTF Template.rtf: 4 document 28 template 4 ours to 28\n"
        "5 Text Template.ttx: 5 template 5 ours to 29\n"
        "6 Quillet Form Template.qft: 6 template 6 ours to 30\n"
        "7 Quillet PDF Template.qpt: 7 template 7 ours to 31\n"
        "9 Word DOCX Template.docx: 9 document 39 template 9 ours to 39\n"
        "10 Word DOCM Template.dotm: 10 template 10 ours to 39\n"
        "16 Quillet Clause Library.qll: 16 template 16 ours\n"
        "17 Quillet Interview Template.cmp: 17 template 17 ours\n"
        "18 Quillet Binary Answer File.ans: 18 ours\n19 Quillet Answer File.anx: 19 ours\n"
        "20 Quillet Text Answer File.ant: 20 ours\n21 Quillet Auto-Install File.qli: 21 ours\n"
        "22 Quillet Auto-Assemble File.qla: 22 ours\n23 Quillet Clause File.qcl: 23 ours\n"
        "24 Quillet Interview File.js: 24\n25 Quillet Variable Collection File.qvc: 25\n"
        "26 WordPerfect Document.wpd: 26 document 26\n27 Microsoft Word Document.doc: 27 document 27\n"
        "28 Rich Text File.rtf: 4 document 28 template 4 ours\n29 Text File.txt: 29 document 29\n"
        "30 Quillet Form Document.qfd: 30 document 30\n31 Quillet PDF Document.qpd: 31 document 31\n"
        "32 PDF File.pdf: 32 document 32\n33 Envoy File.evy: 33 document 33\n"
        "34 Publish Settings File.qlp: 34 ours\n37 Publisher Answer Mapping File.qlpmx: 37 ours\n"
        "38 User Answer Mapping File.qlumx: 38 ours\n"
        "39 Microsoft Word Document.docx: 9 document 39 template 9 ours\n"
        "40 Microsoft Word Document.docm: 40 document 40\n41 .cs: 41\n"
        "42 Fillable PDF Form.pdf: 32 document 32\n43 .jpg: 43\n44 .png: 44\n45 .gif: 45\n46 .js: 24\n"
        "47 .pdb: 47\n48 .dll: 48\n",
        facts);
}

TEST(FileType, IsToldFromTheLastExtensionInAnyCase) {
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"a.TPL", " 1 template 1 ours"},
        {L"a.DocX", " 9 document 39 template 9 ours"},
        {L".rtf", " 4 document 28 template 4 ours"},
        {L"a.html", " 35 document 35"},
        {L"a.HTM", " 35 document 35"},
        {L"a.qcat", " 36"},
        {L"a.doc.x", ""},
        {L"C:\\a.doc\\b", ""},
        {L"a", ""},
        {L"a.", ""},
        {L"", ""},
    };
    for (const auto& [file, kinds] : cases) EXPECT_EQ(kinds, KindsOf(file)) << file;
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
