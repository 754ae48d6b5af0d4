#include "rw/hash_dictionary.h"

namespace {

// A look-up changes nothing, but the map's key type is what it stores.
RWCollectable* LookupKey(const RWCollectable* key) {
    return const_cast<RWCollectable*>(key);
}

}  // namespace

RWCollectable* RWHashDictionary::findValue(const RWCollectable* key) const {
    const auto entry = map_.find(LookupKey(key));
    return entry == map_.end() ? nullptr : entry->second;
}

RWCollectable* RWHashDictionary::insertKeyAndValue(RWCollectable* key, RWCollectable* value) {
    return map_.emplace(key, value).second ? key : nullptr;
}

RWCollectable* RWHashDictionary::removeKeyAndValue(const RWCollectable* key, RWCollectable*& value) {
    value = nullptr;
    const auto entry = map_.find(LookupKey(key));
    if (entry == map_.end()) return nullptr;
    RWCollectable* found = entry->first;
    value = entry->second;
    map_.erase(entry);
    return found;
}

void RWHashDictionary::clearAndDestroy() {
    Map doomed;
    doomed.swap(map_);
    for (const auto& [key, value] : doomed) {
        delete value;
        delete key;
    }
}

RWCollectable* RWHashDictionary::newSpecies() const {
    return new RWHashDictionary;
}

RWCollectable* RWHashDictionary::copy() const {
    return new RWHashDictionary(*this);
}
