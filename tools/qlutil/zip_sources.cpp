#include "tools/qlutil/zip_sources.h"

#include <wchar.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

#include "files/directory_iterator.h"
#include "platform/win32.h"
#include "tools/qlutil/system_reason.h"

namespace {

constexpr DWORD kLongestPath = UNICODE_STRING_MAX_CHARS + 1;

std::wstring LastPart(const std::wstring& path) {
    return path.substr(path.find_last_of(L"\\/:") + 1);
}

bool IsFolder(const std::wstring& path) {
    const DWORD attributes = ::GetFileAttributesW(LiteralPath(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && attributes & FILE_ATTRIBUTE_DIRECTORY;
}

// The name of the folder itself, also behind "." and "..": empty for a drive's root.
std::wstring FolderName(const std::wstring& path) {
    std::wstring full = LiteralPath(path);
    full.resize(full.find_last_not_of(L"\\/") + 1);
    return LastPart(full);
}

// A drive alone stands for the current folder there.
std::wstring Below(const std::wstring& folder, const wchar_t* name) {
    const bool needsNone = std::wstring_view(L"\\/:").find(folder.back()) != std::wstring_view::npos;
    return folder + (needsNone ? L"" : L"\\") + name;
}

struct FindCloser {
    using pointer = HANDLE;
    void operator()(HANDLE find) const noexcept { ::FindClose(find); }
};

// What is in a folder; nothing, and the system's error, where it cannot be listed to its end.
std::optional<std::vector<WIN32_FIND_DATAW>> EntriesOf(const std::wstring& folder, DWORD& error) {
    std::vector<WIN32_FIND_DATAW> entries;
    WIN32_FIND_DATAW entry;
    const HANDLE first = ::FindFirstFileW(Below(LiteralPath(folder), L"*").c_str(), &entry);
    const std::unique_ptr<HANDLE, FindCloser> find(first != INVALID_HANDLE_VALUE ? first : nullptr);
    for (BOOL more = find != nullptr; more; more = ::FindNextFileW(first, &entry)) {
        const std::wstring_view name = entry.cFileName;
        if (name != L"." && name != L"..") entries.push_back(entry);
    }
    error = ::GetLastError();
    // A drive's root has no entry when it is empty.
    const bool isWhole = error == (find ? ERROR_NO_MORE_FILES : ERROR_FILE_NOT_FOUND);
    return isWhole ? std::optional(std::move(entries)) : std::nullopt;
}

}  // namespace

std::wstring LiteralPath(const std::wstring& path) {
    std::wstring full(kLongestPath, L'\0');
    const DWORD size = ::GetFullPathNameW(path.c_str(), kLongestPath, full.data(), nullptr);
    if (size == 0 || size >= kLongestPath) return path;
    full.resize(size);
    if (full.starts_with(L"\\\\?\\") || full.starts_with(L"\\\\.\\")) return full;
    return full.starts_with(L"\\\\") ? L"\\\\?\\UNC" + full.substr(1) : L"\\\\?\\" + full;
}

void Sources::Add(const std::wstring& path) {
    if (path.find_first_of(L"*?") != std::wstring::npos) return AddFitting(path);
    if (IsFolder(path)) return AddFolder(path, FolderName(path));
    if (IsArchive(path)) return refused_.push_back({path, L"it is the archive itself"});
    AddFile(path, LastPart(path));
}

std::uint64_t Sources::Bytes() const {
    std::uint64_t bytes = 0;
    WIN32_FILE_ATTRIBUTE_DATA facts;
    for (const Source& source : all_) {
        if (::GetFileAttributesExW(LiteralPath(source.path).c_str(), GetFileExInfoStandard, &facts))
            bytes += std::uint64_t{facts.nFileSizeHigh} << 32 | facts.nFileSizeLow;
    }
    return bytes;
}

bool Sources::IsArchive(const std::wstring& path) const {
    std::error_code none;
    // The disk is asked only where the name could be the archive's.
    return ::_wcsicmp(LastPart(path).c_str(), LastPart(archive_).c_str()) == 0 &&
           std::filesystem::equivalent(path, archive_, none);
}

// Nobody wants an archive among its own files.
void Sources::AddFile(const std::wstring& path, const std::wstring& name) {
    if (!IsArchive(path)) all_.push_back({path, name});
}

void Sources::AddFitting(const std::wstring& pattern) {
    const std::size_t before = all_.size();
    CDirectoryIterator entries;
    QLFileName entry;
    for (bool more = entries.First(pattern.c_str(), &entry); more; more = entries.Next(&entry)) {
        const std::wstring file = entry.GetPathAndFileName().str();
        if (!entries.IsDir()) AddFile(file, LastPart(file));
    }
    if (all_.size() == before) refused_.push_back({pattern, L"no file fits it"});
}

// A folder is a member of its own only where nothing else tells of it.
void Sources::AddFolder(const std::wstring& path, const std::wstring& name) {
    DWORD error = ERROR_SUCCESS;
    const auto entries = EntriesOf(path, error);
    if (!entries) return refused_.push_back({path, L"it cannot be listed: " + ReasonOf(error)});
    const std::size_t before = all_.size();
    for (const WIN32_FIND_DATAW& entry : *entries) {
        const std::wstring file = Below(path, entry.cFileName);
        std::wstring nameOfEntry = name;
        if (!name.empty()) nameOfEntry += L'/';
        nameOfEntry += entry.cFileName;
        const DWORD kind = entry.dwFileAttributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT);
        if (!(kind & FILE_ATTRIBUTE_DIRECTORY)) {
            AddFile(file, nameOfEntry);
        } else if (!(kind & FILE_ATTRIBUTE_REPARSE_POINT)) {
            AddFolder(file, nameOfEntry);
        }
    }
    if (all_.size() != before) return;
    if (name.empty()) return refused_.push_back({path, L"there is nothing in it"});
    all_.push_back({path, name});
}
