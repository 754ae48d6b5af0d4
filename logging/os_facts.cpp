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
    return ask && ask(major, minor, 0, 0, &edition) ? edition : 0;
}

}  // namespace

std::optional<OsFacts> ReadOsFacts() {
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!::GetVersionExW(reinterpret_cast<OSVERSIONINFOW*>(&version))) return std::nullopt;
    SYSTEM_INFO system = {};
    ::GetNativeSystemInfo(&system);
    OsFacts facts;
    facts.platform = version.dwPlatformId;
    facts.major = version.dwMajorVersion;
    facts.minor = version.dwMinorVersion;
    facts.build = version.dwBuildNumber;
    facts.suite = version.wSuiteMask;
    facts.productType = version.wProductType;
    facts.architecture = system.wProcessorArchitecture;
    facts.edition = AskEdition(facts.major, facts.minor);
    facts.isServerR2 = ::GetSystemMetrics(SM_SERVERR2) != 0;
    facts.servicePack = version.szCSDVersion;
    return facts;
}

}  // namespace ql
