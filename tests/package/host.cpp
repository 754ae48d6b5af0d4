// A host from start to end: it opens the document of its command line, answers by a piece of work on a second
// thread with settings of its own, keeps what it made in an archive, and remembers where its window was.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include "platform/win32.h"

#include "cmdline/main_switch_parser.h"
#include "files/file.h"
#include "files/launch.h"
#include "logging/log_line.h"
#include "logging/log_outputs.h"
#include "logging/logger.h"
#include "names/file_name.h"
#include "prefs/directories.h"
#include "prefs/window_placement.h"
#include "settings/preference_keys.h"
#include "settings/preferences.h"
#include "settings/scopes.h"
#include "zip/dynazip.h"

namespace {

constexpr int kDone = 0, kFailed = 1, kNoLibrary = 2;

// The log, from the first line of main to the last: what is queued is on the disk when it ends.
class Log {
  public:
    explicit Log(const std::filesystem::path& folder) {
        // The process's number: a second host at the same time has a log of its own.
        const std::wstring file =
            (folder / (L"host." + std::to_wstring(::GetCurrentProcessId()) + L".log")).wstring();
        QLLogger::InitializeLog(file.c_str(), QLLOG_ERROR | QLLOG_INFO);
    }
    ~Log() { QLLogger::CloseLogs(); }
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;
};

// A piece of work that must not see the user's own choice: its context has a document's settings on top.
RWWString DateOrderUnder(const wchar_t* document) {
    RWWString order;
    std::thread([&order, document] {
        const QLThreadScope thread;
        const QLContextScope context;
        if (!thread.ok() || !context.ok()) return;
        context.settings()->SetFromSerializedSettings(document);
        order = GetQLRegString(QLIS_INTERVIEW, QLIE_DATE_ORDER, QLIE_DATE_ORDER_MDY);
    }).join();
    return order;
}

// Writes the document and puts it into an archive beside it.
bool Keep(const std::filesystem::path& folder, const QLFileName& document) {
    const RWWString name = document.GetFileName();
    std::ofstream(folder / name.str()) << "Dear Ms. Smith";
    if (!Dynazip::IsZipDllLoaded()) {
        QLLogLine(QLLOG_ERROR) << L"there is no engine beside the program: DZIP32.DLL";
        return false;
    }
    const std::wstring archive = (folder / L"kept.zip").wstring();
    if (Dynazip::AddFileToZip(archive.c_str(), folder.c_str(), name.data(), 6) == 1) return true;
    QLLogLine(QLLOG_ERROR) << L"not kept: " << document << L", "
                           << Dynazip::ZipErrorMsg(Dynazip::LastEngineCode());
    return false;
}

// Where the window was when it was last closed.
void Remember(const wchar_t* placement) {
    WINDOWPLACEMENT window = {};
    if (!PlacementFromString(window, placement)) return;
    RWWString text;
    PlacementToString(window, text);
    std::printf("the window returns to %ls\n", text.data());
}

int Run(const std::filesystem::path& folder) {
    const QuilletCmdSwitchParser line(GetOwnCommandLine().data());
    const QLFileName document(line.GetTplPath() ? line.GetTplPath() : L"Letter.docx");
    std::printf("the document is %ls, %s\n", document.GetFileName().data(),
                line.IsNoInterview() ? "nobody is asked" : "somebody is asked");
    std::printf("templates live in %ls\n", CQlDir::GetDirectory(TemplateDirectory).data());
    std::printf("dates read as %ls\n",
                DateOrderUnder(LR"({"Interview<-^->Date Detection":"Day Month Year"})").data());
    const bool kept = Keep(folder, document);
    std::printf("%s\n", kept ? "kept" : "not kept; the log says why");
    Remember(L"44, 0, 1, -1, -1, -1, -1, 10, 10, 400, 300");
    QLLogLine(QLLOG_INFO) << L"ends: " << (kept ? L"done" : L"failed");
    return kept ? kDone : kFailed;
}

}  // namespace

int main() {
    const QLLibraryScope library;
    const QLThreadScope thread;
    if (!library.ok() || !thread.ok()) {
        std::fputs("host: the library did not start\n", stderr);
        return kNoLibrary;
    }
    const std::filesystem::path folder = std::filesystem::current_path();
    const Log log(folder);
    return Run(folder);
}
