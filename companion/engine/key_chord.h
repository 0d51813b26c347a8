#pragma once

#include "engine/modifier_set.h"
#include "engine/usage_slots.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace tamsel::engine {

/// Keys that go down together: the modifiers first, then the others in their order.
struct KeyChord {
    /// As many as a keyboard of the boot protocol reports; further ones are left out.
    static constexpr std::size_t maxKeys = 6;

    ModifierMask modifiers = 0;
    std::array<Slot, maxKeys> keys{}; ///< noSlot after the last one

    /// The value of a key press action, "left_command+a". Modifiers without a side are the left
    /// ones, "left_bracket" and "right_bracket" the keys that the catalogue calls open_bracket and
    /// close_bracket. A name that is no key's is left out.
    static KeyChord parse(std::string_view value);

    bool isEmpty() const { return modifiers == 0 && keys[0] == noSlot; }

    /// The key that stands for the chord in reports: its first one, else its first modifier;
    /// noSlot for none.
    Slot mainKey() const;
};

} // namespace tamsel::engine
