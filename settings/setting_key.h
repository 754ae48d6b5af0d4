#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "text/unit_block.h"

namespace ql {

// Stands between section and entry in the key of a registry-backed setting.
inline constexpr std::wstring_view kKeySeparator = L"<-^->";

// Another one in each process, so that nobody can make a document whose keys all fall into one place.
extern const std::uint32_t g_hashSeed;

// Sixteen bytes a round: each half becomes the product of its own halves, which the next round is mixed with.
class KeyHash {
  public:
    explicit KeyHash(std::uint32_t seed) noexcept : state_{seed, ~seed, seed, ~seed} {}

    // The last bytes of a round may have been in the one before; so the length counts too.
    KeyHash& Add(std::wstring_view text) noexcept {
        const auto* const bytes = reinterpret_cast<const char*>(text.data());
        const auto size = static_cast<std::uint32_t>(text.size() * sizeof(wchar_t));
        if (size < sizeof(Round)) {
            Mix(Short(bytes, size));
        } else {
            for (std::uint32_t at = 0; at + sizeof(Round) < size; at += sizeof(Round))
                Mix(At<Round>(bytes + at));
            Mix(At<Round>(bytes + size - sizeof(Round)));
        }
        state_ ^= Round{size};
        return *this;
    }
    // Of both, whose rounds the processor calculates side by side.
    static std::uint32_t Of(const KeyHash& one, const KeyHash& other) noexcept {
        const Round sum = one.state_ + other.state_;
        const Round halves = sum ^ __builtin_shufflevector(sum, sum, 2, 3, 0, 1);
        return halves[0] ^ halves[1];
    }

  private:
    using Round = std::uint32_t __attribute__((vector_size(16)));

    template <class Piece>
    static Piece At(const char* bytes) noexcept {
        Piece piece;
        std::memcpy(&piece, bytes, sizeof piece);
        return piece;
    }

    // The first and the last piece, which are all of a text of up to two; a call that copies takes longer.
    template <class Piece>
    static Round Ends(const char* bytes, std::size_t size) noexcept {
        const std::uint64_t ends[] = {At<Piece>(bytes), At<Piece>(bytes + size - sizeof(Piece))};
        return std::bit_cast<Round>(ends);
    }
    static Round Short(const char* bytes, std::size_t size) noexcept {
        if (size >= sizeof(std::uint64_t)) return Ends<std::uint64_t>(bytes, size);
        if (size >= sizeof(std::uint32_t)) return Ends<std::uint32_t>(bytes, size);
        return size > 0 ? Ends<std::uint16_t>(bytes, size) : Round{};
    }

    void Mix(Round added) noexcept {
        const Round constants{0x53c5ca59, 0x74743c1b, 0x9e3779b9, 0x85ebca6b};
        state_ = Products(state_ ^ constants ^ added);
    }

    static Round Products(Round round) noexcept {
        const auto factors = std::bit_cast<__m128i>(round);
        return std::bit_cast<Round>(_mm_mul_epu32(factors, _mm_srli_epi64(factors, 32)));
    }

    Round state_;
};

template <class Chunk>
bool AreSame(Chunk a, Chunk b) noexcept {
    return a == b;
}
inline bool AreSame(Block a, Block b) noexcept {
    return FirstOf(std::bit_cast<Block>(a != b)) == kBlockUnits;
}

// The last chunk may have been looked at before. A call of the library's comparison would take longer.
template <class Chunk>
bool SameByChunks(const wchar_t* a, const wchar_t* b, std::size_t count) noexcept {
    constexpr std::size_t kUnits = sizeof(Chunk) / sizeof(wchar_t);
    const auto same = [&](std::size_t at) {
        Chunk first, second;
        std::memcpy(&first, a + at, sizeof first);
        std::memcpy(&second, b + at, sizeof second);
        return AreSame(first, second);
    };
    for (std::size_t at = 0; at + kUnits < count; at += kUnits) {
        if (!same(at)) return false;
    }
    return same(count - kUnits);
}

inline bool SameUnits(const wchar_t* a, const wchar_t* b, std::size_t count) noexcept {
    if (count >= kBlockUnits) return SameByChunks<Block>(a, b, count);
    if (count >= kBlockUnits / 2) return SameByChunks<std::uint64_t>(a, b, count);
    return count == 0 || SameByChunks<Unit>(a, b, count);
}

// A setting's key: a section and an entry with the separator between them, or a text that has none. It is
// hashed and compared by its pieces where they stand, so that nothing is copied to look for a setting. The
// texts that it is made of must outlive it.
class SettingKey {
  public:
    explicit SettingKey(std::wstring_view text) noexcept { Split(text); }
    // A cached reading is little more than this.
    [[gnu::always_inline]] SettingKey(const wchar_t* section, const wchar_t* entry) {
        if (section) section_ = {section, TextLength(section)};
        separatorSize_ = kKeySeparator.size();
        if (entry) entry_ = {entry, TextLength(entry)};
        hash_ = Hash();
        if (MayHoldSeparator(section_) && section_.find(kKeySeparator) != std::wstring_view::npos)
            JoinAndSplit();
    }
    SettingKey(const SettingKey&) = delete;
    SettingKey& operator=(const SettingKey&) = delete;

    std::uint32_t hash() const noexcept { return hash_; }
    std::size_t size() const noexcept { return sectionSize() + separatorSize_ + entry_.size(); }
    std::size_t sectionSize() const noexcept { return section_.size(); }  // all of it without a separator

    // The key of so many units, so many of them in its section; then what is between the pieces is the same.
    bool Is(const wchar_t* units, std::size_t sectionSize, std::size_t size) const noexcept {
        return sectionSize == section_.size() && size == this->size() &&
               SameUnits(units, section_.data(), sectionSize) &&
               SameUnits(units + size - entry_.size(), entry_.data(), entry_.size());
    }
    void CopyTo(wchar_t* out) const noexcept {
        for (const std::wstring_view piece : {section_, kKeySeparator.substr(0, separatorSize_), entry_})
            out = std::copy(piece.begin(), piece.end(), out);
    }

  private:
    // Told quickly: hardly any section is looked at once more.
    static bool MayHoldSeparator(std::wstring_view text) noexcept {
        const wchar_t* const end = text.data() + text.size();
        return FindUnit(text.data(), end, [](auto unit) { return unit == Unit{kKeySeparator[0]}; }) != end;
    }

    // At the first separator, so that the same text has the same pieces however it came to be.
    void Split(std::wstring_view text) noexcept {
        const std::size_t end = std::min(text.find(kKeySeparator), text.size());
        section_ = text.substr(0, end);
        separatorSize_ = std::min(text.size() - end, kKeySeparator.size());
        entry_ = text.substr(end + separatorSize_);
        hash_ = Hash();
    }

    std::uint32_t Hash() const noexcept {
        return KeyHash::Of(KeyHash(g_hashSeed).Add(section_), KeyHash(g_hashSeed + 1).Add(entry_));
    }

    // For a section that holds a separator itself.
    void JoinAndSplit() {
        joined_ = std::make_unique<std::wstring>(size(), L'\0');
        CopyTo(joined_->data());
        Split(*joined_);
    }

    std::wstring_view section_, entry_;
    std::size_t separatorSize_;
    std::uint32_t hash_;
    std::unique_ptr<std::wstring> joined_;
};

}  // namespace ql
