#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "platform/unique_handle.h"
#include "platform/win32.h"
#include "settings/registry.h"
#include "settings/scopes.h"

// NOLINTBEGIN(performance-no-int-to-ptr): the system's own constants
inline const HKEY kUser = HKEY_CURRENT_USER;
inline const HKEY kMachine = HKEY_LOCAL_MACHINE;
// NOLINTEND(performance-no-int-to-ptr)

inline void PrintTo(const RWWString& text, std::ostream* out) {
    *out << testing::PrintToString(text.str());
}

// For the life of the object both roots of the registry are keys of this process alone, empty at first. (The
// native fake's registry is that by itself.)
class PrivateRegistry {
  public:
    PrivateRegistry() {
#ifdef _WIN32
        Redirect(kUser, L"\\User");
        Redirect(kMachine, L"\\Machine");
#endif
    }
    ~PrivateRegistry() {
        for (HKEY root : {kUser, kMachine}) ::RegDeleteTreeW(root, L"SOFTWARE");
#ifdef _WIN32
        for (HKEY root : {kUser, kMachine}) ::RegOverridePredefKey(root, nullptr);
        ::RegDeleteTreeW(kUser, Home().c_str());
#endif
    }

    static std::wstring Path(const wchar_t* section) {
        return std::wstring(L"SOFTWARE\\Quillet\\Author\\") + section;
    }

    static ql::UniqueRegKey Create(HKEY root, const std::wstring& path) {
        ql::UniqueRegKey key;
        EXPECT_EQ(ERROR_SUCCESS, ::RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                                                   key.put(), nullptr));
        return key;
    }

    static void PutBytes(HKEY root, const std::wstring& path, const wchar_t* entry, DWORD type,
                         const void* bytes, std::size_t count) {
        EXPECT_EQ(ERROR_SUCCESS,
                  ::RegSetValueExW(Create(root, path).get(), entry, 0, type, static_cast<const BYTE*>(bytes),
                                   static_cast<DWORD>(count)));
    }
    static void Put(HKEY root, const wchar_t* section, const wchar_t* entry, const std::wstring& text) {
        PutBytes(root, Path(section), entry, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    static void Put(HKEY root, const wchar_t* section, const wchar_t* entry, DWORD number) {
        PutBytes(root, Path(section), entry, REG_DWORD, &number, sizeof number);
    }

    // What the current user's key holds; REG_NONE without bytes when it holds nothing.
    using Stored = RegistryValue;
    static Stored Get(const wchar_t* section, const wchar_t* entry) {
        Stored stored;
        ReadRegValue(section, entry, false, stored);
        return stored;
    }

  private:
#ifdef _WIN32
    // A key that processes share could go away while another one adds to it.
    static std::wstring Home() {
        return L"Software\\Registry of test " + std::to_wstring(::GetCurrentProcessId());
    }

    static void Redirect(HKEY root, const wchar_t* name) {
        const ql::UniqueRegKey key = Create(kUser, Home() + name);
        EXPECT_EQ(ERROR_SUCCESS, ::RegOverridePredefKey(root, key.get()));
    }
#endif
};

using SettingsThread = QLThreadScope;
using SettingsProcess = QLLibraryScope;

// On a thread of a process that has settings, over a private registry.
class SettingsTest : public testing::Test {
  protected:
    PrivateRegistry registry_;
    SettingsProcess process_;
    SettingsThread thread_;
};

inline RWWString ThreadText(const wchar_t* section, const wchar_t* entry) {
    RWWString text;
    CQlsSettings::GetThreadRegStrSetting(section, entry, &text);
    return text;
}

inline RWWString DocumentOf(CQlsSettings& store) {
    RWWString document;
    EXPECT_TRUE(store.GetSerializedSettings(&document));
    return document;
}
