#include "engine/result.h"

namespace ql::zip {
namespace {

struct Codes {
    Result result;
    int zip, unzip;
};

constexpr Codes kCodes[] = {
    {Result::kOk, 0, 0},
    {Result::kBusy, 1, 45},
    {Result::kTruncated, 2, 2},
    {Result::kInvalid, 3, 3},
    {Result::kNoMemory, 4, 4},
    {Result::kBadComment, 7, 3},
    {Result::kCancelled, 9, 40},
    {Result::kNotReplaced, 10, 28},
    {Result::kReadFailed, 11, 29},
    {Result::kNothingToDo, 12, 11},
    {Result::kMissing, 13, 9},
    {Result::kWriteFailed, 14, 50},
    {Result::kCannotCreate, 15, 28},
    {Result::kBadRequest, 16, 47},
    {Result::kTooBig, 17, 49},
    {Result::kSourceMissing, 18, 9},
    {Result::kVolumesAsked, 20, 47},
    {Result::kMultiVolume, 21, 3},
    {Result::kCannotOpen, 18, 29},
    {Result::kOutOfBounds, 16, 25},
    {Result::kBadCrc, 3, 39},
    {Result::kEncrypted, 16, 41},
    {Result::kUnknownMethod, 16, 42},
    {Result::kUnsafeName, 16, 28},
    {Result::kVolumeLabel, 16, 46},
    {Result::kSkipped, 17, 49},
    {Result::kNotDeleted, 17, 49},
};

consteval bool RowsAreInOrder() {
    for (int i = 0; const Codes& row : kCodes) {
        if (static_cast<int>(row.result) != i++) return false;
    }
    return true;
}
static_assert(RowsAreInOrder());

}  // namespace

int ZipCode(Result result) noexcept {
    return kCodes[static_cast<int>(result)].zip;
}
int UnzipCode(Result result) noexcept {
    return kCodes[static_cast<int>(result)].unzip;
}

}  // namespace ql::zip
