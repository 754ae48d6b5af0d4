#pragma once

#include <algorithm>

#include "platform/win32.h"

constexpr const wchar_t* kLibrary = L"Quillet.Platform.Native.Util.dll";

// From here on a module calls a function of the test's own where it imports one of the system's. It finds
// what it imports in a table of addresses.
template <class Function>
void ReplaceImport(const wchar_t* module, const wchar_t* library, const char* name, Function* own) {
    char* const base = reinterpret_cast<char*>(::GetModuleHandleW(module));
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const auto& table = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IAT];
    void** const first = reinterpret_cast<void**>(base + table.VirtualAddress);
    const FARPROC systems = ::GetProcAddress(::GetModuleHandleW(library), name);
    DWORD former = 0;
    ::VirtualProtect(first, table.Size, PAGE_READWRITE, &former);
    std::replace(first, first + table.Size / sizeof(void*), reinterpret_cast<void*>(systems),
                 reinterpret_cast<void*>(own));
}
