#pragma once

#include <cstdint>

namespace ql {

// Whether the writer thread is gone and the thread that ends the process writes what is left. The system may
// have ended the other threads amid anything, an allocation included: outputs then take no memory.
bool LogIsEnding() noexcept;

// The number of the line that this thread is handing to an output, told apart for each output; 0 for none. A
// line that the writer was amid when it ended comes again under the same number.
std::uint32_t LineInHand() noexcept;

enum class LostTo { kMemory, kBacklog, kOutput, kDisk };
// Lines lost to a full disk are told by the file that misses them.
void CountLostLines(LostTo cause, std::uint32_t lines) noexcept;

}  // namespace ql
