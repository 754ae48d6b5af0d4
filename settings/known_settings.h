#pragma once

#include "settings/locked_settings.h"
#include "settings/thread_store.h"

namespace ql {

// Runs the call on what the calling thread's store knows, while nobody writes to it: many settings are read
// at one moment, and quicker than one by one. The call answers whether it found what it wanted, and reads or
// writes no preference otherwise; without a store it is not run, and the answer is no. Throws std::bad_alloc.
template <class Call>
bool WithKnownSettings(Call call) {
    const ThreadStores stores = StoresOfThread();
    CQlsSettings* const store = stores.context ? stores.context.get() : stores.global.get();
    if (!store) return false;
    LockedSettings& state = LockedSettings::Of(*store);
    const ReaderGuard guard(state.lock);
    return call(state.settings);
}

}  // namespace ql
