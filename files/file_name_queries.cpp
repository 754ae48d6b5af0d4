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
#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "prefs/directories.h"
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

bool OpensExclusively(const RWWString& path, int access) {
    const int descriptor = ql::OpenFile(path.data(), access | _O_BINARY, _SH_DENYRW, 0);
    return descriptor >= 0 && ::_close(descriptor) == 0;
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
    if (!ql::CreateNewFile(path.c_str())) return std::nullopt;
    std::optional<std::wstring> name = ShortNameOf(path);
    ::_wremove(path.c_str());
    return name;
}

bool IsWritableDirectory(const wchar_t* path) {
    constexpr int kReadAndWrite = QLFileName::ACCESS_READ | QLFileName::ACCESS_WRITE;
    return path && *path && ::_waccess(path, kReadAndWrite) == 0;
}

std::optional<int> WidthOf(HDC dc, const std::wstring& text) {
    SIZE size;
    if (!::GetTextExtentPoint32W(dc, text.c_str(), static_cast<int>(text.size()), &size)) return std::nullopt;
    return size.cx;
}

}  // namespace

int QLFileName::CanAccess(int mode) const {
    if (IsRemote() || !HasRoot()) return 0;
    RWWString text = HasFilePart() ? GetPathAndFileName() : GetPath();
    if (!HasFilePart() && text.view().ends_with(L'\\')) text.resize(text.length() - 1);
    const QuietErrors quiet;
    return ::_waccess(text.data(), mode) == 0;
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
    const RWWString path = GetPathAndFileName();
    const DWORD attributes = ::GetFileAttributesW(path.data());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        if (!ql::CreateNewFile(path.data())) return StatusNotCreatable;
        ::_wremove(path.data());
        return StatusCreatable;
    }
    if ((attributes & FILE_ATTRIBUTE_READONLY) == 0 && OpensExclusively(path, _O_RDWR)) return StatusWritable;
    return OpensExclusively(path, _O_RDONLY) ? StatusReadOnly : StatusInUse;
}

RWWString QLFileName::GetUNCPathAndFileName() const {
    return ql::FailureIfThrown(RWWString(), [&]() -> RWWString {
        RWWString local = GetPathAndFileName();
        if (GetRoot().view().starts_with(L"\\\\")) return local;
        alignas(UNIVERSAL_NAME_INFOW) unsigned char buffer[2052] = {};
        DWORD size = sizeof buffer;
        if (::WNetGetUniversalNameW(local.data(), UNIVERSAL_NAME_INFO_LEVEL, buffer, &size) != NO_ERROR)
            return local;
        return RWWString(reinterpret_cast<const UNIVERSAL_NAME_INFOW*>(buffer)->lpUniversalName);
    });
}

RWWString QLFileName::GetLongPathAndFileName() const {
    return ql::FailureIfThrown(RWWString(), [&] {
        const RWWString scheme = GetScheme();
        for (const wchar_t* const address : {HTTP, HTTPS, NEWS, MAILTO}) {
            if (ql::EqualIgnoringCase(scheme, address)) return GetPathAndFileName();
        }
        return QLGetLongPathName(GetPath() + GetFileName());
    });
}

RWWString QLFileName::GetShortPath() const {
    return ql::FailureIfThrown(RWWString(), [&] {
        const RWWString path = GetPath();
        return ql::EqualIgnoringCase(GetScheme(), FILE) ? QLGetShortPathName(path) + L'\\' : path;
    });
}

RWWString QLFileName::GetShortVersion() const {
    return ql::FailureIfThrown(RWWString(), [&] {
        const RWWString scheme = GetScheme(), text = GetPathAndFileName();
        return scheme.isNull() || ql::EqualIgnoringCase(scheme, FILE) ? QLGetShortPathName(text) : text;
    });
}

void QLFileName::SetTempPath() {
    SetPath(QLGetTempPath().data());
}

void QLFileName::SetTempFileName(bool create) {
    if (GetPath().isNull()) SetTempPath();
    const bool isFound = ql::FailureIfThrown(false, [&] {
        RWWString extension(L".tmp");
        GetExtension(extension);
        for (int tries = 0; tries <= RAND_MAX; ++tries) {
            SetFileName((L"~ql12" + std::to_wstring(std::rand()) + extension.str()).c_str());
            if (Exists()) continue;
            if (!create || ql::CreateNewFile(GetPathAndFileName().data())) return true;
            if (errno != EEXIST) break;  // the folder refuses every name
        }
        return false;
    });
    if (!isFound) SetFileName(nullptr);
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
    return ql::FailureIfThrown(RWWString(), [&] {
        wchar_t buffer[kPathBuffer] = {};
        const DWORD length = ::GetLongPathNameW(path.data(), buffer, static_cast<DWORD>(kPathBuffer));
        return length == 0 || length >= kPathBuffer ? path : RWWString(buffer);
    });
}

RWWString QLGetShortPathName(const RWWString& path) {
    return ql::FailureIfThrown(RWWString(), [&]() -> RWWString {
        std::wstring text(path.view());
        for (wchar_t& unit : text) unit = unit == L'/' ? L'\\' : unit;
        constexpr std::size_t kRoot = 3;
        if (text.size() < kRoot || text.compare(1, 2, L":\\") != 0) return text;
        if (text.size() > kRoot && text.back() == L'\\') text.pop_back();

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
    });
}

RWWString QLGetTempPath() {
    return ql::FailureIfThrown(RWWString(), [&]() -> RWWString {
        for (const wchar_t* const variable : {L"TMP", L"TEMP"}) {
            const wchar_t* const value = ::_wgetenv(variable);
            if (IsWritableDirectory(value)) return value;
        }
        RWWString answers = CQlDir::GetDirectory(AnswerDirectory);
        if (IsWritableDirectory(answers.data())) return answers;
        wchar_t windows[258] = {};
        const UINT length = ::GetWindowsDirectoryW(windows, static_cast<UINT>(std::size(windows)));
        return length < std::size(windows) ? RWWString(windows) : RWWString();
    });
}
