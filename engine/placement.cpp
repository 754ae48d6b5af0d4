#include "engine/placement.h"

#include "engine/result.h"

namespace ql::zip {
namespace {

constexpr DWORD kRestoredAttributes =
    FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE;
constexpr DWORD kPlainAttributes = FILE_ATTRIBUTE_ARCHIVE;

// A read-only file that cannot be replaced stays read-only.
void Replace(PendingFile& file, const std::wstring& place, DWORD attributes) {
    const bool isReadOnly = attributes & FILE_ATTRIBUTE_READONLY;
    if (isReadOnly) ::SetFileAttributesW(place.c_str(), FILE_ATTRIBUTE_NORMAL);
    const Result result = ResultOf([&] { file.Commit(Former::kReplaced); });
    if (isReadOnly && result != Result::kOk) ::SetFileAttributesW(place.c_str(), attributes);
    Require(result == Result::kOk, result);
}

}  // namespace

bool Placement::Wants(const Entry& entry, const FormerFile& former) const {
    return former ? MayReplace(entry, *former) : !command_.freshenFlag;
}

// With the flag to overwrite, an update leaves only what is newer than the member.
bool Placement::MayReplace(const Entry& entry, const WIN32_FILE_ATTRIBUTE_DATA& former) const {
    const DosTime member = TimeOf(entry), file = DosTimeOf(former.ftLastWriteTime);
    const bool isUpdate = command_.freshenFlag || command_.updateFlag;
    if (isUpdate && (member < file || (member == file && !command_.overWriteFlag))) return false;
    Require(isUpdate || command_.overWriteFlag, Result::kSkipped);
    Require(!(former.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY), Result::kCannotCreate);
    Require(!(former.dwFileAttributes & FILE_ATTRIBUTE_READONLY) ||
                command_.wUnzipSubOptions & UNZIP_OVERWRITE_READ_ONLY,
            Result::kCannotCreate);
    return true;
}

bool Placement::Write(const Entry& entry, const std::wstring& place, FormerFile& former,
                      const Fill& fill) const {
    PendingFile file(place, patience_, folder_);
    fill(file);
    if (const auto time = ExactTimeOf(entry)) file.SetTime(*time);
    if (!former && !file.Commit(Former::kKept)) {
        former = FileFacts(place, Result::kCannotCreate);
        Require(former.has_value(), Result::kSkipped);  // it is gone again
        if (!MayReplace(entry, *former)) return false;
    }
    if (former) Replace(file, place, former->dwFileAttributes);
    const DWORD attributes = entry.attributes & kRestoredAttributes;
    if (attributes & ~kPlainAttributes) ::SetFileAttributesW(place.c_str(), attributes);
    return true;
}

}  // namespace ql::zip
