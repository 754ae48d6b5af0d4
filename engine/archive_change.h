#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/archive.h"
#include "engine/archive_writer.h"
#include "engine/pending_file.h"
#include "engine/windows_files.h"

namespace ql::zip {

// An archive on the disk that is being changed: the new one grows beside it, and takes its place in one step
// at the end. Whatever happens before, the former archive stays as it is. While one change is under way,
// another of the same archive waits, and throws kBusy in the end. A link is followed.
class ArchiveChange {
  public:
    // Throws kMissing where the archive must exist and does not; an empty file counts as none. Throws
    // kCannotCreate for one that is read-only. The patience is the call's.
    ArchiveChange(const std::wstring& path, bool mustExist, Patience& patience);

    const std::wstring& Place() const { return place_; }
    const Archive& Former() const { return former_; }
    const std::vector<Entry>& Entries() const { return former_.Entries(); }
    // The last of that name, which is the one that counts.
    const Entry* Find(std::string_view name) const;
    bool Keeps(std::size_t index) const { return kept_[index]; }
    void Drop(std::size_t index) { kept_[index] = false; }
    // All of that name.
    void Drop(std::string_view name);

    // What is left of the former archive; then the new members.
    void CopyKept();
    ArchiveWriter& Writer() { return writer_; }
    Patience& Waiting() { return patience_; }

    // The comment is the former one unless another is given; so is its time.
    void Commit(const std::optional<std::string>& comment, std::optional<DosTime> time);

  private:
    Patience& patience_;
    const std::wstring place_;
    // Before what follows: it keeps others out.
    PendingFile pending_;
    ArchiveWriter writer_;
    std::optional<WindowsInput> file_;
    Archive former_;
    std::vector<bool> kept_;
};

}  // namespace ql::zip
