#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/archive.h"
#include "engine/archive_writer.h"
#include "engine/windows_files.h"

namespace ql::zip {

// An archive on the disk that is being changed: the new one grows beside it, and takes its place in one step
// at the end. Whatever happens before, the former archive stays as it is. While one change is under way,
// another of the same archive throws kBusy.
class ArchiveChange {
  public:
    // Throws kMissing where the archive must exist and does not; an empty file counts as none.
    ArchiveChange(const std::wstring& path, bool mustExist);

    const std::vector<Entry>& Entries() const { return old_.Entries(); }
    const Entry* Find(const std::u32string& foldedName) const;
    void Drop(const Entry& entry);

    // What is left of the former archive; then the new members.
    void CopyKept();
    ArchiveWriter& Writer() { return writer_; }

    // The comment is the former one unless another is given; so is its time.
    void Commit(const std::optional<std::string>& comment, std::optional<DosTime> time);

  private:
    std::size_t IndexOf(const Entry& entry) const {
        return static_cast<std::size_t>(&entry - Entries().data());
    }

    // First of all: it keeps others out.
    PendingFile pending_;
    ArchiveWriter writer_;
    std::optional<WindowsInput> file_;
    Archive old_;
    std::vector<bool> kept_;
    std::unordered_map<std::u32string, std::size_t> byName_;
};

}  // namespace ql::zip
