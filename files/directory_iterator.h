#pragma once

#include <memory>

#include "names/file_name.h"
#include "platform/export.h"

// Walks the entries of a directory that match a pattern such as C:\Files\*.qft. The entries "." and ".." are
// left out; subdirectories are entries, and are not entered. In the order of the file system. What changes in
// the directory meanwhile may be missed or seen. Moves, and is not copied. Use one object from one thread at a
// time.
//
// Kept on purpose: entries are read as file names are (names/file_name.h), so that references of the form
// %NAME% in them are expanded and what follows a "#" behind the last dot becomes a tail.
class QL_API CDirectoryIterator {
  public:
    CDirectoryIterator() noexcept;
    CDirectoryIterator(CDirectoryIterator&& other) noexcept;
    CDirectoryIterator& operator=(CDirectoryIterator&& other) noexcept;
    virtual ~CDirectoryIterator();

    // Each sets `out` to an entry, in the directory as the pattern names it, and answers true; false after
    // the last one, with `out` as it was. First starts anew. A pattern that matches nothing, and a directory
    // that is missing, have no entries. Other parts of `out`, such as its tail, stay as they are.
    bool First(const QLFileName& pattern, QLFileName* out);
    bool Next(QLFileName* out);

    bool IsDir() const noexcept;  // whether the current entry is a directory; false when there is none

  private:
    struct Search;
    std::unique_ptr<Search> search_;
};

// Removes the files of a directory, read-only ones too, and then the directory. Subdirectories are not
// entered: a directory that holds any stays, without its files. Links to files are removed, not followed; links
// to directories count as subdirectories. When the directory is the current one, the process moves to the
// temporary directory. Nothing is reported, and a null or empty text removes nothing. Any thread.
QL_API void DeleteDirAndContents(const wchar_t* directory);
