#pragma once

#include <memory>

#include "platform/critical_section.h"
#include "settings/settings_store.h"

// What the everyday accessors need of the table of settings stores beside its public members.
namespace ql {

// Held by every writer from the registry to the last store, so that they agree whoever else writes; a thread
// may take it again. Taken before the lock of any store.
CriticalSection& SettingsTableLock();

// Whether there are stores to ask: not before CQlsSettings::Initialize, and not after Uninitialize.
bool HasSettingsStores();

// The store of the calling thread's context, null when it reads the global one; and the global one, null when
// there is none.
struct ThreadStores {
    std::shared_ptr<CQlsSettings> context;
    std::shared_ptr<CQlsSettings> global;
};
ThreadStores StoresOfThread();

}  // namespace ql
