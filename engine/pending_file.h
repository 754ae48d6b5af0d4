#pragma once

#include <string>

#include "engine/dos_time.h"
#include "engine/file_access.h"
#include "engine/patience.h"
#include "platform/unique_handle.h"

namespace ql::zip {

enum class Former { kReplaced, kKept };

// A file that is there only once it is complete. It is written beside its place, or in another folder of the
// same disk, under a short name that belongs to the place, so that it also keeps other writers of the same
// file away who write it there, and takes the place in one step. The system removes what is not committed,
// even when the process is killed; what a machine that lost its power leaves, or a kill in the instant of
// that step, is removed by the next writer of the same file.
class PendingFile final : public OutputFile {
  public:
    // The place is a literal path; without a folder to be written in it is written beside it. Throws kBusy
    // while another writes the same file, kWriteFailed where the disk is full, else kCannotCreate.
    PendingFile(std::wstring place, Patience& patience, const std::wstring& folder = {});
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile() override;

    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override;
    // Cuts off what was written beyond.
    void EndAt(std::uint64_t size);
    void SetTime(const FILETIME& time);
    // Brings the bytes to the disk and the file to its place. False, and nothing has changed, where a file
    // that is to be kept has come into the place. Throws kWriteFailed; kNotReplaced where the former file
    // cannot be replaced.
    bool Commit(Former former);

    // The name beside the place.
    static std::wstring NameBeside(const std::wstring& place);

  private:
    bool Create();

    const std::wstring place_, path_;
    Patience& patience_;
    UniqueFileHandle file_;
};

}  // namespace ql::zip
