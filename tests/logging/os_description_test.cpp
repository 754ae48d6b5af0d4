#include "logging/os_names.h"

#include <gtest/gtest.h>

#include "tests/support/digest.h"

namespace {

constexpr std::uint32_t kNt = 2, kStation = 1, kServer = 3, kX86 = 0, kAmd64 = 9;

}  // namespace

TEST(OsDescription, NamesWhatItsFactsTell) {
    const std::pair<ql::OsFacts, const wchar_t*> cases[] = {
        {{kNt, 6, 1, 77, 0, kServer, kAmd64, 12, false, L""},
         L"Microsoft Windows Server 2008 R2Datacenter Edition (core installation) (build 77), 64-bit"},
        {{kNt, 10, 0, 77, 0, kStation, kX86, 48, false, L""}, L"Microsoft Professional (build 77), 32-bit"},
        {{kNt, 5, 2, 77, 0x2000, kServer, kX86, 0, true, L""},
         L"Microsoft Windows Server 2003 R2, Standard Edition (build 77)"},
        {{kNt, 5, 1, 2600, 0, kStation, kX86, 0, false, L"Service Pack 3"},
         L"Microsoft Windows XP Professional Service Pack 3 (build 2600)"},
        {{kNt, 4, 0, 9, 0, kStation, kX86, 0, false, L""}, L" (build 9)"},
        {{1, 5, 1, 9, 0, kStation, kX86, 0, false, L"B "}, L" B  (build 9)"}};
    for (const auto& [facts, text] : cases) EXPECT_EQ(text, ql::DescribeOs(facts));
}

TEST(OsDescription, EverySystemKeepsItsName) {
    constexpr std::uint32_t kVersions[][2] = {{5, 0}, {5, 1}, {5, 2}, {5, 3}, {6, 0}, {6, 1}, {6, 2}, {6, 3}};
    constexpr std::uint32_t kSuites[] = {0x2, 0x82, 0x200, 0x400, 0xA400, 0x4082, 0x8002};
    std::wstring all;
    for (const auto& [major, minor] : kVersions) {
        for (const std::uint32_t type : {kStation, kServer}) {
            for (std::uint32_t architecture = 0; architecture < 10; ++architecture) {
                for (std::uint32_t edition = 0; edition < 50; ++edition)
                    all +=
                        ql::DescribeOs({kNt, major, minor, 0, 0, type, architecture, edition, false, L""}) +
                        L'\n';
                for (const std::uint32_t suite : kSuites)
                    all += ql::DescribeOs({kNt, major, minor, 0, suite, type, architecture, 0, false, L""}) +
                           L'\n';
            }
        }
    }
    EXPECT_EQ(0x4df58b702ffdea63u, DigestOf(all));
}
