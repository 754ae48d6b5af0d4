#pragma once

#include <type_traits>
#include <utility>

namespace ql {

// No exception leaves the library: these two stand wherever something may throw, which is to say run out of
// memory.

// The call's result, or the failure value when it throws.
template <class Call, class Result = std::invoke_result_t<Call>>
Result FailureIfThrown(std::type_identity_t<Result> failure, Call&& call) noexcept {
    try {
        return std::forward<Call>(call)();
    } catch (...) {
        return failure;
    }
}

// Whether the call came to its end. For calls that answer nothing.
template <class Call>
bool Completes(Call&& call) noexcept {
    return FailureIfThrown(false, [&call] {
        std::forward<Call>(call)();
        return true;
    });
}

}  // namespace ql
