#pragma once

#include <new>

#include "platform/shared_lock.h"
#include "settings/settings_dictionary.h"
#include "settings/settings_store.h"

namespace ql {

// The state that a store shares with its copies.
struct LockedSettings {
    SharedLock lock;
    SettingsDictionary settings QL_GUARDED_BY(lock);

    // Throws std::bad_alloc when there was no memory for it.
    static LockedSettings& Of(CQlsSettings& store) {
        if (!store.state_) throw std::bad_alloc();
        return *store.state_;
    }
};

// CQlsSettings::GetRegStrSetting, but throwing when memory ends.
bool ReadStoreText(CQlsSettings& store, const wchar_t* section, const wchar_t* entry, RWWString* value,
                   const wchar_t* defaultValue);

}  // namespace ql
