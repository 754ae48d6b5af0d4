#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace ql {

// What the description is made of, as the system's calls answer it.
struct OsFacts {
    std::uint32_t platform;  // 2 is NT
    std::uint32_t major, minor, build;
    std::uint32_t suite;         // bits
    std::uint32_t productType;   // 1 is a workstation
    std::uint32_t architecture;  // 0 x86, 6 Itanium, 9 AMD64
    std::uint32_t edition;       // what GetProductInfo tells; 0 where it is missing
    bool isServerR2;             // of version 5.2
    std::wstring servicePack;
};

// Nothing when the system does not tell its version.
std::optional<OsFacts> ReadOsFacts();

}  // namespace ql
