#include "files/directory_iterator.h"

#include <string>
#include <utility>

#include "files/file_removal.h"
#include "files/kept_name.h"
#include "names/name_access.h"
#include "platform/current_directory.h"
#include "platform/failure.h"
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
    QLFileName base;  // its path alone counts; read from a text it would be expanded once more

    explicit Search(const QLFileName& pattern) : base(pattern) {
        ql::RequireWhole(base, pattern);
        if (base.GetScheme().isNull()) base.SetPath(nullptr);  // entries always have a path, if an empty one
    }
    bool Open(const QLFileName& pattern) {
        // Short names are not asked for, and many entries at a time.
        handle.reset(::FindFirstFileExW(ql::NameAccess::PathAndFileName(pattern).c_str(), FindExInfoBasic,
                                        &entry, FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH));
        return static_cast<bool>(handle);
    }
    bool Advance() { return ::FindNextFileW(handle.get(), &entry) != FALSE; }
    bool Tell(QLFileName* out) const {
        if (!out) return true;
        out->SetEntry(base, entry.cFileName);
        return !out->QLFileName::IsNull();  // as it is without memory
    }
};

CDirectoryIterator::CDirectoryIterator() noexcept = default;
CDirectoryIterator::CDirectoryIterator(const CDirectoryIterator&) noexcept {}
CDirectoryIterator::CDirectoryIterator(CDirectoryIterator&& other) noexcept = default;
CDirectoryIterator& CDirectoryIterator::operator=(CDirectoryIterator&& other) noexcept = default;
CDirectoryIterator::~CDirectoryIterator() = default;

CDirectoryIterator& CDirectoryIterator::operator=(const CDirectoryIterator& other) noexcept {
    if (&other != this) search_.reset();
    return *this;
}

bool CDirectoryIterator::First(const QLFileName& pattern, QLFileName* out) {
    search_.reset();
    return ql::FailureIfThrown(false, [&] {
        auto search = std::make_unique<Search>(pattern);
        if (!search->Open(pattern)) return false;
        search_ = std::move(search);
        return IsSelfOrParent(search_->entry.cFileName) ? Next(out) : search_->Tell(out);
    });
}

bool CDirectoryIterator::Next(QLFileName* out) {
    while (search_ && search_->Advance()) {
        if (IsSelfOrParent(search_->entry.cFileName)) continue;
        return ql::FailureIfThrown(false, [&] { return search_->Tell(out); });
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
    ql::RequireWhole(pattern, directory);
    pattern.SetFileName(L"*.*");
    QLStringTable entries;
    CDirectoryIterator walk;
    QLFileName entry;
    for (bool more = walk.First(pattern, &entry); more; more = walk.Next(&entry)) {
        entries.AppendString(entry.GetPathAndFileName());
    }
    return entries;
}

// A working directory cannot be removed.
void LeaveDirectory(const RWWString& path) {
    std::wstring directory = ql::CurrentDirectory();
    if (!directory.ends_with(L'\\')) directory += L'\\';
    if (ql::EqualIgnoringCase(directory, path)) ::SetCurrentDirectoryW(QLGetTempPath().data());
}

}  // namespace

void DeleteDirAndContents(const wchar_t* directory) {
    ql::Completes([directory] {
        QLFileName name;
        name.SetPath(directory);
        if (name.GetPath().isNull()) return;  // the pattern would be of the current directory
        const QLStringTable entries = EntriesOf(name);
        for (unsigned int i = 0; i < entries.NumEntries(); ++i)
            ql::RemoveFile(entries(static_cast<int>(i)).data());

        std::wstring path = name.GetPath().str();
        LeaveDirectory(path);
        path.erase(path.find_last_not_of(L'\\') + 1);
        ::RemoveDirectoryW(path.c_str());
    });
}
