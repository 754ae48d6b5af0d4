#pragma once

#include <array>
#include <optional>
#include <string>

#include "engine/dos_time.h"
#include "engine/file_access.h"
#include "engine/result.h"
#include "platform/unique_handle.h"

namespace ql::zip {

// Tells files apart, and a file from what it was before a change: volume, place on it, size, time of change.
using FileIdentity = std::array<std::uint64_t, 4>;

// A file that others may read and write meanwhile. Throws `missing` where it is not there, else `closed`
// where it cannot be opened.
class WindowsInput final : public InputFile {
  public:
    WindowsInput(const std::wstring& path, Result missing, Result closed);
    std::uint64_t Size() const override;
    FileIdentity Identity() const;
    std::size_t ReadAt(std::uint64_t offset, std::uint8_t* into, std::size_t size) override;

  private:
    UniqueFileHandle file_;
};

// A file that is there only once it is complete: what is not committed is removed.
class PendingFile final : public OutputFile {
  public:
    // A file of that name stays as it is until Commit moves the new one into its place; the new one is
    // written beside it, under a name with ".~new" behind. Throws kBusy while another writes it, else
    // kCannotCreate.
    static PendingFile Replacing(const std::wstring& path);
    // A name that is free so far; written in its place. Throws kCannotCreate.
    static PendingFile Fresh(const std::wstring& path);

    PendingFile(PendingFile&& other) noexcept;
    PendingFile& operator=(PendingFile&&) = delete;
    ~PendingFile() override;

    void WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) override;
    void SetTime(DosTime time);
    // Waits until the bytes are on the disk.
    void Flush();
    // Throws kNotReplaced.
    void Commit();

  private:
    PendingFile(std::wstring path, std::wstring finalPath, DWORD disposition);

    std::wstring path_, finalPath_;
    UniqueFileHandle file_;
    bool pending_ = true;
};

// The local time of a file's last change, as archives keep it, and back. A time that is none gives nothing.
DosTime DosTimeOf(const FILETIME& time);
std::optional<FILETIME> FileTimeOf(DosTime time);
DosTime DosTimeNow();

// The full form of a path, which the system takes as it stands: no length limit, no names with a meaning of
// their own.
std::wstring LiteralPath(const std::wstring& path);

// The folder and those above it. Answers whether it is there.
bool MakeFolders(const std::wstring& folder);

// What the disk tells of a file; nothing where there is none.
std::optional<WIN32_FILE_ATTRIBUTE_DATA> FileFacts(const std::wstring& path);

}  // namespace ql::zip
