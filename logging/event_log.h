#pragma once

#include <cstdint>

namespace ql {

// Reports an error of the named source to this machine's event log; nothing happens where that fails.
void ReportToEventLog(const wchar_t* source, std::uint32_t eventId, const wchar_t* message) noexcept;

}  // namespace ql
