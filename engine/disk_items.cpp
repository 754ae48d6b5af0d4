#include "engine/disk_items.h"

#include <algorithm>
#include <functional>
#include <sstream>

#include "engine/entry_name.h"
#include "engine/item_list.h"
#include "engine/name_encoding.h"
#include "engine/windows_files.h"
#include "engine/windows_text.h"
#include "platform/long_number.h"

namespace ql::zip {
namespace {

constexpr DWORD kHiddenOrSystem = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM;
constexpr DWORD kKeptAttributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                  FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_ARCHIVE;

bool IsFolder(const WIN32_FIND_DATAW& found) {
    return found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY;
}

// Without drive, root, "." and "..".
std::string NameInArchive(const std::wstring& path, bool dropFolders) {
    std::string rest = WithSlashes(Utf8FromWide(path));
    if (dropFolders) return std::string(LastPart(rest));
    if (rest.find(':') == 1) rest.erase(0, 2);
    std::string name;
    std::istringstream parts(rest);
    for (std::string part; std::getline(parts, part, '/');) {
        if (!part.empty() && part != "." && part != "..") name += (name.empty() ? "" : "/") + part;
    }
    return name;
}

void ForEachInFolder(const std::wstring& folder, const std::function<void(const WIN32_FIND_DATAW&)>& use) {
    WIN32_FIND_DATAW found;
    // Short names are not asked for, and many entries at a time.
    const UniqueFindHandle find(::FindFirstFileExW((folder + L"*").c_str(), FindExInfoBasic, &found,
                                                   FindExSearchNameMatch, nullptr,
                                                   FIND_FIRST_EX_LARGE_FETCH));
    if (!find) return;
    do {
        const std::wstring_view name = found.cFileName;
        if (name != L"." && name != L"..") use(found);
    } while (::FindNextFileW(find.get(), &found));
}

class Finder {
  public:
    explicit Finder(const ItemSearch& search) : search_(search) {}

    void Find(std::wstring item) {
        while (item.size() > 3 && IsSeparator(item.back())) item.pop_back();
        const std::size_t last = item.find_last_of(L"\\/:") + 1;
        const std::wstring folder = item.substr(0, last), name = item.substr(last);
        const bool hasCards = HasWildCard(Utf8FromWide(name));
        if (!hasCards && (!search_.recurse || FileFacts(item, Result::kSourceMissing)))
            return FindOne(folder, item);
        const std::size_t before = items_.size();
        Walk(folder, name);
        Require(hasCards || items_.size() > before, Result::kSourceMissing);
    }

    std::vector<DiskItem> Take() {
        std::ranges::sort(items_, {}, &DiskItem::folded);
        const auto isSame = [](const DiskItem& a, const DiskItem& b) {
            Require(a.folded != b.folded || SamePath(a.path, b.path), Result::kBadRequest);
            return a.folded == b.folded;
        };
        items_.erase(std::unique(items_.begin(), items_.end(), isSame), items_.end());
        return std::move(items_);
    }

  private:
    static bool SamePath(const std::wstring& a, const std::wstring& b) {
        const auto form = [](const std::wstring& path) { return Folded(WithSlashes(Utf8FromWide(path))); };
        return form(a) == form(b);
    }

    void Add(const std::wstring& folder, const WIN32_FIND_DATAW& found) {
        const std::wstring path = folder + found.cFileName;
        const WIN32_FILE_ATTRIBUTE_DATA facts{found.dwFileAttributes, found.ftCreationTime,
                                              found.ftLastAccessTime, found.ftLastWriteTime,
                                              found.nFileSizeHigh,    found.nFileSizeLow};
        items_.push_back(DiskItemOf(path, NameInArchive(path, search_.dropFolders), facts));
    }

    void AddFolder(const std::wstring& folder, const WIN32_FIND_DATAW& found) {
        if (search_.addFolders && !search_.dropFolders) Add(folder, found);
    }

    void FindOne(const std::wstring& folder, const std::wstring& item) {
        WIN32_FIND_DATAW found;
        const UniqueFindHandle find(::FindFirstFileW(item.c_str(), &found));
        Require(static_cast<bool>(find), Result::kSourceMissing);
        if (!IsFolder(found)) return Add(folder, found);
        AddFolder(folder, found);
        if (search_.recurse) Walk(folder + found.cFileName + L"\\", L"*");
    }

    void Walk(const std::wstring& top, const std::wstring& pattern) {
        const std::u32string folded = Folded(Utf8FromWide(pattern));
        std::vector<std::wstring> folders{top};
        while (!folders.empty()) {
            const std::wstring folder = std::move(folders.back());
            folders.pop_back();
            ForEachInFolder(folder,
                            [&](const WIN32_FIND_DATAW& found) { Visit(folder, found, folded, folders); });
        }
    }

    void Visit(const std::wstring& folder, const WIN32_FIND_DATAW& found, const std::u32string& pattern,
               std::vector<std::wstring>& folders) {
        if (found.dwFileAttributes & kHiddenOrSystem && !search_.addHiddenByCard) return;
        if (!IsFolder(found)) {
            if (MatchesWildCards(pattern, Folded(Utf8FromWide(found.cFileName)))) Add(folder, found);
            return;
        }
        // A folder that is a link could lead back to where it is.
        if (!search_.recurse || found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) return;
        // Below a narrower name, folders are only on the way.
        if (MatchesWildCards(pattern, U"")) AddFolder(folder, found);
        folders.push_back(folder + found.cFileName + L"\\");
    }

    const ItemSearch search_;
    std::vector<DiskItem> items_;
};

}  // namespace

DiskItem DiskItemOf(std::wstring path, std::string name, const WIN32_FILE_ATTRIBUTE_DATA& facts) {
    if (facts.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY && !name.ends_with('/')) name += '/';
    std::u32string folded = Folded(name);
    return {std::move(path),
            std::move(name),
            std::move(folded),
            DosTimeOf(facts.ftLastWriteTime),
            facts.dwFileAttributes & kKeptAttributes,
            Join(facts.nFileSizeHigh, facts.nFileSizeLow)};
}

std::vector<DiskItem> FindDiskItems(const std::vector<std::wstring>& items, const ItemSearch& search) {
    Finder finder(search);
    for (const std::wstring& item : items) finder.Find(item);
    return finder.Take();
}

}  // namespace ql::zip
