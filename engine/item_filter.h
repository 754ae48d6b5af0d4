#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/disk_items.h"
#include "engine/item_list.h"
#include "zip/zip_records.h"

namespace ql::zip {

// Which of the files that were found a record lets in.
class ItemFilter {
  public:
    // Throws kBadRequest for a date that is none.
    explicit ItemFilter(const ZIPCMDSTRUCT& command);
    bool Admits(const DiskItem& item) const;

  private:
    std::optional<NamePatterns> only_, without_;
    DosTime since_ = 0;
};

// Names that end in one of these are stored: suffixes with or without their dots, between any of " ,;:".
class StoredSuffixes {
  public:
    explicit StoredSuffixes(const ZIPCMDSTRUCT& command);
    bool Cover(std::u32string_view foldedName) const;

  private:
    std::vector<std::u32string> suffixes_;
};

}  // namespace ql::zip
