#pragma once

#include <string>
#include <string_view>

#include "platform/unique_handle.h"

namespace ql::zip {

// A folder in which files are written that then come to the folder above it. To make a file under a new name
// costs a search of its folder: one in a full folder for each file, not two. It always has the same name, so
// that the next one takes over what a kill leaves; it goes with the last call that uses it.
class WorkFolder {
  public:
    explicit WorkFolder(const std::wstring& folder);
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    ~WorkFolder();

    // Empty where there could be none: something else has the name, or nobody may make folders there.
    const std::wstring& path() const { return path_; }

    // Whether a file of that name can only come while there is none.
    static bool IsNamed(std::string_view file);

  private:
    std::wstring path_;
    UniqueFileHandle hold_;
};

}  // namespace ql::zip
