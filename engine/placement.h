#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "engine/archive.h"
#include "engine/patience.h"
#include "engine/pending_file.h"
#include "engine/windows_files.h"
#include "zip/zip_records.h"

namespace ql::zip {

// How the files of members come to their places, as a record asks. Safe on any thread.
class Placement {
  public:
    // The file that is in a place already, if one is.
    using FormerFile = std::optional<WIN32_FILE_ATTRIBUTE_DATA>;
    // Puts a member's contents into its file.
    using Fill = std::function<void(PendingFile& file)>;

    Placement(const UNZIPCMDSTRUCT& command, Patience& patience) : command_(command), patience_(patience) {}

    // Files are written in a folder of the same disk before they come to their places; beside them, if it is
    // empty. Not while one is being written.
    void WriteIn(std::wstring folder) { folder_ = std::move(folder); }
    // Whether the flags want a member in a place. Throws where what is there may not be replaced.
    bool Wants(const Entry& entry, const FormerFile& former) const;
    // Writes a member that is wanted. False where a file has come into the place that the flags leave there;
    // `former` is what was found in the place in the end.
    bool Write(const Entry& entry, const std::wstring& place, FormerFile& former, const Fill& fill) const;

  private:
    bool MayReplace(const Entry& entry, const WIN32_FILE_ATTRIBUTE_DATA& former) const;

    const UNZIPCMDSTRUCT& command_;
    Patience& patience_;
    std::wstring folder_;
};

}  // namespace ql::zip
