#include "logging/os_names.h"

#include <gtest/gtest.h>

namespace {

struct Case {
    std::uint32_t major, minor, type, architecture, suite, edition;
    bool r2;
    const wchar_t* expected;
};

constexpr std::uint32_t kStation = 1, kServer = 3, kX86 = 0, kItanium = 6, kAmd64 = 9;

constexpr Case kCases[] = {
    {6, 0, kStation, kX86, 0, 2, false, L"Microsoft Windows VistaHome Basic Edition (build 77), 32-bit"},
    {6, 0, kServer, kItanium, 0, 15, false,
     L"Microsoft Windows Server 2008Enterprise Edition for Itanium-based Systems (build 77)"},
    {6, 1, kStation, kAmd64, 0, 1, false, L"Microsoft Windows 7Ultimate Edition (build 77), 64-bit"},
    {6, 1, kServer, kAmd64, 0, 12, false,
     L"Microsoft Windows Server 2008 R2Datacenter Edition (core installation) (build 77), 64-bit"},
    {6, 2, kStation, kAmd64, 0, 48, false, L"Microsoft Windows 8Professional (build 77), 64-bit"},
    {6, 2, 2, kAmd64, 0, 5, false, L"Microsoft Windows Server 2012 (build 77), 64-bit"},
    {6, 3, kStation, kX86, 0, 101, false, L"Microsoft  (build 77), 32-bit"},
    {10, 0, kStation, kAmd64, 0, 48, false, L"Microsoft Professional (build 77), 64-bit"},
    {5, 2, kServer, kX86, 0x2000, 0, true, L"Microsoft Windows Server 2003 R2, Standard Edition (build 77)"},
    {5, 2, kServer, kX86, 0xA400, 0, false, L"Microsoft Windows Storage Server 2003Web Edition (build 77)"},
    {5, 2, kServer, kX86, 0x8002, 0, false, L"Microsoft Windows Home ServerEnterprise Edition (build 77)"},
    {5, 2, kStation, kAmd64, 0, 0, false, L"Microsoft Windows XP Professional x64 Edition (build 77)"},
    {5, 2, kStation, kX86, 0x82, 0, false, L"Microsoft Windows Server 2003,  (build 77)"},
    {5, 2, kServer, kItanium, 0x82, 0, false,
     L"Microsoft Windows Server 2003, Datacenter Edition for Itanium-based Systems (build 77)"},
    {5, 2, kServer, kItanium, 0, 0, false, L"Microsoft Windows Server 2003,  (build 77)"},
    {5, 2, kServer, kAmd64, 0x2, 0, false,
     L"Microsoft Windows Server 2003, Enterprise x64 Edition (build 77)"},
    {5, 2, kServer, kAmd64, 0, 0, false, L"Microsoft Windows Server 2003, Standard x64 Edition (build 77)"},
    {5, 2, kServer, kX86, 0x4082, 0, false,
     L"Microsoft Windows Server 2003, Compute Cluster Edition (build 77)"},
    {5, 2, kServer, kX86, 0x82, 0, false, L"Microsoft Windows Server 2003, Datacenter Edition (build 77)"},
    {5, 1, kStation, kX86, 0x200, 0, false, L"Microsoft Windows XP Home Edition (build 77)"},
    {5, 1, kServer, kX86, 0, 0, false, L"Microsoft Windows XP Professional (build 77)"},
    {5, 0, kStation, kX86, 0x82, 0, false, L"Microsoft Windows 2000 Professional (build 77)"},
    {5, 0, kServer, kX86, 0x2, 0, false, L"Microsoft Windows 2000 Advanced Server (build 77)"},
    {5, 0, kServer, kX86, 0x82, 0, false, L"Microsoft Windows 2000 Datacenter Server (build 77)"},
    {5, 0, kServer, kX86, 0, 0, false, L"Microsoft Windows 2000 Server (build 77)"},
    {4, 0, kStation, kX86, 0, 0, false, L" (build 77)"},
};

}  // namespace

TEST(OsDescription, TellsEachSystemByItsFacts) {
    for (const Case& c : kCases) {
        const ql::OsFacts facts = {2,      c.major,        c.minor,   77,   c.suite,
                                   c.type, c.architecture, c.edition, c.r2, L""};
        EXPECT_EQ(c.expected, ql::DescribeOs(facts));
    }
}

TEST(OsDescription, NamesTheServicePackAndNothingMoreOfOtherPlatforms) {
    EXPECT_EQ(L" B  (build 9)", ql::DescribeOs({1, 4, 10, 9, 0, 0, 0, 0, false, L"B "}));
    EXPECT_EQ(L"Microsoft Windows XP Professional Service Pack 3 (build 2600)",
              ql::DescribeOs({2, 5, 1, 2600, 0, 1, 0, 0, false, L"Service Pack 3"}));
}
