#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

// A file of the test's own, which is not there until the test makes it and is gone after it.
class TemporaryFile {
  public:
    explicit TemporaryFile(const std::string& name)
        : path_(std::filesystem::temp_directory_path() / ("quillet_rw_" + name)) {
        Remove();
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() { Remove(); }

    std::wstring Path() const { return path_.wstring(); }

    void Fill(std::string_view bytes) const { std::ofstream(path_, std::ios::binary) << bytes; }
    std::string Content() const {
        std::ifstream file(path_, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

  private:
    void Remove() const {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    std::filesystem::path path_;
};
