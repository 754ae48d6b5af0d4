#pragma once

namespace ql {

// Whether the writer thread is gone and the thread that ends the process writes what is left. The system may
// have ended the other threads amid anything, an allocation included: outputs then take no memory.
bool LogIsEnding() noexcept;

}  // namespace ql
