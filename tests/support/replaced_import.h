#pragma once

#include <algorithm>

#include "platform/win32.h"

constexpr const wchar_t* kLibrary = L"Quillet.Platform.Native.Util.dll";

// While it lives, a module calls a function of the test's own where it imports one of the system's.
class ReplacedImport {
  public:
    template <class Function>
    ReplacedImport(const wchar_t* module, const wchar_t* library, const char* name, Function* own)
        : base_(reinterpret_cast<char*>(::GetModuleHandleW(module))),
          systems_(reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(library), name))),
          own_(reinterpret_cast<void*>(own)) {
        Put(systems_, own_);
    }
    ~ReplacedImport() { Put(own_, systems_); }
    ReplacedImport& operator=(ReplacedImport&&) = delete;

  private:
    // A module finds what it imports in a table of addresses.
    void Put(void* before, void* after) const {
        const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base_);
        const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base_ + dos->e_lfanew);
        const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
        void** const first = reinterpret_cast<void**>(base_ + table.VirtualAddress);
        DWORD former = 0;
        ::VirtualProtect(first, table.Size, PAGE_READWRITE, &former);
        std::replace(first, first + table.Size / sizeof(void*), before, after);
    }

    char* const base_;
    void *const systems_, *const own_;
};
