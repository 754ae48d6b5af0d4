#include <algorithm>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "logging/log_line.h"
#include "logging/log_outputs.h"
#include "names/file_name.h"
#include "prefs/directories.h"
#include "settings/preferences.h"
#include "settings/scopes.h"
#include "settings/settings_store.h"
#include "tools/qlutil/command.h"
#include "tools/qlutil/text_file.h"

namespace {

constexpr int kUsualContext = 3;
constexpr int kLastContext = 999;

// The session's log: a new file in the folder for temporary ones, open until it is read or the session ends.
class SessionLog {
  public:
    SessionLog() : file_(NewFile()) { QLLogger::InitializeLog(file_.c_str(), QLLOG_INFO); }
    ~SessionLog() {
        QLLogger::CloseLogs();
        std::error_code none;
        std::filesystem::remove(file_, none);
    }
    SessionLog(const SessionLog&) = delete;
    SessionLog& operator=(const SessionLog&) = delete;

    void Put(const std::wstring& text) {
        QLLoggerLevelInserter(QLLOG_INFO, "session", 0) << text << LogMessageFinish();
    }

    // Closes the log: every line is in the file when that returns. Nothing, and why, when it cannot be read.
    std::optional<std::wstring> Read(std::wstring& why) const {
        QLLogger::CloseLogs();
        return ReadTextFile(file_.native(), why);
    }

  private:
    static std::filesystem::path NewFile() {
        QLFileName name;
        name.SetTempPathAndFileName(true);
        return name.GetPathAndFileName().data();
    }

    std::filesystem::path file_;
};

List Lines(std::wstring_view text) {
    constexpr wchar_t kByteOrderMark = 0xFEFF;
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(1);
    List lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(L'\n'), text.size());
        std::wstring_view line = text.substr(0, end);
        if (line.ends_with(L'\r')) line.remove_suffix(1);
        lines.push_back(RWWString(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

// What the session tells, step by step; while its log is open, there too.
class Story {
  public:
    void Tell(const wchar_t* step, RWWString result) {
        if (log_) log_->Put(std::wstring(step) + L": " + result.data());
        steps_.push_back(Record{{L"step", step}, {L"result", std::move(result)}});
    }
    List Take() { return std::move(steps_); }

    void StartLog() { log_.emplace(); }

    // What was told since StartLog, as it stands in the file; nothing, and why, when that cannot be read.
    std::optional<List> EndLog(std::wstring& why) {
        const std::optional<std::wstring> text = log_->Read(why);
        log_.reset();
        if (!text) return std::nullopt;
        List lines = Lines(*text);
        Tell(L"write these steps to a log and read it back", RWWString(std::to_wstring(lines.size())));
        return lines;
    }

  private:
    std::optional<SessionLog> log_;
    List steps_;
};

// Contexts get the lowest free number: those below the wanted one are taken while it is made.
class TakenContexts {
  public:
    explicit TakenContexts(int count) {
        while (count-- > 0) ids_.push_back(CQlsSettings::CreateThreadSettings());
    }
    ~TakenContexts() {
        for (const int id : ids_) CQlsSettings::ReleaseThreadSettingsRef(id);
    }
    TakenContexts(const TakenContexts&) = delete;
    TakenContexts& operator=(const TakenContexts&) = delete;

  private:
    std::vector<int> ids_;
};

constexpr const wchar_t* kLocations = L"Locations";
constexpr const wchar_t* kAnswerFiles = L"Answer Files";
constexpr const wchar_t* kTemplateFiles = L"Template Files";

// The first thread's part: what it asks is loaded from the registry into its context, what it sets stays in
// memory.
RWWString MakeSettings(const QLContextScope& context, Story& story) {
    story.Tell(L"attach this thread to a settings context", RWWString(std::to_wstring(context.id())));
    CQlsSettings::SetThreadRegStrSetting(kLocations, kAnswerFiles, L"C:\\Session Answers");
    story.Tell(L"override the answer folder in the context", CQlDir::GetDirectory(AnswerDirectory));
    CQlsSettings::SetThreadRegStrSetting(kLocations, kTemplateFiles,
                                         GetQLProfileDir(kLocations, kTemplateFiles).data());
    RWWString settings;
    context.settings()->GetSerializedSettings(&settings);
    story.Tell(L"serialise the context", settings);
    return settings;
}

struct Asked {
    RWWString templates;
    RWWString answers;
};

// The second thread's part: a context of its own, filled from the document.
Asked AskOnSecondThread(const RWWString& settings) {
    Asked asked;
    std::thread([&] {
        const QLContextScope context;
        context.settings()->SetFromSerializedSettings(settings.data());
        asked = {CQlDir::GetDirectory(TemplateDirectory), CQlDir::GetDirectory(AnswerDirectory)};
    }).join();
    return asked;
}

Answer Session(const Arguments& arguments) {
    const auto given = arguments.Value(L"context");
    const int wanted = given ? RequireInt(*given, L"N") : kUsualContext;
    if (wanted < 0 || wanted > kLastContext) throw WrongCall(L"N must be 0 to 999");

    Story story;
    Record answer;
    {
        const QLLibraryScope library;
        const QLThreadScope thread;
        if (!library.ok() || !thread.ok()) return Answer::Failure(L"the library did not start");
        story.StartLog();
        story.Tell(L"start the library", L"started");
        std::optional<TakenContexts> below(std::in_place, wanted);
        const QLContextScope context;
        below.reset();
        if (!context.ok()) return Answer::Failure(L"there is no room for another context");
        const RWWString settings = MakeSettings(context, story);
        const Asked asked = AskOnSecondThread(settings);
        story.Tell(L"hand the settings to a second thread and ask it for the answer folder", asked.answers);
        story.Tell(L"ask the second thread for the template folder", asked.templates);
        // Before the library stops: what is queued then is written by whoever ends the process.
        std::wstring why;
        std::optional<List> logLines = story.EndLog(why);
        if (!logLines) return Answer::Failure(std::move(why));
        answer = {{L"templateDirectory", asked.templates},
                  {L"settings", settings},
                  {L"logLines", std::move(*logLines)}};
    }
    story.Tell(L"shut the library down", L"done");
    answer.insert(answer.begin(), {L"steps", story.Take()});
    return answer;
}

constexpr SwitchRow kSessionSwitches[] = {{L"context", true}};

constexpr Command kCommands[] = {
    {L"session", L"[--context N]",
     L"The library's typical request, step by step: start, contexts, settings handed over, a folder asked, "
     L"a log read back, stop.",
     kSessionSwitches, 0, 0, Session, Library::kLeftToCommand},
};

}  // namespace

std::span<const Command> SessionCommands() {
    return kCommands;
}
