#include "logging/os_description.h"

#include "logging/os_facts.h"
#include "logging/os_names.h"
#include "platform/failure.h"

int GetOSDescription(wchar_t* buffer, int size) noexcept {
    if (!buffer || size <= 0) return 1;
    ql::Completes([buffer, size] {
        const auto facts = ql::ReadOsFacts();
        if (!facts) return;
        const std::wstring text = ql::DescribeOs(*facts);
        buffer[text.copy(buffer, static_cast<std::size_t>(size) - 1)] = L'\0';
    });
    return 1;
}
