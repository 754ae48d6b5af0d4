#pragma once

#include <ext/stdio_filebuf.h>

#include <optional>

#include "files/file.h"
#include "names/file_name.h"
#include "platform/export.h"

constexpr unsigned short OPEN_CREATE_MISSING = 32;  // for CFileStreamBuf, beside the flags of files/file.h

// A stream buffer over a file named by a QLFileName, for std::istream and std::ostream; binary, of bytes.
// Closes the file, and applies a recorded size, when it is destroyed. Use one object from one thread at a
// time.
class QL_API CFileStreamBuf : public __gnu_cxx::stdio_filebuf<char> {
  public:
    CFileStreamBuf() = default;
    ~CFileStreamBuf() override;

    // Closes what was open. Opens for reading and writing, for writing (which cuts an existing file off, as
    // streams do) or for reading. A missing file is created only when OPEN_CREATE_MISSING is given, and then
    // exists even if opening it fails. False when the file cannot be opened; the name is kept unless it was
    // missing and not to be created.
    bool Open(const QLFileName& name, unsigned short flags);

    // False only when a recorded size was to be applied and the file could not be opened for that.
    bool Close();

    // Cuts or extends the file, with zeros, to so many bytes when it is closed; a negative size does neither.
    void ChangeSize(long size) { size_ = size; }

    bool Flush() { return pubsync() == 0; }  // to the system
    long GetFilePos();                       // in bytes from the start; -1 when that is not known
    const QLFileName& GetFileName() const noexcept { return fileName_; }

  private:
    bool ApplySize();

    QLFileName fileName_;
    std::optional<long> size_;
};
