#include "settings/settings_dictionary.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <new>
#include <utility>

namespace ql {

namespace {

constexpr std::size_t kFirstPlaces = 16;
constexpr unsigned kLongestKey = (1u << 29) - 1;

std::uint32_t MakeSeed() noexcept {
    const auto moment =
        static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
    const auto place = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(&moment));
    const std::uint64_t spread =
        (moment ^ place << 32) * 0x9e3779b97f4a7c15u;  // 2 to the 64th by the golden ratio
    return static_cast<std::uint32_t>(spread >> 32);
}

}  // namespace

const std::uint32_t g_hashSeed = MakeSeed();

void Setting::Deleter::operator()(Setting* setting) const noexcept {
    ::operator delete(setting);
}

Setting::Owner Setting::Make(const SettingKey& key, const SettingContent& content) {
    if (key.size() > kLongestKey) throw std::bad_alloc();
    void* const block =
        ::operator new(sizeof(Setting) + (key.size() + content.text.size()) * sizeof(wchar_t));
    return Owner(new (block) Setting(key, content));
}

Setting::Setting(const SettingKey& key, const SettingContent& content) noexcept
    : sectionLength_(static_cast<unsigned>(key.sectionSize())),
      keyLength_(static_cast<unsigned>(key.size()) & kLongestKey),
      type_(static_cast<unsigned>(content.type) & 3u),
      isSet_(content.isSet),
      textLength_(static_cast<unsigned>(content.text.size())) {
    key.CopyTo(units());
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
    for (const Place& place : places_) Setting::Deleter()(place.setting);
}

// The key's, or the free one where it would stand; null when there are none. A call of it would show in the
// time of a reading.
[[gnu::always_inline]] inline SettingsDictionary::Place* SettingsDictionary::PlaceOf(
    const SettingKey& key) noexcept {
    if (places_.empty()) return nullptr;
    std::size_t at = key.hash() & (places_.size() - 1);
    while (places_[at].setting && !(places_[at].hash == key.hash() && places_[at].setting->Has(key)))
        at = Next(at);
    return &places_[at];
}

const Setting* SettingsDictionary::Find(const SettingKey& key) const noexcept {
    const Place* const place = const_cast<SettingsDictionary*>(this)->PlaceOf(key);  // which changes nothing
    return place ? place->setting : nullptr;
}

bool SettingsDictionary::Assign(const SettingKey& key, const SettingContent& content) {
    Place* place = PlaceOf(key);
    Setting* const known = place ? place->setting : nullptr;
    if (known && known->type() != content.type) return false;
    if (known && known->Assign(content)) return true;
    Setting::Owner made = Setting::Make(key, content);
    if (known) {
        const Setting::Owner replaced(std::exchange(place->setting, made.release()));
        return true;
    }
    MakeRoomForOne();
    *PlaceOf(key) = {key.hash(), made.release()};
    ++count_;
    return true;
}

void SettingsDictionary::MakeRoomForOne() {
    if (2 * (count_ + 1) <= places_.size()) return;
    std::vector<Place> former(std::max(kFirstPlaces, 2 * places_.size()));
    former.swap(places_);
    for (const Place& place : former) {
        if (!place.setting) continue;
        std::size_t at = place.hash & (places_.size() - 1);
        while (places_[at].setting) at = Next(at);
        places_[at] = place;
    }
}

bool SettingsDictionary::Remove(const SettingKey& key) noexcept {
    Place* const place = PlaceOf(key);
    if (!place || !place->setting) return false;
    Setting::Deleter()(place->setting);
    CloseGapAt(static_cast<std::size_t>(place - places_.data()));
    --count_;
    return true;
}

// Those behind a gap come forward as far as their hash lets them, so that none is behind a free place.
void SettingsDictionary::CloseGapAt(std::size_t gap) noexcept {
    const std::size_t mask = places_.size() - 1;
    for (std::size_t at = Next(gap); places_[at].setting; at = Next(at)) {
        const std::size_t first = places_[at].hash & mask;
        if (((at - first) & mask) < ((at - gap) & mask)) continue;
        places_[gap] = places_[at];
        gap = at;
    }
    places_[gap].setting = nullptr;
}

std::vector<const Setting*> SettingsDictionary::Sorted() const {
    std::vector<const Setting*> settings;
    settings.reserve(count_);
    for (const Place& place : places_) {
        if (place.setting) settings.push_back(place.setting);
    }
    std::sort(settings.begin(), settings.end(),
              [](const Setting* a, const Setting* b) { return a->key() < b->key(); });
    return settings;
}

}  // namespace ql
