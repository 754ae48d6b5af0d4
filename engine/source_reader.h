#pragma once

#include <optional>
#include <vector>

#include "engine/disk_items.h"
#include "engine/file_access.h"
#include "engine/ordered_work.h"
#include "engine/windows_files.h"

namespace ql::zip {

// Reads what goes into an archive, item by item. To open a file takes far longer than to read a small one:
// the small ones ahead are opened and read on all cores. In bounded memory. Belongs to one thread.
class SourceReader {
  public:
    SourceReader(std::vector<const DiskItem*> items, Patience& patience);

    // The contents of the next item, until the next call; a folder has none. Throws kSourceMissing and
    // kReadFailed, and goes on with the item behind.
    InputFile& Next();

  private:
    // A small file on its way.
    struct Contents {
        struct Tool {};
        void Do(Tool& none) noexcept;

        const DiskItem* item;
        bool isWhole;  // it was there, free and small
        std::size_t size;
        Bytes bytes;
    };

    void ReadAhead();
    const Contents* TakeContents();

    const std::vector<const DiskItem*> items_;
    Patience& patience_;
    std::size_t next_ = 0, ahead_ = 0;
    std::unique_ptr<Contents> contents_;
    std::optional<MemoryInput> memory_;
    std::optional<WindowsInput> file_;
    OrderedWork<Contents> files_;  // the last: its threads use the others
};

}  // namespace ql::zip
