#pragma once

#include "names/file_name.h"
#include "platform/export.h"

// Open flags, combinable.
enum QLFileFlags : unsigned short {
    CREATE_READ_ONLY = 1,  // a file that the call creates may only be read later
    OPEN_READ = 2,         // without this and the next: for reading
    OPEN_WRITE = 4,
    OPEN_NO_SHARE_READ = 8,   // others may not read meanwhile
    OPEN_NO_SHARE_WRITE = 16  // others may not write meanwhile
};

// A binary file named by a QLFileName. Owns the open file and closes it. Results are 1 for success and 0 for
// failure, of which nothing else tells the reason. Use one object from one thread at a time.
class QL_API QLFile {
  public:
    QLFile() noexcept = default;
    // A copy shares the open file and its position, and closes its own hold of it.
    QLFile(const QLFile& other);
    QLFile& operator=(const QLFile& other);
    ~QLFile();

    // Both close what was open. The name is kept even if the file cannot be opened: through its text, as
    // names are assigned, but one that its text does not say, such as a walk's "rep.doc#1", as it is; null
    // when memory ends, so that Delete and Rename fail. Kept on purpose: Create does not cut off an existing
    // file; it opens it at its start.
    int Open(unsigned short flags, const QLFileName& name);
    int Create(unsigned short flags, const QLFileName& name);

    // `got` and `done` are the bytes moved. At the end of the file Read moves fewer than `count`, at last
    // none; on a full disk Write moves fewer, or fails when not one more fits. On failure they stay as they
    // were. Null pointers and negative counts fail.
    int Read(unsigned char* buffer, int count, int* got);
    int Write(unsigned char* buffer, int count, int* done);
    int
    Flush();  // has the system put what was written onto the disk; 1 too when the file is open for reading
    int Close();   // 0 when it was closed already
    int Delete();  // closes the file first

    // Renames the named file on the disk; the object takes the new name over when `adoptName` is set. Fails
    // while the file is open, by this object too.
    int Rename(const QLFileName& newName, int adoptName);

    // Whether it is open; the file may be gone from the disk all the same.
    int IsOpen() const noexcept { return handle_ != kClosed; }
    operator int() const noexcept { return IsOpen(); }
    operator const void*() const noexcept { return IsOpen() ? this : nullptr; }
    explicit operator bool() const noexcept { return IsOpen() != 0; }
    // The name last opened, created or adopted, also when that failed or it is closed.
    const QLFileName& GetFileName() const noexcept { return fileName_; }

  private:
    static constexpr int kClosed = -1;

    int OpenWith(int creation, unsigned short flags, const QLFileName& name);

    int handle_ = kClosed;  // of the C run time
    QLFileName fileName_;
};
