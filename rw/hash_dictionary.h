#pragma once

#include <cstddef>
#include <unordered_map>

#include "platform/export.h"
#include "rw/collectable.h"

// Maps collectable keys to collectable values by the keys' own hash and isEqual, so that any key which hashes
// alike and is equal finds an entry. A null key is in no dictionary. Holds pointers and does not own what
// they point to, except through clearAndDestroy. Copying throws std::bad_alloc when memory ends.
class QL_API RWHashDictionary : public RWCollectable {
    struct KeyHash {
        std::size_t operator()(const RWCollectable* key) const { return key->hash(); }
    };
    struct KeyEqual {
        bool operator()(const RWCollectable* a, const RWCollectable* b) const { return a->isEqual(b); }
    };
    using Map = std::unordered_map<RWCollectable*, RWCollectable*, KeyHash, KeyEqual>;

  public:
    RWHashDictionary() = default;

    std::size_t entries() const noexcept { return map_.size(); }  // how many
    RWCollectable* findValue(const RWCollectable* key) const;     // null when absent

    // Answers the key, or null when it is null, an equal one is present already (which is then kept), or
    // memory ends.
    RWCollectable* insertKeyAndValue(RWCollectable* key, RWCollectable* value);

    // Takes the entry out and answers its key, the value in the out-parameter, both now the caller's; null
    // when absent (the out-parameter is then null too).
    RWCollectable* removeKeyAndValue(const RWCollectable* key, RWCollectable*& value);

    void clearAndDestroy();  // deletes every key and every value

    // Entries (key first, value second) in no particular order.
    Map::const_iterator begin() const noexcept { return map_.begin(); }
    Map::const_iterator end() const noexcept { return map_.end(); }

    RWCollectable* newSpecies() const override;
    RWCollectable* copy() const override;  // the same keys and values, not copies of them
    RWClassId isA() const override { return kRWHashDictionary; }

  private:
    Map::const_iterator Find(const RWCollectable* key) const;

    Map map_;
};
