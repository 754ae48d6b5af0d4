#include "rw/collectable.h"

#include <algorithm>
#include <compare>
#include <cstdint>
#include <functional>

#include "platform/failure.h"
#include "rw/file.h"
#include "rw/virtual_streams.h"

namespace {

template <class Text>
int Sign(const Text& a, const Text& b) {
    const auto order = a <=> b;
    return std::is_lt(order) ? -1 : std::is_gt(order) ? 1 : 0;
}

template <class Object, class... Arguments>
RWCollectable* Made(const Arguments&... arguments) {
    return ql::FailureIfThrown(nullptr, [&] { return new Object(arguments...); });
}

// Reads a text whose length comes from a stream that may lie: memory grows only as bytes really arrive.
bool ReadCounted(RWvistream& stream, std::uint32_t length, std::string& text) {
    constexpr std::uint32_t kChunk = 64 * 1024;
    while (text.size() < length) {
        const std::size_t start = text.size();
        const std::size_t count = std::min<std::size_t>(length - start, kChunk);
        text.resize(start + count);
        if (!stream.get(text.data() + start, count).good()) return false;
    }
    return true;
}

}  // namespace

RWCollectable* RWCollectable::newSpecies() const {
    return Made<RWCollectable>();
}

RWCollectable* RWCollectable::copy() const {
    return Made<RWCollectable>(*this);
}

RWClassId RWCollectable::isA() const {
    return kRWCollectable;
}

RWCollectable::~RWCollectable() = default;

std::size_t RWCollectable::binaryStoreSize() const {
    return 0;
}

int RWCollectable::compareTo(const RWCollectable* other) const {
    if (this == other) return 0;
    return std::less<const RWCollectable*>()(this, other) ? -1 : 1;
}

unsigned RWCollectable::hash() const {
    return static_cast<unsigned>(std::hash<const RWCollectable*>()(this));
}

bool RWCollectable::isEqual(const RWCollectable* other) const {
    return this == other;
}

void RWCollectable::restoreGuts(RWvistream&) {}

void RWCollectable::restoreGuts(RWFile& file) {
    RWFileIstream stream(file);
    restoreGuts(stream);
}

void RWCollectable::saveGuts(RWvostream&) const {}

void RWCollectable::saveGuts(RWFile& file) const {
    RWFileOstream stream(file);
    saveGuts(stream);
}

RWCollectable* RWCollectableString::newSpecies() const {
    return Made<RWCollectableString>();
}

RWCollectable* RWCollectableString::copy() const {
    return Made<RWCollectableString>(*this);
}

std::size_t RWCollectableString::binaryStoreSize() const {
    return sizeof(std::uint32_t) + length();
}

int RWCollectableString::compareTo(const RWCollectable* other) const {
    const auto* text = dynamic_cast<const RWCollectableString*>(other);
    return text ? Sign<RWCString>(*this, *text) : RWCollectable::compareTo(other);
}

unsigned RWCollectableString::hash() const {
    return static_cast<unsigned>(std::hash<std::string_view>()(*this));
}

bool RWCollectableString::isEqual(const RWCollectable* other) const {
    const auto* text = dynamic_cast<const RWCollectableString*>(other);
    return text && str() == text->str();
}

void RWCollectableString::restoreGuts(RWvistream& stream) {
    std::uint32_t length = 0;
    std::string text;
    if (!(stream >> length).good()) return;
    if (!ql::FailureIfThrown(false, [&] { return ReadCounted(stream, length, text); })) return stream.fail();
    RWCString::operator=(std::move(text));
}

void RWCollectableString::saveGuts(RWvostream& stream) const {
    stream << static_cast<std::uint32_t>(length());
    stream.put(data(), length());
}

RWCollectable* RWCollectableWString::newSpecies() const {
    return Made<RWCollectableWString>();
}

RWCollectable* RWCollectableWString::copy() const {
    return Made<RWCollectableWString>(*this);
}

int RWCollectableWString::compareTo(const RWCollectable* other) const {
    const auto* text = dynamic_cast<const RWCollectableWString*>(other);
    return text ? Sign<RWWString>(*this, *text) : RWCollectable::compareTo(other);
}

unsigned RWCollectableWString::hash() const {
    return static_cast<unsigned>(std::hash<std::wstring_view>()(view()));
}

bool RWCollectableWString::isEqual(const RWCollectable* other) const {
    const auto* text = dynamic_cast<const RWCollectableWString*>(other);
    return text && str() == text->str();
}
