#pragma once

#include <array>
#include <cstddef>

#include "platform/export.h"
#include "rw/wide_string.h"

// Where a preference comes from, for diagnosis: every place that may hold it, and the one that answers.

// The places, in the order in which they are asked. A thread whose context has a store of its own asks that
// and not the global store; what neither knows yet is read from the registry.
enum class PreferenceLayer { Context, Global, User, Machine, Default };
inline constexpr std::size_t kPreferenceLayers = static_cast<std::size_t>(PreferenceLayer::Default) + 1;

// What a layer's value is.
enum class PreferenceType { None, Text, Integer, Boolean, Unreadable };

// What one layer holds.
struct PreferenceInLayer {
    PreferenceType type = PreferenceType::None;  // None: the layer has no such value
    RWWString value;  // as text: a number in decimal, "True" or "False"; of an unreadable one, what it is
};

// What all layers hold, and which of them answers.
struct PreferenceOrigin {
    std::array<PreferenceInLayer, kPreferenceLayers> layers;  // by PreferenceLayer
    PreferenceLayer winner = PreferenceLayer::Default;  // that of a layer without the value when none has it

    // By its layer, which must be one of those.
    const PreferenceInLayer& operator[](PreferenceLayer layer) const noexcept {
        return layers[static_cast<std::size_t>(layer)];
    }
};

// Tells of a section and entry what each layer holds, and which one answers the calling thread now. Changes
// nothing: no store learns the value. Unreadable is what no accessor finds: a text that fills more than 512
// units, or another type of more than four bytes. A store that knows a preference as absent leaves the
// default to win, whatever the registry holds by now. The default is the one that settings/preference_keys.h
// has for the entry, not one that an earlier reader left in the store. Layers for which memory is too short
// are empty. Safe on any thread.
QL_API PreferenceOrigin FindPreference(const wchar_t* section, const wchar_t* entry) noexcept;
