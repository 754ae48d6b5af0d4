#include "names/file_name.h"

#include <gtest/gtest.h>

#include "platform/win32.h"

namespace {

// The parts of a name, one column each, so that a table row shows them all.
std::wstring Parts(const QLFileName& name) {
    RWWString extension(L"-");  // left alone without an extension
    const bool isStored = name.GetExtension(extension) != 0;
    EXPECT_EQ(isStored, extension != L"-");
    const auto separator = [](wchar_t unit) { return unit ? std::wstring(1, unit) : std::wstring(L"0"); };
    return name.GetScheme().str() + L"|" + name.GetRoot().str() + L"|" + name.GetDir().str() + L"|" +
           name.GetName().str() + L"|" + extension.str() + L"|" + name.GetTail().str() + L"|" +
           separator(name.GetRootSeparator()) + separator(name.GetDirSeparator()) +
           (name.IsRemote() ? L"R" : L"");
}

// The composed text is the same as the parsed one where it is null.
constexpr const wchar_t* kParsed[][3] = {
    // local names
    {LR"(C:/a\b/c.d)", LR"(file|C:/|a\b|c|.d||//)"},
    {L"/", L"file||||-||/0"},
    {LR"(a\\b)", LR"(file||a\|b|-||0\)"},
    {L"C:", L"file|C:|||-||00"},
    {L"C:file.txt", L"file|C:||file|.txt||00"},
    {LR"(C:\a:b)", LR"(file|C:\||a:b|-||\0)"},
    {L"C:x:y", LR"(file|C:|x:y||-||0\)", LR"(C:x:y\)"},
    {L":", LR"(file||:||-||0\)", LR"(:\)"},
    {L"::x", L"file|::||x|-||00"},
    // names without a path
    {L"a.", L"|||a|.||00"},
    {L".profile", L"||||.profile||00"},
    {L"a.b.c", L"|||a.b|.c||00"},
    {L"a?b?c", L"|||a?b|-|?c|00", L"a?b"},
    {L"a.?b", L"|||a|.|?b|00", L"a."},
    {L"a#b?c", L"|||a|-|#b?c|00", L"a"},
    {L"a?b.c", L"|||a?b|.c||00"},
    {L"a.b ?c", L"|||a|.b|?c|00", L"a.b"},
    // UNC
    {LR"(\\srv\share\a.txt)", LR"(file|\\srv\|share|a|.txt||\\)"},
    {LR"(/\srv)", LR"(file|/\srv|||-||00)"},
    {LR"(\\)", LR"(file|\\|||-||00)"},
    {LR"(\\\)", LR"(file|\\\|||-||\0)"},
    {LR"(\\srv\a:\x)", LR"(file|\\srv\|a:\x||-||\\)", LR"(\\srv\a:\x\)"},
    // URLs
    {L"FTP://srv/a/b/f.htm?x=1#top", L"ftp|srv/|a/b|f|.htm|?x=1#top|//R", L"ftp://srv/a/b/f.htm"},
    {L"https://srv/", L"https|srv/|||-||/0R"},
    {L"hA:srv", L"ha|srv|||-||00R", L"ha://srv"},
    {L"http:/srv/x", L"http|srv/||x|-||/0R", L"http://srv/x"},
    {LR"(http:\\srv\x)", LR"(http|srv\||x|-||\0R)", LR"(http://srv\x)"},
    {L"http:", L"http||||-||00R", L"http://"},
    {L"file:///C:/x", LR"(file||C:/x||-||/\R)", LR"(/C:/x\)"},
    {L"ht:/x", L"ht|x|||-||00R", L"ht://x"},
    {L"ht://x", L"ht|x|||-||00R"},
    {L"x Z:z/w", L"x z|z/||w|-||/0R", L"x z://z/w"},
    {L"C://x", L"file|C:/||x|-||//"},
    {L"MAILTO:a.b", L"mailto|a.b|||-||00R", L"mailto:a.b"},
    {L"news:a/b", L"news|a/||b|-||00R", L"news:a/"},
    // document-management ids and plug-in items
    {LR"(::odma\123)", LR"(::ODMA\|||123|-||00)", LR"(::ODMA\123)"},
    {LR"(PLUGIN\{abc})", LR"(PLUGIN\{|||PLUGIN\{abc}|-||00)"},
    {LR"(PLUGIN\{a)", LR"(file||PLUGIN|{a|-||0\)"},
    {LR"(plugin\{xyz})", LR"(file||plugin|{xyz}|-||0\)"},
    // blanks and quotes
    {LR"(  "  C:\a b.c "  )", LR"(file|C:\||a b|.c||\0)", LR"(C:\a b.c)"},
    {LR"(""a"")", LR"(|||"a"|-||00)", LR"("a")"},
    {LR"(a")", L"|||a|-||00", L"a"},
    {L"\ta\t", L"|||\ta\t|-||00"}};

}  // namespace

TEST(FileName, SplitsATextAndComposesItAgain) {
    for (const auto& [text, parts, composed] : kParsed) {
        const QLFileName name(text);
        EXPECT_EQ(parts, Parts(name)) << text;
        EXPECT_EQ(RWWString(composed ? composed : text), name.GetPathAndFileName()) << text;
        EXPECT_FALSE(name.IsNull()) << text;
    }
}

TEST(FileName, TakesEveryWideTextUpToItsFirstZeroUnit) {
    const std::wstring standard(L"C:\\d\\a.txt\0.exe", 16);
    QLFileName name;
    name.SetPathAndFileName(RWWString(standard));
    for (const QLFileName& other : {QLFileName(standard), QLFileName(std::wstring_view(standard)), name})
        EXPECT_EQ(LR"(file|C:\|d|a|.txt||\\)", Parts(other));
    EXPECT_EQ(LR"(file|C:\|a|b.c|.d||\\)", Parts({std::wstring(L"C:\\a\0e", 6),
                                                  std::wstring_view(L"b.c\0e", 5), RWWString(L".d \0e", 5)}));
    EXPECT_EQ(RWWString(L"a."), QLFileName(nullptr, L"a", nullptr).GetPathAndFileName());
}

TEST(FileName, IsNullWhenNothingIsLeftOfTheText) {
    for (const wchar_t* text : {static_cast<const wchar_t*>(nullptr), L"  ", L"\"", L"\"\"", L" \" \" "}) {
        QLFileName name(L"http://srv/a.b?c");
        name.SetPathAndFileName(text);
        EXPECT_TRUE(name.IsNull());
        EXPECT_EQ(L"||||-||/0", Parts(name)) << "the former separators stay";
        name.SetPath(text);
        EXPECT_FALSE(name.IsNull());
    }
}

TEST(FileName, ReplacesOnePartAndKeepsTheOthers) {
    QLFileName name(L"http://srv/a/f.htm?x");
    name.SetFileName(L"longer name.b.c");
    EXPECT_EQ(L"http|srv/|a|longer name.b|.c|?x|//R", Parts(name)) << "the old tail stays";
    name.SetFileName(L"g#y");
    EXPECT_EQ(L"http|srv/|a|g|-|#y|//R", Parts(name));
    EXPECT_EQ(0, QLFileName(L"http://srv/a/g").CompareTo(name)) << "no former extension takes part";
    name.SetExtension(L"..d ");
    name.SetPath(L"D:b");
    EXPECT_EQ(LR"(file|D:|b|g|..d|#y|0\)", Parts(name));
    name.SetPath(L"");
    EXPECT_EQ(L"file|||g|..d|#y|00", Parts(name));
}

TEST(FileName, TakesAnEntrysNameAsTheDiskHasIt) {
    QLFileName name;
    name.SetEntry(QLFileName(L"C:\\a\\b.c"), L" %TEMP%.x.doc#2");
    EXPECT_EQ(L"C:\\a\\ %TEMP%.x.doc#2", name.GetPathAndFileName());
}

TEST(FileName, PrependsAPathInPlaceOfTheRoot) {
    const wchar_t* const rows[][3] = {{L"sub\\a.txt", L"D:\\Work", L"D:\\Work\\sub\\a.txt"},
                                      {L"/sub/a", L"w", L"w/sub\\a"},
                                      {L"C:\\sub\\a", L"\\\\srv\\s\\", L"\\\\srv\\s\\sub\\a"},
                                      {L"a.b", L"http://srv/", L"http://srv/a.b"},
                                      {L"C:\\sub\\a", nullptr, L"sub\\a"}};
    for (const auto& [text, prefix, composed] : rows) {
        QLFileName name(text);
        EXPECT_EQ(1, name.PrependPath(prefix));
        EXPECT_EQ(RWWString(composed), name.GetPathAndFileName()) << text;
    }
    QLFileName bare(L"/a/b");
    bare.SetPathAndFileName(L"x");
    bare.PrependPath(L"p");
    EXPECT_EQ(RWWString(L"p/x"), bare.GetPathAndFileName()) << "joined by the former name's separator";
}

TEST(FileName, ComparesPartByPartIgnoringCase) {
    const wchar_t* ascending[] = {L"a",      L"a.",     L"a.b",      L"a.C",          L"b",
                                  L"C:b\\a", L"C:c\\a", L"\\\\s\\a", L"http://SRV/a", L"http://srv/b"};
    for (std::size_t i = 0; i < std::size(ascending); ++i) {
        for (std::size_t j = 0; j < std::size(ascending); ++j) {
            const int order = QLFileName(ascending[i]).CompareTo(QLFileName(ascending[j]));
            EXPECT_EQ(i < j ? -1 : i > j, order < 0 ? -1 : order > 0) << ascending[i] << L" " << ascending[j];
        }
    }
    EXPECT_EQ(QLFileName(L"http://S/A.B?x"), QLFileName(L"HTTP:\\s\\a.b#y")) << "but for the tail";
    EXPECT_NE(QLFileName(L"a"), QLFileName(L"b"));
    EXPECT_EQ(6, QLFileName::ACCESS_READ + QLFileName::ACCESS_WRITE);
}

TEST(FileName, ChangesCaseButForSchemeAndTailAndStaysOfItsKind) {
    const struct {
        const wchar_t *text, *lower, *upper;
        int isDocument, isPlugin;
    } rows[] = {
        {L"http://Srv/Dir/File.Ext?a", L"http://srv/dir/file.ext?A", L"http://SRV/DIR/FILE.EXT?A", 0, 0},
        {L"::ODMA\\Ab", L"::ODMA\\ab", L"::ODMA\\AB", 1, 0},
        {L"PLUGIN\\{Ab}", L"plugin\\{ab}", L"PLUGIN\\{AB}", 0, 1}};
    for (const auto& [text, lower, upper, isDocument, isPlugin] : rows) {
        QLFileName name(text), raised(text);
        name.ToLower();
        EXPECT_EQ(RWWString(lower), name.GetPathAndFileName());
        EXPECT_EQ(isDocument, name.IsODMADocId()) << text;
        EXPECT_EQ(isPlugin, name.IsPluginFileType()) << text;
        raised.ToUpper();
        EXPECT_EQ(RWWString(upper), raised.GetPathAndFileName());
        EXPECT_EQ(name.GetScheme(), raised.GetScheme()) << "lower in both";
        name.SetFileName(L"");
        EXPECT_FALSE(name.IsODMADocId()) << text;
        EXPECT_FALSE(name.IsPluginFileType()) << text;
    }
    EXPECT_FALSE(QLFileName(L"::ODMA\\").IsODMADocId());
}

TEST(FileName, ExpandsEnvironmentReferences) {
    const std::wstring large(20000, L'x');
    ::SetEnvironmentVariableW(L"QL_TEST_DIR", L"D:\\x.y");
    ::SetEnvironmentVariableW(L"QL_TEST_DOT", L"one.two");
    ::SetEnvironmentVariableW(L"QL.TEST.PLAIN", L"plain");
    ::SetEnvironmentVariableW(L"QL_TEST_LARGE", large.c_str());
    const wchar_t* const rows[][2] = {{L"%QL_TEST_DIR%\\a.b", LR"(file|D:\|x.y|a|.b||\\)"},
                                      {L"%QL_TEST_DOT%", L"|||one.two|-||00"},
                                      {L"%QL_TEST_DOT%.c", L"|||one.two|.c||00"},
                                      {L"c.%QL_TEST_DOT%", L"|||c.one|.two||00"},
                                      {L"%QL.TEST.PLAIN%", L"|||plain|-||00"},
                                      {L"%QL_TEST_NONE%.c", L"|||%QL_TEST_NONE%|.c||00"},
                                      {L"::ODMA\\%QL_TEST_DOT%", LR"(::ODMA\|||%QL_TEST_DOT%|-||00)"}};
    for (const auto& [text, parts] : rows) EXPECT_EQ(parts, Parts(QLFileName(text))) << text;
    RWWString text(large + L"%QL_TEST_LARGE%%QL_TEST_NONE%QL_TEST_DOT%100%");
    QLFileName::SubstPathPlaceholders(text);
    EXPECT_EQ(large + large + L"%QL_TEST_NONEone.two100%", text.str()) << "longer than the system expands";
    const std::wstring gap = L"http://h/x?a%20" + large + large + L"%20c/f.htm";
    EXPECT_EQ(gap, QLFileName(gap).GetPathAndFileName().str()) << "no name is that long";
    wchar_t bySystem[64];
    text = L"100% of %QL_TEST_DOT%";
    ::ExpandEnvironmentStringsW(text.data(), bySystem, 64);
    QLFileName::SubstPathPlaceholders(text);
    EXPECT_EQ(RWWString(bySystem), text) << "whose second sign begins a reference is the system's to say";
}
