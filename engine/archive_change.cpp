#include "engine/archive_change.h"

namespace ql::zip {
namespace {

// What the name leads to: a link is one to the archive.
std::wstring PlaceOf(const std::wstring& path, Patience& patience) {
    std::wstring literal = LiteralPath(path);
    const auto facts = FileFacts(literal, Result::kCannotOpen);
    if (!facts) return literal;
    constexpr DWORD kUnchangeable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
    Require(!(facts->dwFileAttributes & kUnchangeable), Result::kCannotCreate);
    return WindowsInput(literal, kOpenArchive, patience).TruePath();
}

bool HasBytes(const std::wstring& path) {
    const auto facts = FileFacts(path, Result::kCannotOpen);
    return facts && (facts->nFileSizeHigh || facts->nFileSizeLow);
}

}  // namespace

ArchiveChange::ArchiveChange(const std::wstring& path, bool mustExist, Patience& patience)
    : patience_(patience), place_(PlaceOf(path, patience_)), pending_(place_, patience_), writer_(pending_) {
    if (!HasBytes(place_)) {
        Require(!mustExist, Result::kMissing);
        return;
    }
    file_.emplace(place_, kOpenArchive, patience_);
    WindowedInput window(*file_);
    former_ = Archive(window);
    former_.RequireMembersInPlace(window);
    kept_.assign(Entries().size(), true);
}

const Entry* ArchiveChange::Find(std::string_view name) const {
    const std::vector<std::size_t> found = former_.Index().WithPath(Entries(), name);
    return found.empty() ? nullptr : &Entries()[found.back()];
}

void ArchiveChange::Drop(std::string_view name) {
    for (const std::size_t i : former_.Index().WithPath(Entries(), name)) Drop(i);
}

void ArchiveChange::CopyKept() {
    if (file_) writer_.Copy(*file_, former_, kept_);
}

void ArchiveChange::Commit(const std::optional<std::string>& comment, std::optional<DosTime> time) {
    pending_.EndAt(writer_.Finish(comment.value_or(former_.Comment())));
    if (const auto latest = time ? FileTimeOf(*time) : std::nullopt) pending_.SetTime(*latest);
    // The system replaces no file that is open.
    file_.reset();
    pending_.Commit(Former::kReplaced);
}

}  // namespace ql::zip
