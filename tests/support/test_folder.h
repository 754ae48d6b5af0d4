#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "platform/win32.h"

// A folder of its own for one test, which goes away with it.
class TestFolder {
  public:
    explicit TestFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
        : path_(parent / Name()) {
        std::filesystem::create_directories(path_);
    }
    // What a process that has just ended held is free a moment later.
    ~TestFolder() {
        std::error_code ignored;
        for (int tries = 0; tries < 100 && std::filesystem::exists(path_, ignored); ++tries) {
            if (tries > 0) ::Sleep(10);
            MakeWritable();
            std::filesystem::remove_all(path_, ignored);
        }
    }
    TestFolder& operator=(TestFolder&&) = delete;

    std::wstring operator/(const wchar_t* name) const { return (path_ / name).wstring(); }
    const std::filesystem::path& path() const { return path_; }

  private:
    void MakeWritable() {
        std::error_code error;
        std::filesystem::recursive_directory_iterator entry(path_, error), end;
        for (std::error_code ignored; !error && entry != end; entry.increment(error))
            std::filesystem::permissions(*entry, std::filesystem::perms::all, ignored);
    }

    static std::string Name() {
        static int number = 0;
        return "ql_test_" + std::to_string(::GetCurrentProcessId()) + "_" + std::to_string(number++);
    }

    std::filesystem::path path_;
};

inline std::string BytesOf(const std::wstring& file) {
    std::ifstream stream(std::filesystem::path(file), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

inline void PutBytes(const std::wstring& file, const std::string& bytes) {
    std::ofstream(std::filesystem::path(file), std::ios::binary) << bytes;
}
