#pragma once

#include <memory>

#include "names/file_name.h"
#include "platform/export.h"

// Walks the entries of a directory that match a pattern such as C:\Files\*.qft. The entries "." and ".." are
// left out; subdirectories are entries, and are not entered. In the order of the file system. What changes in
// the directory meanwhile may be missed or seen. A copy has no search of its own until First is called on it,
// and assigning ends the search that the object had; moving hands the search over. Use one object from one
// thread at a time.
//
// Entries are told as the disk has them: nothing in them is expanded, and "rep.doc#1" has the extension
// "doc#1". Copy construction, QLFile and the queries of QLFileName keep that; assigning a name reads its text
// anew (names/file_name.h), so hand entries on by copies.
class QL_API CDirectoryIterator {
  public:
    CDirectoryIterator() noexcept;
    // See above: copies begin without a search, moves take it along.
    CDirectoryIterator(const CDirectoryIterator& other) noexcept;
    CDirectoryIterator(CDirectoryIterator&& other) noexcept;
    CDirectoryIterator& operator=(const CDirectoryIterator& other) noexcept;
    CDirectoryIterator& operator=(CDirectoryIterator&& other) noexcept;
    virtual ~CDirectoryIterator();

    // Each sets `out` to an entry, in the directory as the pattern names it, and answers true; false after
    // the last one, with `out` as it was, and when memory ends, with `out` as it was or null. First starts
    // anew. A pattern that matches nothing, and a directory that is missing, have no entries. The tail of
    // `out` stays as it is. A null `out` is left out.
    //
    // The text of a name takes "?" and "#" behind the last dot for a tail, which no file has: the pattern of
    // QLFileName(L"C:\\Files\\*.do?") is C:\Files\*.do. SetEntry sets such a pattern as it stands:
    //     pattern.SetEntry(directory, L"*.do?");
    bool First(const QLFileName& pattern, QLFileName* out);
    bool Next(QLFileName* out);

    bool IsDir() const noexcept;  // whether the current entry is a directory; false when there is none

  private:
    struct Search;
    std::unique_ptr<Search> search_;
};

// Removes the files of a directory, read-only ones too, and then the directory. The text is a path as
// QLFileName::SetPath takes it: a reference %NAME% in it is expanded. What cannot be removed, such
// as a file in use, stays, and the directory with it. Subdirectories are not entered: a directory that holds
// any stays, without its files. Links to files are removed, not followed, where the system shows them as
// links; links to directories count as subdirectories. When the current directory is the one named, letter
// for letter but for case, the process moves to the temporary directory. Nothing is reported or thrown; when
// memory ends files may stay, and a null or empty text removes nothing. Any thread.
QL_API void DeleteDirAndContents(const wchar_t* directory);
