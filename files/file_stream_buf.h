#pragma once

#include <ext/stdio_filebuf.h>

#include <optional>

#include "files/file.h"
#include "names/file_name.h"
#include "platform/export.h"

constexpr unsigned short OPEN_CREATE_MISSING = 32;  // for CFileStreamBuf, beside the flags of files/file.h

// A stream buffer over a file named by a QLFileName, for std::istream and std::ostream; binary, of bytes.
// Destruction closes the file. Use one object from one thread at a time.
class QL_API CFileStreamBuf : public __gnu_cxx::stdio_filebuf<char> {
  public:
    CFileStreamBuf() = default;
    ~CFileStreamBuf() override;

    // Closes what was open. Opens for reading and writing, for writing (which cuts an existing file off, as
    // streams do) or for reading. A missing file is created only when OPEN_CREATE_MISSING is given, and then
    // exists even if opening it fails. False when the file cannot be opened or memory ends, which may be
    // after it was cut off; the name is kept, as QLFile keeps it, unless the file was missing and not to be
    // created.
    bool Open(const QLFileName& name, unsigned short flags);

    // False only when a recorded size was to be applied and the file could not be opened for that. Kept on
    // purpose: that bytes were lost, on a full disk say, it does not tell, so call Flush first. Closing what
    // is closed does nothing.
    bool Close();

    // Records a size in bytes that the file is cut or extended (with zeros) to, as far as the disk has room,
    // when it is closed; a negative size does neither. While nothing is open the size is that of the file
    // opened next, and is forgotten when the opening fails.
    void ChangeSize(long size) { size_ = size; }

    // Hands what was written to the system. False when bytes were lost since the opening or the last Flush.
    bool Flush();

    // In bytes from the start; -1 when it is not known, and where a long cannot hold it (from 2 GiB on).
    long GetFilePos();
    long long GetFilePos64();  // wherever it is

    const QLFileName& GetFileName() const noexcept { return fileName_; }  // as Open keeps it

  protected:
    // As every stream buffer has them; bytes that the system does not take are remembered for Flush.
    int_type overflow(int_type unit = traits_type::eof()) override;
    std::streamsize xsputn(const char* bytes, std::streamsize count) override;

  private:
    bool Attach(int descriptor, std::ios_base::openmode mode);
    bool ApplySize();

    QLFileName fileName_;
    std::optional<long> size_;
    bool lostBytes_ = false;
};
