#pragma once

#include <atomic>

namespace ql {

// What another thread may have to go on from. It is stored behind what stands before it in the source and
// ahead of what follows: the compiler keeps that order, since the system may end the storing thread in
// between.
template <class Value>
class InOrder {
  public:
    constexpr InOrder(Value value) noexcept : value_(value) {}
    InOrder& operator=(Value value) noexcept {
        std::atomic_signal_fence(std::memory_order_seq_cst);
        value_ = value;
        std::atomic_signal_fence(std::memory_order_seq_cst);
        return *this;
    }
    operator Value() const noexcept { return value_; }

  private:
    Value value_;
};

}  // namespace ql
