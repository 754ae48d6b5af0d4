#include "engine/pending_file.h"

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include "engine/name_encoding.h"
#include "engine/result.h"
#include "engine/windows_files.h"
#include "engine/windows_text.h"
#include "platform/file_position.h"

namespace ql::zip {
namespace {

constexpr wchar_t kPrefix[] = L"~ql", kSuffix[] = L".tmp";

// A file that is to go when its handle does, even by the end of the process.
bool GoesWithHandle(HANDLE file, bool goes) {
    FILE_DISPOSITION_INFO disposition{static_cast<BOOLEAN>(goes)};
    return ::SetFileInformationByHandle(file, FileDispositionInfo, &disposition, sizeof disposition);
}

// Nobody has it open: its writer is gone.
void RemoveLeftover(const std::wstring& path) {
    const UniqueFileHandle file(
        ::CreateFileW(path.c_str(), DELETE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file) GoesWithHandle(file.get(), true);
}

bool Rename(HANDLE file, const std::wstring& to, Former former) {
    const std::size_t bytes = to.size() * sizeof(wchar_t);
    std::vector<std::uint64_t> room((sizeof(FILE_RENAME_INFO) + bytes) / sizeof(std::uint64_t) + 1);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(room.data());
    info->ReplaceIfExists = former == Former::kReplaced;
    info->FileNameLength = static_cast<DWORD>(bytes);
    std::memcpy(info->FileName, to.data(), bytes);
    return ::SetFileInformationByHandle(file, FileRenameInfo, info,
                                        info->FileNameLength + DWORD{sizeof(FILE_RENAME_INFO)});
}

Result WhyNotCreated(DWORD error) {
    switch (error) {
        case ERROR_FILE_EXISTS:
        case ERROR_ALREADY_EXISTS:
        case ERROR_SHARING_VIOLATION: return Result::kBusy;
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL: return Result::kWriteFailed;
        default: return Result::kCannotCreate;
    }
}

std::wstring NameIn(const std::wstring& folder, const std::wstring& place) {
    std::wstring name = folder + L'\\' + kPrefix;
    const std::uint32_t hash = FoldedHash(Utf8FromWide(place.substr(place.rfind(L'\\') + 1)));
    for (int shift = 28; shift >= 0; shift -= 4) name += L"0123456789abcdef"[hash >> shift & 0xf];
    return name + kSuffix;
}

}  // namespace

std::wstring PendingFile::NameBeside(const std::wstring& place) {
    return NameIn(place.substr(0, place.rfind(L'\\')), place);
}

PendingFile::PendingFile(std::wstring place, Patience& patience, const std::wstring& folder)
    : place_(std::move(place)),
      path_(folder.empty() ? NameBeside(place_) : NameIn(folder, place_)),
      patience_(patience) {
    if (!patience_.Until([this] { return Create(); })) throw Failure{WhyNotCreated(::GetLastError())};
    GoesWithHandle(file_.get(), true);
}

// A name that is taken counts as one in use: by a writer, unless it is a leftover.
bool PendingFile::Create() {
    const auto create = [this] {
        file_.reset(::CreateFileW(path_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, CREATE_NEW,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
        return static_cast<bool>(file_);
    };
    if (create()) return true;
    if (::GetLastError() != ERROR_FILE_EXISTS) return false;
    RemoveLeftover(path_);
    if (create()) return true;
    if (::GetLastError() == ERROR_FILE_EXISTS) ::SetLastError(ERROR_SHARING_VIOLATION);
    return false;
}

PendingFile::~PendingFile() {
    if (file_) GoesWithHandle(file_.get(), true);
}

void PendingFile::WriteAt(std::uint64_t offset, const std::uint8_t* data, std::size_t size) {
    DWORD written = 0;
    Require(MoveTo(file_.get(), static_cast<std::int64_t>(offset)) &&
                ::WriteFile(file_.get(), data, static_cast<DWORD>(size), &written, nullptr) &&
                written == size,
            Result::kWriteFailed);
}

void PendingFile::EndAt(std::uint64_t size) {
    Require(ql::EndAt(file_.get(), static_cast<std::int64_t>(size)), Result::kWriteFailed);
}

void PendingFile::SetTime(const FILETIME& time) {
    ::SetFileTime(file_.get(), nullptr, nullptr, &time);
}

bool PendingFile::Commit(Former former) {
    Require(::FlushFileBuffers(file_.get()), Result::kWriteFailed);
    GoesWithHandle(file_.get(), false);
    if (!patience_.Until([&] { return Rename(file_.get(), place_, former); })) {
        const DWORD error = ::GetLastError();
        GoesWithHandle(file_.get(), true);
        const bool isThere = error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
        Require(isThere && former == Former::kKept, Result::kNotReplaced);
        return false;
    }
    file_.reset();
    return true;
}

}  // namespace ql::zip
