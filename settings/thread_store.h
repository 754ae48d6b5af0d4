#pragma once

#include <memory>

#include "settings/settings_store.h"

// What the everyday accessors need of the table of settings stores beside its public members.
namespace ql {

// To the registry, the global store and the calling thread's, in this order, with no other writer in between.
// A store that has no memory for the value forgets the former one and reads the registry again. A null text
// deletes the registry's value, and clears the thread's store. Throws std::bad_alloc before anything changes.
void WritePreference(const wchar_t* section, const wchar_t* entry, const wchar_t* text);
void WritePreference(const wchar_t* section, const wchar_t* entry, int value);
void WritePreference(const wchar_t* section, const wchar_t* entry, bool value);

// CQlsSettings::GetThreadRegStrSetting, but throwing when memory ends.
bool ReadThreadText(const wchar_t* section, const wchar_t* entry, RWWString* value,
                    const wchar_t* defaultValue);

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
