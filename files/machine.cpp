#include "files/machine.h"

#include <cstdint>
#include <cstring>
#include <iterator>

#include "platform/file_position.h"
#include "platform/unique_handle.h"
#include "platform/win32.h"

namespace {

// What lies behind the end of the file is left as it was.
bool ReadAt(HANDLE file, LONGLONG offset, void* bytes, DWORD count) noexcept {
    DWORD read = 0;
    return ql::MoveTo(file, offset) && ::ReadFile(file, bytes, count, &read, nullptr);
}

// The system's functions are looked up by name: not every version has them.
template <class Function>
Function FunctionOf(HMODULE module, const char* name) noexcept {
    return module ? reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(module, name)))
                  : nullptr;
}

using CheckTokenMembershipFunction = BOOL(WINAPI*)(HANDLE, PSID, PBOOL);
using IsWow64ProcessFunction = BOOL(WINAPI*)(HANDLE, PBOOL);

}  // namespace

bool Is64BitWindows() noexcept {
    if (sizeof(void*) == 8) return true;
    const auto isWow64Process =
        FunctionOf<IsWow64ProcessFunction>(::GetModuleHandleW(L"kernel32"), "IsWow64Process");
    BOOL emulated = FALSE;
    return isWow64Process && isWow64Process(::GetCurrentProcess(), &emulated) && emulated;
}

bool CanWriteToHKLM() noexcept {
    // The machine's values are those of the 32-bit view, whatever the word size of the program.
    constexpr REGSAM kAccess = KEY_ALL_ACCESS | KEY_WOW64_32KEY;
    ql::UniqueRegKey key;
    return ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Quillet\\Author", 0, kAccess, key.put()) ==
           ERROR_SUCCESS;
}

bool IsAdminUser() noexcept {
    static const auto checkTokenMembership =
        FunctionOf<CheckTokenMembershipFunction>(::LoadLibraryW(L"Advapi32.dll"), "CheckTokenMembership");
    if (!checkTokenMembership) return false;
    alignas(SID) unsigned char administrators[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof administrators;
    BOOL member = FALSE;
    return ::CreateWellKnownSid(WinBuiltinAdministratorsSid, nullptr, administrators, &size) &&
           checkTokenMembership(nullptr, administrators, &member) && member;
}

int Is32BitExe(const wchar_t* path) noexcept {
    if (!path) return 0;
    const ql::UniqueFileHandle file(
        ::CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    constexpr LONGLONG kHeaderOffset = 60;
    constexpr char16_t kSignature[] = u"PE";
    std::uint32_t header = 0;
    char16_t signature[std::size(kSignature)] = {};
    return file && ReadAt(file.get(), kHeaderOffset, &header, sizeof header) &&
           ReadAt(file.get(), header, signature, sizeof signature) &&
           std::memcmp(signature, kSignature, sizeof signature) == 0;
}
