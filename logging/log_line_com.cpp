#include "logging/log_line.h"
#include "platform/bstr.h"

QLLoggerLevelInserter& QLLoggerLevelInserter::operator<<(const _bstr_t& text) noexcept {
    return *this << static_cast<const wchar_t*>(text);
}
