#pragma once

namespace fake {

// For the life of the object, what this thread allocates is the system's own: it never fails.
class SystemMemory {
  public:
    SystemMemory() { ++depth_; }
    ~SystemMemory() { --depth_; }
    SystemMemory& operator=(SystemMemory&&) = delete;

    static bool IsUsed() { return depth_ > 0; }

  private:
    inline static thread_local int depth_ = 0;
};

}  // namespace fake
