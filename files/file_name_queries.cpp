// The members of QLFileName that ask the file system or the display.
#include <fcntl.h>
#include <io.h>
#include <share.h>

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "files/open_flags.h"
#include "files/path_fitting.h"
#include "names/file_name.h"
#include "platform/failure.h"
#include "platform/folder.h"
#include "platform/system_text.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "prefs/known_directory.h"
#include "text/characters.h"

namespace {

using Text = std::wstring_view;

constexpr std::size_t kNone = Text::npos;
constexpr std::size_t kPathBuffer = 261;

// A missing drive or disk must not raise a message. Other threads keep their mode.
class QuietErrors {
  public:
    QuietErrors() noexcept { ::SetThreadErrorMode(SEM_FAILCRITICALERRORS, &former_); }
    ~QuietErrors() { ::SetThreadErrorMode(former_, nullptr); }
    QuietErrors(const QuietErrors&) = delete;
    QuietErrors& operator=(const QuietErrors&) = delete;

  private:
    DWORD former_ = 0;
};

bool OpensExclusively(const std::wstring& path, int access) {
    return ql::OpenAndClose(path.c_str(), access | _O_BINARY, _SH_DENYRW, 0);
}

// A new file that is there only while it is open. Nobody else can open it, so that it is never another's file
// that goes with it. None, with the system's last error, when there is a file already or none can be made.
ql::UniqueFileHandle PassingFile(const std::wstring& path) {
    return ql::UniqueFileHandle(::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                              CREATE_NEW, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
}

// The short name of an existing entry: its alternate name, or its own when it has none.
std::optional<std::wstring> ShortNameOf(const std::wstring& path) {
    WIN32_FIND_DATAW entry;
    const ql::UniqueFindHandle found(::FindFirstFileW(path.c_str(), &entry));
    if (!found) return std::nullopt;
    return std::wstring(entry.cAlternateFileName[0] ? entry.cAlternateFileName : entry.cFileName);
}

// The same of a file that need not exist: it is created for a moment to be asked.
std::optional<std::wstring> ShortNameOfNewFile(const std::wstring& path) {
    const ql::UniqueFileHandle file = PassingFile(path);
    return file ? ShortNameOf(path) : std::nullopt;
}

std::wstring ShortPathName(std::wstring text) {
    for (wchar_t& unit : text) unit = unit == L'/' ? L'\\' : unit;
    constexpr std::size_t kRoot = 3;
    if (text.size() <= kRoot || text.compare(1, 2, L":\\") != 0) return text;
    if (text.back() == L'\\') text.pop_back();

    std::wstring shortPath = text.substr(0, kRoot);
    for (std::size_t begin = kRoot;;) {
        const std::size_t end = text.find(L'\\', begin);
        std::optional<std::wstring> name = ShortNameOf(text.substr(0, end));
        if (!name && end == kNone) name = ShortNameOfNewFile(shortPath + text.substr(begin));
        if (!name) return text;
        shortPath += *name;
        if (end == kNone) return shortPath;
        shortPath += L'\\';
        begin = end + 1;
    }
}

// Not every system answers when it is asked for a longer name than files have.
bool CouldNameAFile(const std::wstring& path) {
    constexpr std::size_t kLongestName = 255;
    for (std::size_t begin = 0, end = 0; end < path.size(); begin = end + 1) {
        end = std::min(path.find_first_of(L"\\/", begin), path.size());
        if (end - begin > kLongestName) return false;
    }
    return true;
}

std::wstring LongPathName(const std::wstring& path) {
    if (!CouldNameAFile(path)) return path;
    wchar_t buffer[kPathBuffer] = {};
    const DWORD length = ::GetLongPathNameW(path.c_str(), buffer, static_cast<DWORD>(kPathBuffer));
    return length == 0 || length >= kPathBuffer ? path : std::wstring(buffer);
}

QLFileName::Status StatusOf(const std::wstring& path) {
    DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (PassingFile(path)) return QLFileName::StatusCreatable;
        if (::GetLastError() != ERROR_FILE_EXISTS) return QLFileName::StatusNotCreatable;
        attributes = 0;  // another program has made it since
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0 && OpensExclusively(path, _O_RDWR))
        return QLFileName::StatusWritable;
    return OpensExclusively(path, _O_RDONLY) ? QLFileName::StatusReadOnly : QLFileName::StatusInUse;
}

bool IsWritableDirectory(const wchar_t* path) {
    constexpr int kReadAndWrite = QLFileName::ACCESS_READ | QLFileName::ACCESS_WRITE;
    return path && *path && ::_waccess(path, kReadAndWrite) == 0;
}

std::wstring TempPath() {
    for (const wchar_t* const variable : {L"TMP", L"TEMP"}) {
        const wchar_t* const value = ::_wgetenv(variable);
        if (IsWritableDirectory(value)) return value;
    }
    const RWWString answers = ql::KnownDirectory(AnswerDirectory);
    if (IsWritableDirectory(answers.data())) return answers.str();
    return ql::SystemText(::GetWindowsDirectoryW);
}

std::optional<int> WidthOf(HDC dc, const std::wstring& text) {
    SIZE size;
    if (!::GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size)) return std::nullopt;
    return size.cx;
}

}  // namespace

bool QLFileName::HasFilePart() const noexcept {
    return hasExtension_ || !Part(kName).empty();
}

int QLFileName::CanAccess(int mode) const {
    return ql::FailureIfThrown(false, [=, this] { return Allows(mode); });
}

bool QLFileName::Allows(int mode) const {
    if (IsRemote() || !HasRoot()) return false;
    std::wstring text = HasFilePart() ? PathAndFileName() : Path();
    if (!HasFilePart() && text.ends_with(L'\\')) text.pop_back();
    const QuietErrors quiet;
    return ::_waccess(text.c_str(), mode) == 0;
}

int QLFileName::Exists() const {
    return HasFilePart() && CanAccess(0);
}

int QLFileName::IsDirectory() const {
    return !IsNull() && Exists() && ql::IsFolder(GetPathAndFileName().data());
}

QLFileName::Status QLFileName::GetStatus() const {
    if (IsRemote()) return StatusUnknown;
    ::SetErrorMode(SEM_FAILCRITICALERRORS);  // and never put back
    return ql::FailureIfThrown(StatusUnknown, [this] { return StatusOf(PathAndFileName()); });
}

RWWString QLFileName::GetUNCPathAndFileName() const {
    return ql::FailureIfThrown(RWWString(), [this]() -> RWWString {
        std::wstring local = PathAndFileName();
        if (Part(kRoot).starts_with(L"\\\\")) return local;
        alignas(UNIVERSAL_NAME_INFOW) unsigned char buffer[2052] = {};
        DWORD size = sizeof buffer;
        if (::WNetGetUniversalNameW(local.c_str(), UNIVERSAL_NAME_INFO_LEVEL, buffer, &size) != NO_ERROR)
            return local;
        return reinterpret_cast<const UNIVERSAL_NAME_INFOW*>(buffer)->lpUniversalName;
    });
}

RWWString QLFileName::GetLongPathAndFileName() const {
    return ql::FailureIfThrown({}, [this] {
        for (const wchar_t* const address : {HTTP, HTTPS, NEWS, MAILTO}) {
            if (ql::EqualIgnoringCase(Part(kScheme), address)) return PathAndFileName();
        }
        return LongPathName(Path() + FileName());
    });
}

RWWString QLFileName::GetShortPath() const {
    return ql::FailureIfThrown({}, [this] {
        return ql::EqualIgnoringCase(Part(kScheme), FILE) ? ShortPathName(Path()) + L'\\' : Path();
    });
}

RWWString QLFileName::GetShortVersion() const {
    return ql::FailureIfThrown({}, [this] {
        const Text scheme = Part(kScheme);
        const bool isLocal = scheme.empty() || ql::EqualIgnoringCase(scheme, FILE);
        return isLocal ? ShortPathName(PathAndFileName()) : PathAndFileName();
    });
}

void QLFileName::SetTempPath() {
    SetPath(QLGetTempPath().data());
}

void QLFileName::SetTempFileName(bool create) {
    const bool isWhole = ql::Completes([&] {
        if (Path().empty()) ParsePath(TempPath());
        if (!TakeFreeFileName(create)) ParseFileName({});
    });
    if (!isWhole) QLFileName::Reset();
}

bool QLFileName::TakeFreeFileName(bool create) {
    const std::wstring extension = hasExtension_ ? L'.' + std::wstring(Part(kExtension)) : L".tmp";
    for (int tries = 0; tries <= RAND_MAX; ++tries) {
        ParseFileName(L"~ql12" + std::to_wstring(std::rand()) + extension);
        if (Allows(0)) continue;
        if (!create || ql::CreateNewFile(PathAndFileName().c_str())) return true;
        if (errno != EEXIST) break;  // the folder refuses every name
    }
    return false;
}

void QLFileName::SetTempPathAndFileName(bool create) {
    SetTempFileName(create);
}

RWWString QLFileName::FitToWidth(HDC dc, int width) const {
    RWWString text = GetPathAndFileName();
    FitToWidth(dc, text, width);
    return text;
}

void QLFileName::FitToWidth(HDC dc, RWWString& text, int width) {
    ql::Completes([&] {
        ql::FitPath(text.str(), width, [dc](const std::wstring& shown) { return WidthOf(dc, shown); });
    });
}

RWWString QLGetLongPathName(const RWWString& path) {
    return ql::FailureIfThrown({}, [&] { return LongPathName(path.str()); });
}

RWWString QLGetShortPathName(const RWWString& path) {
    return ql::FailureIfThrown({}, [&] { return ShortPathName(path.str()); });
}

RWWString QLGetTempPath() {
    return ql::FailureIfThrown({}, [] { return TempPath(); });
}
