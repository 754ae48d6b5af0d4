#include "logging/os_names.h"

#include <gtest/gtest.h>

namespace {

constexpr std::uint32_t kStation = 1, kServer = 3, kX86 = 0, kItanium = 6, kAmd64 = 9;

constexpr struct {
    std::uint32_t major, minor, type, architecture, suite, edition;
    const wchar_t* name;
    const wchar_t* bits = L"";
    bool r2 = false;
} kCases[] = {
    {6, 0, kStation, kX86, 0, 2, L"Windows VistaHome Basic Edition", L", 32-bit"},
    {6, 0, kServer, kItanium, 0, 0, L"Windows Server 2008"},
    {6, 1, kStation, kAmd64, 0, 1, L"Windows 7Ultimate Edition", L", 64-bit"},
    {6, 1, kServer, kX86, 0, 0, L"Windows Server 2008 R2", L", 32-bit"},
    {6, 2, kStation, kAmd64, 0, 48, L"Windows 8Professional", L", 64-bit"},
    {6, 2, 2, kAmd64, 0, 5, L"Windows Server 2012", L", 64-bit"},
    {6, 3, kStation, kX86, 0, 101, L"", L", 32-bit"},
    {5, 2, kServer, kX86, 0x2000, 0, L"Windows Server 2003 R2, Standard Edition", L"", true},
    {5, 2, kServer, kX86, 0xA400, 0, L"Windows Storage Server 2003Web Edition"},
    {5, 2, kServer, kX86, 0x8002, 0, L"Windows Home ServerEnterprise Edition"},
    {5, 2, kStation, kAmd64, 0, 0, L"Windows XP Professional x64 Edition"},
    {5, 2, kStation, kX86, 0x82, 0, L"Windows Server 2003, "},
    {5, 2, kServer, kItanium, 0x82, 0, L"Windows Server 2003, Datacenter Edition for Itanium-based Systems"},
    {5, 2, kServer, kItanium, 0x2, 0, L"Windows Server 2003, Enterprise Edition for Itanium-based Systems"},
    {5, 2, kServer, kItanium, 0, 0, L"Windows Server 2003, "},
    {5, 2, kServer, kAmd64, 0x82, 0, L"Windows Server 2003, Datacenter x64 Edition"},
    {5, 2, kServer, kAmd64, 0x2, 0, L"Windows Server 2003, Enterprise x64 Edition"},
    {5, 2, kServer, kAmd64, 0, 0, L"Windows Server 2003, Standard x64 Edition"},
    {5, 2, kServer, kX86, 0x4082, 0, L"Windows Server 2003, Compute Cluster Edition"},
    {5, 2, kServer, kX86, 0x82, 0, L"Windows Server 2003, Datacenter Edition"},
    {5, 1, kStation, kX86, 0x200, 0, L"Windows XP Home Edition"},
    {5, 1, kServer, kX86, 0, 0, L"Windows XP Professional"},
    {5, 0, kStation, kX86, 0x82, 0, L"Windows 2000 Professional"},
    {5, 0, kServer, kX86, 0x2, 0, L"Windows 2000 Advanced Server"},
    {5, 0, kServer, kX86, 0x82, 0, L"Windows 2000 Datacenter Server"},
    {5, 0, kServer, kX86, 0, 0, L"Windows 2000 Server"}};

}  // namespace

TEST(OsDescription, TellsEachSystemByItsFactsAndItsServicePackAloneOfOthers) {
    for (const auto& c : kCases) {
        const ql::OsFacts facts = {2,      c.major,        c.minor,   77,   c.suite,
                                   c.type, c.architecture, c.edition, c.r2, L""};
        EXPECT_EQ(std::wstring(L"Microsoft ") + c.name + L" (build 77)" + c.bits, ql::DescribeOs(facts));
    }
    EXPECT_EQ(L" (build 77)", ql::DescribeOs({2, 4, 0, 77, 0, kStation, kX86, 0, false, L""}));
    EXPECT_EQ(L" B  (build 9)", ql::DescribeOs({1, 4, 10, 9, 0, 0, 0, 0, false, L"B "}));
    EXPECT_EQ(L"Microsoft Windows XP Professional Service Pack 3 (build 2600)",
              ql::DescribeOs({2, 5, 1, 2600, 0, 1, 0, 0, false, L"Service Pack 3"}));
}
