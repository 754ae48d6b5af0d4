#include "rw/hash_dictionary.h"

#include "platform/failure.h"

RWHashDictionary::Map::const_iterator RWHashDictionary::Find(const RWCollectable* key) const {
    // A look-up changes nothing, but the map's key type is what it stores.
    return key ? map_.find(const_cast<RWCollectable*>(key)) : map_.end();
}

RWCollectable* RWHashDictionary::findValue(const RWCollectable* key) const {
    const auto entry = Find(key);
    return entry == map_.end() ? nullptr : entry->second;
}

RWCollectable* RWHashDictionary::insertKeyAndValue(RWCollectable* key, RWCollectable* value) {
    const bool isTaken = key && ql::FailureIfThrown(false, [&] { return map_.emplace(key, value).second; });
    return isTaken ? key : nullptr;
}

RWCollectable* RWHashDictionary::removeKeyAndValue(const RWCollectable* key, RWCollectable*& value) {
    value = nullptr;
    const auto entry = Find(key);
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
    return ql::FailureIfThrown(nullptr, [] { return new RWHashDictionary; });
}

RWCollectable* RWHashDictionary::copy() const {
    return ql::FailureIfThrown(nullptr, [this] { return new RWHashDictionary(*this); });
}
