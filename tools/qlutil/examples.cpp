#include "tools/qlutil/examples.h"

#include <algorithm>
#include <iterator>

namespace {

struct Example {
    std::wstring_view command;
    std::wstring_view call;
};

constexpr Example kExamples[] = {
    {L"session", L"session --context 5"},
    {L"name", L"name \"C:\\Docs\\Letter.docx\""},
    {L"compare", L"compare a.txt B.TXT"},
    {L"kind", L"kind Letter.docx Deed.rtf"},
    {L"cmdline", L"cmdline \"C:\\Docs\\Letter.docx /ni\""},
    {L"fullpath", L"fullpath Letter.docx --dir C:\\Docs"},
    {L"file status", L"file status C:\\Docs\\Letter.docx"},
    {L"file forms", L"file forms C:\\Docs\\Letter.docx"},
    {L"file temp", L"file temp C:\\Docs\\x.tmp --create"},
    {L"file backup", L"file backup C:\\Docs\\Letter.docx"},
    {L"file copy", L"file copy C:\\Copies\\Letter.docx C:\\Docs\\Letter.docx --keep-times"},
    {L"file exe", L"file exe C:\\Windows\\notepad.exe"},
    {L"file walk", L"file walk \"C:\\Docs\\*.docx\""},
    {L"machine", L"--json machine"},
    {L"text case", L"text case 3 \"the last will\""},
    {L"text case-of", L"text case-of \"The Last Will\""},
    {L"text js", L"text js \"Client Name\""},
    {L"text unjs", L"text unjs Client_Name"},
    {L"text escape", L"text escape --quote \\q \"say \\\"yes\\\"\""},
    {L"text tokens", L"text tokens \";,\" \"a;b,c\""},
    {L"text ansi",
     L"text ansi \x3a9"
     L"mega"},
    {L"text charref", L"text charref \"&#960; and on\""},
    {L"text split", L"text split \"Name: Smith\""},
    {L"text bool", L"text bool yes false"},
    {L"json check", L"json check settings.json"},
    {L"json format", L"json format --pretty settings.json"},
    {L"prefs get", L"prefs get Locations \"Template Files\""},
    {L"prefs set", L"prefs set Locations \"Template Files\" C:\\Templates"},
    {L"prefs unset", L"prefs unset Locations \"Template Files\""},
    {L"prefs sections", L"prefs sections --machine"},
    {L"prefs list", L"prefs list Locations"},
    {L"prefs export", L"prefs export mine.json"},
    {L"prefs import", L"prefs import mine.json"},
    {L"prefs where", L"prefs where Locations \"Template Files\""},
    {L"prefs diff", L"prefs diff mine.json"},
    {L"prefs check", L"prefs check"},
    {L"prefs watch", L"prefs watch Locations --count 1"},
    {L"dirs", L"dirs"},
    {L"display", L"display \"C:\\Docs\\Letter.docx\""},
    {L"undisplay", L"undisplay \"C:\\Docs\\Letter.docx\""},
    {L"processors", L"processors"},
    {L"processor-for", L"processor-for 5"},
    {L"formalize", L"formalize \"C:\\Word\\WINWORD.EXE /n \\\"%1\\\"\""},
    {L"odma", L"odma 27"},
    {L"switches main", L"switches main \"Letter.docx /ni\""},
    {L"switches filler", L"switches filler \"Form.hpt /ni\""},
    {L"switches automator", L"switches automator \"Form.hpt /ni\""},
    {L"scan", L"scan \"a.docx /out=b.docx /q\" out= q"},
    {L"date info", L"date info 21-11-2026"},
    {L"date add", L"date add 21-11-2026 3 months"},
    {L"date diff", L"date diff 1-1-2026 21-11-2026 days"},
    {L"number format", L"number format 1234.5 2 --thousands"},
    {L"number fudge", L"number fudge 0.1249999999 3 --round"},
    {L"markup", L"markup"},
    {L"globals", L"globals"},
    {L"placement", L"placement \"44, 0, 1, -1, -1, -1, -1, 10, 10, 400, 300\""},
    {L"keys", L"keys template"},
    {L"log write", L"log write host.log 4 \"started\""},
    {L"log roll", L"log roll host.log --max 10000 --backups 3 --lines 1000"},
    {L"log show", L"log show host.log --last 20"},
    {L"zip add", L"zip add letters.zip Letter.docx Deed.rtf --level 9"},
    {L"zip list", L"zip list letters.zip"},
    {L"zip extract", L"zip extract letters.zip Letter.docx C:\\Docs"},
    {L"zip delete", L"zip delete letters.zip Deed.rtf"},
    {L"zip comment", L"zip comment letters.zip \"sent on Monday\""},
    {L"zip find", L"zip find letters.zip Letter.docx"},
    {L"zip test", L"zip test letters.zip"},
    {L"pick-folder", L"pick-folder --title \"Where to?\""},
    {L"grey-image", L"grey-image icon.bmp grey.bmp"},
    {L"version", L"--json version"},
};

}  // namespace

std::wstring_view ExampleOf(std::wstring_view command) noexcept {
    const auto found = std::ranges::find(kExamples, command, &Example::command);
    return found == std::end(kExamples) ? std::wstring_view() : found->call;
}
