#include "logging/os_facts.h"

#include "platform/win32.h"

namespace ql {

namespace {

// Newer than some of the systems that the library runs on, so it is looked for at run time.
std::uint32_t AskEdition(std::uint32_t major, std::uint32_t minor) noexcept {
    using ProductInfo = BOOL(WINAPI*)(DWORD, DWORD, DWORD, DWORD, DWORD*);
    const auto ask = reinterpret_cast<ProductInfo>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetProductInfo")));
    DWORD edition = 0;
    if (ask) ask(major, minor, 0, 0, &edition);
    return edition;
}

}  // namespace

std::optional<OsFacts> ReadOsFacts() {
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version))) return std::nullopt;
    SYSTEM_INFO system = {};
    ::GetNativeSystemInfo(&system);
    return OsFacts{.platform = version.dwPlatformId,
                   .major = version.dwMajorVersion,
                   .minor = version.dwMinorVersion,
                   .build = version.dwBuildNumber,
                   .suite = version.wSuiteMask,
                   .productType = version.wProductType,
                   .architecture = system.wProcessorArchitecture,
                   .edition = AskEdition(version.dwMajorVersion, version.dwMinorVersion),
                   .isServerR2 = ::GetSystemMetrics(SM_SERVERR2) != 0,
                   .servicePack = version.szCSDVersion};
}

}  // namespace ql
