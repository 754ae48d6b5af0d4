#pragma once

#include <filesystem>
#include <string>

#include "tests/support/host_shell.h"
#include "tests/support/test_folder.h"

// A disk of 1 MB that can be filled, for its own lifetime. Only where the system below Wine lets the user
// mount one.
class SmallDisk {
  public:
    static constexpr std::size_t kSize = 1 << 20;

    SmallDisk() {
        std::filesystem::create_directory(root_);
        RunInHostShell(folder_.path().wstring(),
                       L"mount -t tmpfs -o size=1m none disk && touch disk/mounted");
        isMounted_ = ::DeleteFileW((root_ + L"\\mounted").c_str()) != FALSE;
    }
    ~SmallDisk() {
        if (isMounted_) RunInHostShell(folder_.path().wstring(), L"umount -l disk");
    }
    SmallDisk& operator=(SmallDisk&&) = delete;

    bool IsMounted() const { return isMounted_; }
    std::wstring operator/(const wchar_t* name) const { return root_ + L'\\' + name; }

    // Leaves so many bytes free, a multiple of 4096.
    void FillBut(std::size_t free) const {
        std::filesystem::remove(*this / L"filler");
        const auto available = static_cast<std::size_t>(std::filesystem::space(*this / L"filler").available);
        PutBytes(*this / L"filler", std::string(available - free, 'f'));
    }

  private:
    TestFolder folder_;
    const std::wstring root_ = folder_ / L"disk";
    bool isMounted_ = false;
};

#define QL_SKIP_UNLESS_MOUNTED(disk) \
    if (!(disk).IsMounted()) GTEST_SKIP() << "no disk can be mounted here: that takes root, below Wine"
