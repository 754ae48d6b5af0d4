#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "engine/archive.h"
#include "engine/dos_time.h"
#include "engine/file_access.h"
#include "engine/patience.h"
#include "engine/result.h"
#include "platform/unique_handle.h"

namespace ql::zip {

// What tells a file from what it was before a change. Times are in 100 nanoseconds since 1601.
struct FileState {
    std::uint64_t size;
    std::int64_t created, written, changed;
    bool operator==(const FileState&) const = default;
};

struct OpenFailures {
    Result missing;  // it is not there
    Result closed;   // it cannot be opened
};

// A file that others may read, write, move and delete meanwhile.
class WindowsInput final : public InputFile {
  public:
    WindowsInput(const std::wstring& path, const OpenFailures& failures, Patience& patience);
    std::uint64_t Size() const override;
    FileState State() const;
    // Where the file is, behind any links.
    std::wstring TruePath() const;
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override;

  private:
    UniqueFileHandle file_;
};

constexpr OpenFailures kOpenArchive = {Result::kMissing, Result::kCannotOpen};
constexpr OpenFailures kOpenSource = {Result::kSourceMissing, Result::kReadFailed};

// The local time of a file's last change, as archives keep it, and back. A time that is none gives nothing.
DosTime DosTimeOf(const FILETIME& time);
std::optional<FILETIME> FileTimeOf(DosTime time);
DosTime DosTimeNow();
std::int64_t TimeNow();

// Of a member's last change; the moment, where it is told, wins over the local time.
DosTime TimeOf(const Entry& entry);
std::optional<FILETIME> ExactTimeOf(const Entry& entry);

// The full form of a path, which the system takes as it stands: no length limit, no names with a meaning of
// their own.
std::wstring LiteralPath(const std::wstring& path);

// The folder and those above it. Answers whether it is there.
bool MakeFolders(const std::wstring& folder);

// What the disk tells of a file; nothing where there is none. Throws `otherwise` where it does not tell.
std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileFacts(const std::wstring& path, Result otherwise);

}  // namespace ql::zip
