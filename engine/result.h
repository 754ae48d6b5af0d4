#pragma once

#include <new>
#include <stdexcept>

#include "zip/zip_records.h"

namespace ql::zip {

// How a call of an engine can end. Each engine answers it by its own published code.
enum class Result {
    kOk,
    kBusy,
    kTruncated,
    kInvalid,
    kNoMemory,
    kBadComment,
    kCancelled,
    kNotReplaced,
    kReadFailed,
    kNothingToDo,
    kMissing,
    kWriteFailed,
    kCannotCreate,
    kBadRequest,
    kTooBig,
    kSourceMissing,
    kVolumesAsked,
    kMultiVolume,
    kCannotOpen,
    kOutOfBounds,
    kBadCrc,
    kEncrypted,
    kUnknownMethod,
    kUnsafeName,
    kVolumeLabel,
    kSkipped,
    kNameTaken,
    kNotDeleted,
};

// Thrown inside the engines; the entry points turn it into the code.
struct Failure {
    Result result;
};

inline void Require(bool holds, Result otherwise) {
    if (!holds) throw Failure{otherwise};
}

// How the work ends; the way out of every call of an engine.
template <class Work>
Result ResultOf(const Work& work) noexcept {
    try {
        work();
        return Result::kOk;
    } catch (const Failure& failure) {
        return failure.result;
    } catch (const std::exception&) {
        return Result::kNoMemory;
    }
}

ZipCode ZipCodeOf(Result result) noexcept;
UnzipCode UnzipCodeOf(Result result) noexcept;

}  // namespace ql::zip
