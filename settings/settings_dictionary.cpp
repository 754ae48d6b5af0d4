#include "settings/settings_dictionary.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace ql {

namespace {

constexpr std::size_t kFirstBuckets = 16;
constexpr unsigned kLongestKey = (1u << 29) - 1;

// Another one in each process, so that nobody can make a document whose keys all fall into one bucket.
std::uint32_t MakeSeed() noexcept {
    const auto moment =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&moment));
    const std::uint64_t spread =
        (moment ^ place << 32) * 0x9e3779b97f4a7c15u;  // 2 to the 64th by the golden ratio
    return static_cast<std::uint32_t>(spread >> 32);
}

const std::uint32_t g_seed = MakeSeed();

std::uint32_t Pair(const wchar_t* units) noexcept {
    return static_cast<std::uint16_t>(units[0]) |
           static_cast<std::uint32_t>(static_cast<std::uint16_t>(units[1])) << 16;
}

// Four units a round: the two halves of a 64-bit product go on, each mixed with two more units.
unsigned Hash(std::wstring_view text) noexcept {
    std::uint32_t low = g_seed ^ static_cast<std::uint32_t>(text.size());
    std::uint32_t high = ~g_seed;
    const auto mix = [&](std::uint32_t first, std::uint32_t second) {
        const std::uint64_t product =
            std::uint64_t{low ^ first ^ 0x53c5ca59u} * (high ^ second ^ 0x74743c1bu);
        low = static_cast<std::uint32_t>(product);
        high = static_cast<std::uint32_t>(product >> 32);
    };
    const wchar_t* next = text.data();
    std::size_t left = text.size();
    for (; left >= 4; left -= 4, next += 4) mix(Pair(next), Pair(next + 2));
    wchar_t rest[4] = {};
    std::copy_n(next, left, rest);
    mix(Pair(rest), Pair(rest + 2));
    mix(0, 0);
    return low ^ high;
}

bool SameUnits(std::wstring_view a, std::wstring_view b) noexcept {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(wchar_t)) == 0;
}

}  // namespace

void Setting::Deleter::operator()(Setting* setting) const noexcept {
    ::operator delete(setting);
}

Setting::Owner Setting::Make(std::wstring_view key, unsigned hash, const SettingContent& content) {
    if (key.size() > kLongestKey) throw std::bad_alloc();
    void* const block =
        ::operator new(sizeof(Setting) + (key.size() + content.text.size()) * sizeof(wchar_t));
    return Owner(new (block) Setting(key, hash, content));
}

Setting::Setting(std::wstring_view key, unsigned hash, const SettingContent& content) noexcept
    : hash_(hash),
      keyLength_(static_cast<unsigned>(key.size()) & kLongestKey),
      type_(static_cast<unsigned>(content.type) & 3u),
      isSet_(content.isSet),
      textLength_(static_cast<unsigned>(content.text.size())) {
    std::copy(key.begin(), key.end(), units());
    Assign(content);
}

bool Setting::Assign(const SettingContent& content) noexcept {
    if (content.type == SettingType::Text) {
        if (content.text.size() > textLength_) return false;
        std::copy(content.text.begin(), content.text.end(), units() + keyLength_);
        textLength_ = static_cast<unsigned>(content.text.size());
    } else {
        number_ = content.number;
    }
    isSet_ = content.isSet;
    return true;
}

SettingsDictionary::~SettingsDictionary() {
    for (Setting* first : buckets_) {
        while (first) {
            const Setting::Owner doomed(first);
            first = doomed->next_;
        }
    }
}

// The pointer that leads to the key's setting, or the empty one at the end of its bucket; null when there are
// no buckets.
Setting** SettingsDictionary::LinkTo(std::wstring_view key, unsigned hash) noexcept {
    if (buckets_.empty()) return nullptr;
    Setting** link = &buckets_[hash & (buckets_.size() - 1)];
    while (*link && !((*link)->hash_ == hash && SameUnits((*link)->key(), key))) link = &(*link)->next_;
    return link;
}

const Setting* SettingsDictionary::Find(const SettingKey& key) const noexcept {
    Setting* const* const link =
        const_cast<SettingsDictionary*>(this)->LinkTo(key.text(), Hash(key.text()));  // which changes nothing
    return link ? *link : nullptr;
}

bool SettingsDictionary::Assign(const SettingKey& key, const SettingContent& content) {
    const unsigned hash = Hash(key.text());
    Setting** link = LinkTo(key.text(), hash);
    Setting* const known = link ? *link : nullptr;
    if (known && known->type() != content.type) return false;
    if (known && known->Assign(content)) return true;
    Setting::Owner made = Setting::Make(key.text(), hash, content);
    if (known) {
        made->next_ = known->next_;
        const Setting::Owner replaced(known);
        *link = made.release();
        return true;
    }
    MakeRoomForOne();
    link = LinkTo(key.text(), hash);
    *link = made.release();
    ++count_;
    return true;
}

void SettingsDictionary::MakeRoomForOne() {
    if (count_ < buckets_.size()) return;
    std::vector<Setting*> buckets(std::max(kFirstBuckets, 2 * buckets_.size()));
    for (Setting* first : buckets_) {
        while (first) {
            Setting* const moved = std::exchange(first, first->next_);
            moved->next_ = std::exchange(buckets[moved->hash_ & (buckets.size() - 1)], moved);
        }
    }
    buckets_.swap(buckets);
}

bool SettingsDictionary::Remove(const SettingKey& key) noexcept {
    Setting** const link = LinkTo(key.text(), Hash(key.text()));
    if (!link || !*link) return false;
    const Setting::Owner doomed(*link);
    *link = doomed->next_;
    --count_;
    return true;
}

std::vector<const Setting*> SettingsDictionary::Sorted() const {
    std::vector<const Setting*> settings;
    settings.reserve(count_);
    for (const Setting* first : buckets_) {
        for (; first; first = first->next_) settings.push_back(first);
    }
    std::sort(settings.begin(), settings.end(),
              [](const Setting* a, const Setting* b) { return a->key() < b->key(); });
    return settings;
}

}  // namespace ql
