#include "logging/os_names.h"

#include <string_view>

namespace ql {

namespace {

constexpr std::uint32_t kPlatformNt = 2;
constexpr std::uint32_t kWorkstation = 1;
constexpr std::uint32_t kX86 = 0;
constexpr std::uint32_t kItanium = 6;
constexpr std::uint32_t kAmd64 = 9;

constexpr std::uint32_t kEnterprise = 0x2;
constexpr std::uint32_t kDatacenter = 0x80;
constexpr std::uint32_t kPersonal = 0x200;
constexpr std::uint32_t kBlade = 0x400;
constexpr std::uint32_t kStorageServer = 0x2000;
constexpr std::uint32_t kComputeServer = 0x4000;
constexpr std::uint32_t kHomeServer = 0x8000;

struct Version6Row {
    std::uint32_t minor;
    std::wstring_view workstation;
    std::wstring_view server;
};
constexpr Version6Row kVersions6[] = {
    {0, L"Windows Vista", L"Windows Server 2008"},
    {1, L"Windows 7", L"Windows Server 2008 R2"},
    {2, L"Windows 8", L"Windows Server 2012"},
};

struct EditionRow {
    std::uint32_t edition;
    std::wstring_view text;
};
constexpr EditionRow kEditions[] = {
    {1, L"Ultimate Edition"},
    {2, L"Home Basic Edition"},
    {3, L"Home Premium Edition"},
    {4, L"Enterprise Edition"},
    {6, L"Business Edition"},
    {7, L"Standard Edition"},
    {8, L"Datacenter Edition"},
    {9, L"Small Business Server"},
    {10, L"Enterprise Edition"},
    {11, L"Starter Edition"},
    {12, L"Datacenter Edition (core installation)"},
    {13, L"Standard Edition (core installation)"},
    {14, L"Enterprise Edition (core installation)"},
    {15, L"Enterprise Edition for Itanium-based Systems"},
    {17, L"Web Server Edition"},
    {18, L"Cluster Server Edition"},
    {25, L"Small Business Server Premium Edition"},
    {48, L"Professional"},
};

// The first row whose suite bits are all there; every table ends with a row of none.
struct SuiteRow {
    std::uint32_t suite;
    std::wstring_view text;
};
constexpr SuiteRow kItaniumServers52[] = {
    {kDatacenter, L"Datacenter Edition for Itanium-based Systems"},
    {kEnterprise, L"Enterprise Edition for Itanium-based Systems"},
    {0, L""},
};
constexpr SuiteRow kAmd64Servers52[] = {
    {kDatacenter, L"Datacenter x64 Edition"},
    {kEnterprise, L"Enterprise x64 Edition"},
    {0, L"Standard x64 Edition"},
};
constexpr SuiteRow kX86Servers52[] = {
    {kComputeServer, L"Compute Cluster Edition"},
    {kDatacenter, L"Datacenter Edition"},
    {kEnterprise, L"Enterprise Edition"},
    {kBlade, L"Web Edition"},
    {0, L"Standard Edition"},
};
constexpr SuiteRow kEditions51[] = {{kPersonal, L"Home Edition"}, {0, L"Professional"}};
constexpr SuiteRow kServers50[] = {
    {kDatacenter, L"Datacenter Server"},
    {kEnterprise, L"Advanced Server"},
    {0, L"Server"},
};

bool IsWorkstation(const OsFacts& facts) noexcept {
    return facts.productType == kWorkstation;
}

std::wstring_view BySuite(const SuiteRow* row, const OsFacts& facts) noexcept {
    while ((facts.suite & row->suite) != row->suite) ++row;
    return row->text;
}

std::wstring_view Version6(const OsFacts& facts) noexcept {
    for (const Version6Row& row : kVersions6) {
        if (row.minor == facts.minor) return IsWorkstation(facts) ? row.workstation : row.server;
    }
    return {};
}

std::wstring_view Edition(std::uint32_t edition) noexcept {
    for (const EditionRow& row : kEditions) {
        if (row.edition == edition) return row.text;
    }
    return {};
}

std::wstring_view Version52(const OsFacts& facts) noexcept {
    if (facts.isServerR2) return L"Windows Server 2003 R2, ";
    if (facts.suite & kStorageServer) return L"Windows Storage Server 2003";
    if (facts.suite & kHomeServer) return L"Windows Home Server";
    if (IsWorkstation(facts) && facts.architecture == kAmd64) return L"Windows XP Professional x64 Edition";
    return L"Windows Server 2003, ";
}

std::wstring_view Edition52(const OsFacts& facts) noexcept {
    if (IsWorkstation(facts)) return {};
    if (facts.architecture == kItanium) return BySuite(kItaniumServers52, facts);
    return BySuite(facts.architecture == kAmd64 ? kAmd64Servers52 : kX86Servers52, facts);
}

std::wstring_view Edition50(const OsFacts& facts) noexcept {
    return IsWorkstation(facts) ? L"Professional" : BySuite(kServers50, facts);
}

std::wstring Version5(const OsFacts& facts) {
    switch (facts.minor) {
        case 2: return std::wstring(Version52(facts)).append(Edition52(facts));
        case 1: return std::wstring(L"Windows XP ").append(BySuite(kEditions51, facts));
        case 0: return std::wstring(L"Windows 2000 ").append(Edition50(facts));
        default: return {};
    }
}

// The edition is asked for in every version from 5 on.
std::wstring Product(const OsFacts& facts) {
    std::wstring product = L"Microsoft ";
    if (facts.major == 6) product += Version6(facts);
    product += Edition(facts.edition);
    if (facts.major == 5) product += Version5(facts);
    return product;
}

std::wstring_view Bits(std::uint32_t architecture) noexcept {
    if (architecture == kAmd64) return L", 64-bit";
    return architecture == kX86 ? L", 32-bit" : L"";
}

}  // namespace

std::wstring DescribeOs(const OsFacts& facts) {
    std::wstring text;
    if (facts.platform == kPlatformNt && facts.major >= 5) text = Product(facts);
    if (!facts.servicePack.empty()) text += L' ' + facts.servicePack;
    text += L" (build " + std::to_wstring(facts.build) + L')';
    if (facts.major >= 6) text += Bits(facts.architecture);
    return text;
}

}  // namespace ql
