#include "engine/result.h"

namespace ql::zip {
namespace {

struct Codes {
    Result result;
    ZipCode zip;
    UnzipCode unzip;
};

constexpr Codes kCodes[] = {
    {Result::kOk, ZIP_DONE, UNZIP_DONE},
    {Result::kBusy, ZIP_BUSY, UNZIP_BUSY},
    {Result::kTruncated, ZIP_CUT_OFF, UNZIP_CUT_OFF},
    {Result::kInvalid, ZIP_INVALID, UNZIP_INVALID},
    {Result::kNoMemory, ZIP_NO_MEMORY, UNZIP_NO_MEMORY},
    {Result::kBadComment, ZIP_BAD_COMMENT, UNZIP_INVALID},
    {Result::kCancelled, ZIP_CANCELLED, UNZIP_CANCELLED},
    {Result::kNotReplaced, ZIP_TEMPORARY_FILE, UNZIP_CANNOT_CREATE},
    {Result::kReadFailed, ZIP_READ_FAILED, UNZIP_CANNOT_OPEN},
    {Result::kNothingToDo, ZIP_NOTHING_TO_DO, UNZIP_NOTHING_TO_DO},
    {Result::kMissing, ZIP_MISSING, UNZIP_MISSING},
    {Result::kWriteFailed, ZIP_WRITE_FAILED, UNZIP_DISK_FULL},
    {Result::kCannotCreate, ZIP_CANNOT_CREATE, UNZIP_CANNOT_CREATE},
    {Result::kBadRequest, ZIP_BAD_REQUEST, UNZIP_BAD_REQUEST},
    {Result::kTooBig, ZIP_NOT_COMPLETED, UNZIP_SKIPPED},
    {Result::kSourceMissing, ZIP_FILE_MISSING, UNZIP_MISSING},
    {Result::kVolumesAsked, ZIP_VOLUMES_ASKED, UNZIP_BAD_REQUEST},
    {Result::kMultiVolume, ZIP_VOLUMES, UNZIP_INVALID},
    {Result::kCannotOpen, ZIP_FILE_MISSING, UNZIP_CANNOT_OPEN},
    {Result::kOutOfBounds, ZIP_BAD_REQUEST, UNZIP_OUT_OF_BOUNDS},
    {Result::kBadCrc, ZIP_INVALID, UNZIP_BAD_CRC},
    {Result::kEncrypted, ZIP_BAD_REQUEST, UNZIP_ENCRYPTED},
    {Result::kUnknownMethod, ZIP_BAD_REQUEST, UNZIP_UNKNOWN_METHOD},
    {Result::kUnsafeName, ZIP_BAD_REQUEST, UNZIP_CANNOT_CREATE},
    {Result::kVolumeLabel, ZIP_BAD_REQUEST, UNZIP_VOLUME_LABEL},
    {Result::kSkipped, ZIP_NOT_COMPLETED, UNZIP_SKIPPED},
    {Result::kNameTaken, ZIP_BAD_REQUEST, UNZIP_NAME_TAKEN},
    {Result::kNotDeleted, ZIP_NOT_COMPLETED, UNZIP_SKIPPED},
};

consteval bool RowsAreInOrder() {
    for (int i = 0; const Codes& row : kCodes) {
        if (static_cast<int>(row.result) != i++) return false;
    }
    return true;
}
static_assert(RowsAreInOrder());

}  // namespace

ZipCode ZipCodeOf(Result result) noexcept {
    return kCodes[static_cast<int>(result)].zip;
}
UnzipCode UnzipCodeOf(Result result) noexcept {
    return kCodes[static_cast<int>(result)].unzip;
}

}  // namespace ql::zip
