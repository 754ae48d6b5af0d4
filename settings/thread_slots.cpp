#include "settings/thread_slots.h"

#include <array>
#include <atomic>
#include <memory>

#include "platform/critical_section.h"
#include "platform/failure.h"
#include "platform/win32.h"

namespace {

constexpr unsigned long kSlots = 64;

using ThreadValues = std::array<void*, kSlots>;

struct SlotManager {
    ql::CriticalSection lock;
    unsigned long handedOut QL_GUARDED_BY(lock) = 0;
    std::atomic<DWORD> systemIndex = TLS_OUT_OF_INDEXES;  // changed under the lock, read without it
};

SlotManager g_slots;

ThreadValues* CurrentValues() {
    const DWORD index = g_slots.systemIndex;
    return index == TLS_OUT_OF_INDEXES ? nullptr : static_cast<ThreadValues*>(::TlsGetValue(index));
}

void** CurrentValue(unsigned long slot) {
    ThreadValues* values = slot < kSlots ? CurrentValues() : nullptr;
    return values ? &(*values)[slot] : nullptr;
}

}  // namespace

bool TlsmInitialize() {
    ql::CriticalSectionGuard guard(g_slots.lock);
    if (g_slots.systemIndex != TLS_OUT_OF_INDEXES) return false;
    g_slots.systemIndex = ::TlsAlloc();
    return g_slots.systemIndex != TLS_OUT_OF_INDEXES;
}

bool TlsmUninitialize() {
    ql::CriticalSectionGuard guard(g_slots.lock);
    const DWORD index = g_slots.systemIndex.exchange(TLS_OUT_OF_INDEXES);
    if (index == TLS_OUT_OF_INDEXES) return false;
    ::TlsFree(index);
    return true;
}

bool TlsmInitializeThread() {
    const DWORD index = g_slots.systemIndex;
    if (index == TLS_OUT_OF_INDEXES) return false;
    return ql::FailureIfThrown(false, [index] {
        auto values = std::make_unique<ThreadValues>();
        TlsmUninitializeThread();
        return ::TlsSetValue(index, values.get()) && values.release();
    });
}

void TlsmUninitializeThread() {
    const std::unique_ptr<ThreadValues> values(CurrentValues());
    if (values) ::TlsSetValue(g_slots.systemIndex, nullptr);
}

bool TlsmIsThreadInitialized() {
    return CurrentValues() != nullptr;
}

unsigned long TlsmAlloc() {
    ql::CriticalSectionGuard guard(g_slots.lock);
    if (g_slots.systemIndex == TLS_OUT_OF_INDEXES || g_slots.handedOut == kSlots) return kTlsmNoSlot;
    return g_slots.handedOut++;
}

bool TlsmFree(unsigned long slot) {
    ql::CriticalSectionGuard guard(g_slots.lock);
    if (g_slots.systemIndex == TLS_OUT_OF_INDEXES || slot >= kSlots) return false;
    g_slots.handedOut = 0;
    return true;
}

bool TlsmSetValue(unsigned long slot, void* value) {
    void** place = CurrentValue(slot);
    if (!place) return false;
    *place = value;
    return true;
}

void* TlsmGetValue(unsigned long slot) {
    void** place = CurrentValue(slot);
    return place ? *place : nullptr;
}
