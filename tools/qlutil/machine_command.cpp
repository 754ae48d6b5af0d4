#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "files/machine.h"
#include "logging/os_description.h"
#include "platform/win32.h"
#include "tools/qlutil/command.h"
#include "zip/dynazip.h"

namespace {

constexpr DWORD kLongestPath = UNICODE_STRING_MAX_CHARS + 1;

// What another command answers when it is called without arguments.
std::optional<Node> AnswerOf(std::wstring_view name) {
    const Command* const command = FindCommand(std::vector{name}).command;
    if (!command) return std::nullopt;
    const Answer answer = command->run(Arguments({}, command->switches));
    const Node* const output = std::get_if<Node>(&answer.output);
    return output ? std::optional(*output) : std::nullopt;
}

const Node* Find(const Record& record, std::wstring_view key) {
    const auto entry = std::ranges::find(record, key, &Record::value_type::first);
    return entry != record.end() ? &entry->second : nullptr;
}

Node Entry(const std::optional<Node>& answer, std::wstring_view key) {
    const Record* const record = answer ? std::get_if<Record>(&answer->value) : nullptr;
    const Node* const entry = record ? Find(*record, key) : nullptr;
    return entry ? *entry : Node(nullptr);
}

List InstalledProcessors() {
    const Node processors = Entry(AnswerOf(L"processors"), L"processors");
    List installed;
    for (const Node& processor : std::get<List>(processors.value)) {
        const Node* const isInstalled = Find(std::get<Record>(processor.value), L"installed");
        if (isInstalled && std::get<bool>(isInstalled->value)) installed.push_back(processor);
    }
    return installed;
}

// "1.2.3.4" of a program file's own description; null when it has none.
Node FileVersion(const std::wstring& path) {
    std::vector<BYTE> description(::GetFileVersionInfoSizeW(path.c_str(), nullptr));
    const auto size = static_cast<DWORD>(description.size());
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    if (size == 0 || !::GetFileVersionInfoW(path.c_str(), 0, size, description.data()) ||
        !::VerQueryValueW(description.data(), L"\\", reinterpret_cast<void**>(&fixed), &length)) {
        return nullptr;
    }
    std::wstring version;
    for (const DWORD part : {HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
                             HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS)}) {
        version += (version.empty() ? L"" : L".") + std::to_wstring(part);
    }
    return RWWString(version);
}

// The file of a module that is loaded.
std::wstring FileOf(const wchar_t* module) {
    std::wstring path(kLongestPath, L'\0');
    path.resize(::GetModuleFileNameW(::GetModuleHandleW(module), path.data(), kLongestPath));
    return path;
}

struct Engine {
    const wchar_t* name;
    int (*load)();
    void (*free)();
};
const Engine kEngines[] = {
    {L"DZIP32.DLL", Dynazip::IsZipDllLoaded, Dynazip::FreeZipDll},
    {L"DUNZIP32.DLL", Dynazip::IsUnZipDllLoaded, Dynazip::FreeUnZipDll},
};

// The engines as the library finds them at run time: no search but its own would do.
List Engines() {
    List engines;
    for (const Engine& engine : kEngines) {
        const bool isThere = engine.load() != 0;
        const std::wstring file = isThere ? FileOf(engine.name) : engine.name;
        engines.push_back(
            Record{{L"file", file}, {L"version", isThere ? FileVersion(file) : Node(L"missing")}});
        engine.free();
    }
    return engines;
}

BOOL CALLBACK AddMonitor(HMONITOR, HDC, RECT* place, LPARAM list) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the system's way of handing it
    reinterpret_cast<List*>(list)->push_back(
        Record{{L"left", static_cast<int>(place->left)},
               {L"top", static_cast<int>(place->top)},
               {L"width", static_cast<int>(place->right - place->left)},
               {L"height", static_cast<int>(place->bottom - place->top)}});
    return TRUE;
}

List Monitors() {
    List monitors;
    ::EnumDisplayMonitors(nullptr, nullptr, &AddMonitor, reinterpret_cast<LPARAM>(&monitors));
    return monitors;
}

Node WindowsVersion() {
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExW(&version)) return nullptr;
    return RWWString(std::to_wstring(version.dwMajorVersion) + L'.' +
                     std::to_wstring(version.dwMinorVersion) + L'.' + std::to_wstring(version.dwBuildNumber));
}

Node User() {
    wchar_t name[256 + 1];
    DWORD length = static_cast<DWORD>(std::size(name));
    return ::GetUserNameW(name, &length) ? Node(name) : Node(nullptr);
}

Answer Machine(const Arguments&) {
    wchar_t description[256] = {};
    GetOSDescription(description, static_cast<int>(std::size(description)));
    const std::optional<Node> own = AnswerOf(L"version");
    return Record{{L"version", Entry(own, L"version")},
                  {L"bits", Entry(own, L"bits")},
                  {L"engines", Engines()},
                  {L"windows", WindowsVersion()},
                  {L"osDescription", description},
                  {L"is64BitWindows", Is64BitWindows()},
                  {L"user", User()},
                  {L"isAdminUser", IsAdminUser()},
                  {L"canWriteToHKLM", CanWriteToHKLM()},
                  {L"ansiCodePage", ::GetACP()},
                  {L"oemCodePage", ::GetOEMCP()},
                  {L"monitors", Monitors()},
                  {L"directories", AnswerOf(L"dirs").value_or(nullptr)},
                  {L"processors", InstalledProcessors()}};
}

constexpr Command kCommands[] = {
    {L"machine",
     L"",
     L"The whole report of one machine: versions, system, user, code pages, monitors, folders, processors.",
     {},
     0,
     0,
     Machine},
};

}  // namespace

std::span<const Command> MachineCommands() {
    return kCommands;
}
