#include "settings/setting_objects.h"

namespace ql {

namespace {

// Takes the piece from the front of the text when it stands there.
bool Consume(std::wstring_view& text, std::wstring_view piece) {
    if (!text.starts_with(piece)) return false;
    text.remove_prefix(piece.size());
    return true;
}

}  // namespace

RWWString SettingKey::Text() const {
    std::wstring text;
    text.reserve(first_.size() + separator_.size() + last_.size());
    return text.append(first_).append(separator_).append(last_);
}

bool SettingKey::isEqual(const RWCollectable* other) const {
    if (other->isA() != kRWCollectableWString) return this == other;
    std::wstring_view text = static_cast<const RWCollectableWString*>(other)->view();
    return text.size() == first_.size() + separator_.size() + last_.size() && Consume(text, first_) &&
           Consume(text, separator_) && text == last_;
}

bool StoredSettingKey::isEqual(const RWCollectable* other) const {
    if (other->isA() != kRWCollectableWString) return other->isEqual(this);
    return view() == static_cast<const RWCollectableWString*>(other)->view();
}

bool ICollectableSetting::isEqual(const RWCollectable* other) const {
    return typeid(*this) == typeid(*other) &&
           key_.view() == static_cast<const ICollectableSetting*>(other)->key_.view();
}

}  // namespace ql
