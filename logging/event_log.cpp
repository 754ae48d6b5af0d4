#include "logging/event_log.h"

#include "platform/unique_handle.h"

namespace ql {

namespace {

struct EventSourceTraits {
    using Handle = HANDLE;
    static Handle Invalid() noexcept { return nullptr; }
    static void Close(Handle source) noexcept { ::DeregisterEventSource(source); }
};

constexpr WORD kCategory = 4;

}  // namespace

void ReportToEventLog(const wchar_t* source, std::uint32_t eventId, const wchar_t* message) noexcept {
    const UniqueHandle<EventSourceTraits> opened(::RegisterEventSourceW(nullptr, source));
    if (!opened) return;
    ::ReportEventW(opened.get(), EVENTLOG_ERROR_TYPE, kCategory, eventId, nullptr, 1, 0, &message, nullptr);
}

}  // namespace ql
