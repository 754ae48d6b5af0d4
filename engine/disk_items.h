#pragma once

#include <string>
#include <vector>

#include "engine/dos_time.h"
#include "platform/win32.h"

namespace ql::zip {

// A file or folder that is to go into an archive.
struct DiskItem {
    std::wstring path;
    std::string name;       // in the archive
    std::u32string folded;  // the name, case aside
    DosTime time;
    std::uint32_t attributes;
    std::uint64_t size;

    bool IsFolder() const { return name.back() == '/'; }
};

// A file or folder of that path and name; a folder's name gets its slash.
DiskItem DiskItemOf(std::wstring path, std::string name, const WIN32_FILE_ATTRIBUTE_DATA& facts);

struct ItemSearch {
    bool recurse;          // look for each name in the folders below too; take a named folder whole
    bool dropFolders;      // names in the archive have no folders
    bool addFolders;       // a folder that is taken whole is an item of its own
    bool addHiddenByCard;  // what wild cards find may be hidden or the system's
};

// The files that the names of an item list stand for, sorted by their names in the archive, each once. Throws
// kSourceMissing where a name without wild cards is not there, and kBadRequest where two files have one name.
std::vector<DiskItem> FindDiskItems(const std::vector<std::wstring>& items, const ItemSearch& search);

}  // namespace ql::zip
