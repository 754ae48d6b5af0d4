#pragma once

#include <exception>
#include <utility>

namespace ql {

// The call's result, or the failure value when it throws (it ran out of memory): no exception leaves the
// library.
template <class Result, class Call>
Result FailureIfThrown(Result failure, Call&& call) noexcept {
    try {
        return std::forward<Call>(call)();
    } catch (const std::exception&) {
        return failure;
    }
}

}  // namespace ql
