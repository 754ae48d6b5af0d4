#pragma once

#include "platform/critical_section.h"
#include "settings/settings_dictionary.h"
#include "settings/settings_store.h"

namespace ql {

// The state that a store shares with its copies.
struct LockedSettings {
    SharedLock lock;
    SettingsDictionary settings QL_GUARDED_BY(lock);

    static LockedSettings& Of(CQlsSettings& store) noexcept { return *store.state_; }
};

}  // namespace ql
