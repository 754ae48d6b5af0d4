#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

// A file or folder that is to be added to an archive, and its name there.
struct Source {
    std::wstring path, name;
};

// What cannot be added, and why not.
struct Refused {
    std::wstring path, why;
};

// The full form of a path, which the system takes as it stands: no length limit. The path itself where it has
// none.
std::wstring LiteralPath(const std::wstring& path);

// The files that are to be added to an archive, in the order in which they are found.
class Sources {
  public:
    explicit Sources(std::wstring archive) : archive_(std::move(archive)) {}

    // A file; all files that fit a path with wild cards; or a folder with all below it, but for folders that
    // are links, which could lead back to where they are.
    void Add(const std::wstring& path);

    const std::vector<Source>& All() const { return all_; }
    const std::vector<Refused>& AllRefused() const { return refused_; }
    std::uint64_t Bytes() const;

  private:
    bool IsArchive(const std::wstring& path) const;
    void AddFile(const std::wstring& path, const std::wstring& name);
    void AddFitting(const std::wstring& pattern);
    void AddFolder(const std::wstring& path, const std::wstring& name);

    const std::wstring archive_;
    std::vector<Source> all_;
    std::vector<Refused> refused_;
};
