#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zip/zip_records.h"

namespace ql::zip {

struct StatusCall {
    ZipStatusProc proc;
    void* userData;
};

// Of all that a call works on.
template <class Item>
std::uint64_t TotalSize(const std::vector<const Item*>& items) {
    std::uint64_t total = 0;
    for (const Item* item : items) total += item->size;
    return total;
}

// Tells the caller how far an item and the whole call are; an answer other than 0 throws kCancelled.
class CallProgress {
  public:
    // Either engine's record has the caller's two procedures.
    template <class Command>
    CallProgress(const Command& command, std::uint64_t total)
        : minor_{command.lpMinorStatus, command.lpMinorUserData},
          major_{command.lpMajorStatus, command.lpMajorUserData},
          total_(total) {}

    void Begin(const std::string& ansiName, std::uint64_t size);
    // Bytes of the item so far.
    void Reach(std::uint64_t done);

  private:
    StatusCall minor_, major_;
    std::uint64_t total_, size_ = 0, before_ = 0;
    std::string item_;
};

}  // namespace ql::zip
