#include "files/directory_iterator.h"

#include <string>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "text/characters.h"
#include "text/string_table.h"

namespace {

bool IsSelfOrParent(const wchar_t* name) {
    return std::wstring_view(name) == L"." || std::wstring_view(name) == L"..";
}

}  // namespace

struct CDirectoryIterator::Search {
    ql::UniqueFindHandle handle;
    WIN32_FIND_DATAW entry{};
    RWWString path;  // of the pattern

    bool Open(const QLFileName& pattern) {
        path = pattern.GetPath();
        handle.reset(::FindFirstFileW(pattern.GetPathAndFileName().data(), &entry));
        return static_cast<bool>(handle);
    }
    bool Advance() { return ::FindNextFileW(handle.get(), &entry) != FALSE; }
    void Put(QLFileName& out) const {
        out.SetPath(path.data());
        out.SetFileName(entry.cFileName);
    }
};

CDirectoryIterator::CDirectoryIterator() noexcept = default;
CDirectoryIterator::CDirectoryIterator(CDirectoryIterator&& other) noexcept = default;
CDirectoryIterator& CDirectoryIterator::operator=(CDirectoryIterator&& other) noexcept = default;
CDirectoryIterator::~CDirectoryIterator() = default;

bool CDirectoryIterator::First(const QLFileName& pattern, QLFileName* out) {
    search_ = std::make_unique<Search>();
    if (!search_->Open(pattern)) {
        search_.reset();
        return false;
    }
    if (IsSelfOrParent(search_->entry.cFileName)) return Next(out);
    if (out) search_->Put(*out);
    return true;
}

bool CDirectoryIterator::Next(QLFileName* out) {
    while (search_ && search_->Advance()) {
        if (IsSelfOrParent(search_->entry.cFileName)) continue;
        if (out) search_->Put(*out);
        return true;
    }
    search_.reset();
    return false;
}

bool CDirectoryIterator::IsDir() const noexcept {
    return search_ && (search_->entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

namespace {

QLStringTable EntriesOf(const QLFileName& directory) {
    QLFileName pattern(directory);
    pattern.SetFileName(L"*.*");
    QLStringTable entries;
    CDirectoryIterator walk;
    QLFileName entry;
    for (bool more = walk.First(pattern, &entry); more; more = walk.Next(&entry)) {
        entries.AppendString(entry.GetPathAndFileName());
    }
    return entries;
}

// Made writable only when that is in the way: the attributes may be those of a link's target.
void RemoveFile(const RWWString& file) {
    if (::DeleteFileW(file.data())) return;
    const DWORD attributes = ::GetFileAttributesW(file.data());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_READONLY) == 0) return;
    ::SetFileAttributesW(file.data(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    ::DeleteFileW(file.data());
}

// A working directory cannot be removed.
void LeaveDirectory(const RWWString& path) {
    wchar_t current[MAX_PATH];
    const DWORD length = ::GetCurrentDirectoryW(MAX_PATH, current);
    if (length == 0 || length >= MAX_PATH) return;
    std::wstring directory(current, length);
    if (directory.back() != L'\\') directory += L'\\';
    if (ql::EqualIgnoringCase(directory, path)) ::SetCurrentDirectoryW(QLGetTempPath().data());
}

}  // namespace

void DeleteDirAndContents(const wchar_t* directory) {
    QLFileName name;
    name.SetPath(directory);
    if (name.GetPath().isNull()) return;  // the pattern would be of the current directory
    const QLStringTable entries = EntriesOf(name);
    for (unsigned int i = 0; i < entries.NumEntries(); ++i) RemoveFile(entries(static_cast<int>(i)));

    std::wstring path = name.GetPath().str();
    LeaveDirectory(path);
    path.erase(path.find_last_not_of(L'\\') + 1);
    ::RemoveDirectoryW(path.c_str());
}
