#pragma once

#include <filesystem>

#include "platform/unique_handle.h"

constexpr DWORD kShareNothing = 0, kShareReading = FILE_SHARE_READ,
                kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE;

// A file that is there, for what another program might do: while it is open, others may do what is shared.
inline ql::UniqueFileHandle OpenFile(const std::filesystem::path& file, DWORD share,
                                     DWORD access = GENERIC_READ) {
    return ql::UniqueFileHandle(
        ::CreateFileW(file.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
}

// A device that is always full, where the system under the tests has one.
constexpr wchar_t kFullDevice[] = L"\\\\?\\unix\\dev\\full";
#define QL_SKIP_WITHOUT_FULL_DEVICE() \
    if (!OpenFile(kFullDevice, kShareReading, GENERIC_WRITE)) GTEST_SKIP() << "there is no full device here"
