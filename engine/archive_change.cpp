#include "engine/archive_change.h"

#include "engine/entry_name.h"
#include "engine/name_encoding.h"

namespace ql::zip {
namespace {

bool HasBytes(const std::wstring& path) {
    const auto facts = FileFacts(path);
    return facts && (facts->nFileSizeHigh != 0 || facts->nFileSizeLow != 0);
}

}  // namespace

ArchiveChange::ArchiveChange(const std::wstring& path, bool mustExist)
    : pending_(PendingFile::Replacing(path)), writer_(pending_) {
    if (!HasBytes(path)) {
        Require(!mustExist, Result::kMissing);
        return;
    }
    file_.emplace(path, Result::kMissing, Result::kCannotOpen);
    old_ = Archive(*file_);
    kept_.assign(Entries().size(), true);
    for (std::size_t i = 0; i < Entries().size(); ++i)
        byName_.emplace(Folded(WithSlashes(Entries()[i].name)), i);
}

const Entry* ArchiveChange::Find(const std::u32string& foldedName) const {
    const auto found = byName_.find(foldedName);
    return found == byName_.end() ? nullptr : &Entries()[found->second];
}

void ArchiveChange::Drop(const Entry& entry) {
    kept_[IndexOf(entry)] = false;
}

void ArchiveChange::CopyKept() {
    if (file_) writer_.Copy(*file_, old_, kept_);
}

void ArchiveChange::Commit(const std::optional<std::string>& comment, std::optional<DosTime> time) {
    writer_.Finish(comment.value_or(old_.Comment()));
    if (time) pending_.SetTime(*time);
    pending_.Flush();
    file_.reset();
    pending_.Commit();
}

}  // namespace ql::zip
