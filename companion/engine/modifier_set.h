#pragma once

#include "engine/usage_slots.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tamsel::engine {

/// Held modifiers, one bit each: bits 0..7 are the usages 224..231 in their order, bit 8 is fn.
using ModifierMask = std::uint16_t;

inline constexpr std::size_t modifierCount = 9;

/// The bit of a modifier key, 0 for every other key.
ModifierMask modifierBit(Slot slot);

/// The key of one bit; `bit` is 0..8.
Slot modifierSlot(std::size_t bit);

/// A set of modifier names as a trigger states it: sided names ask for that side, the generic ones
/// ("command", "shift", "option", "control") for either side or both.
class ModifierPattern final {
public:
    /// Nothing when one of the names is not a modifier's: such a trigger can never be met.
    static std::optional<ModifierPattern> parse(std::span<const std::string> names);

    /// No names at all.
    bool isEmpty() const { return m_sided == 0 && m_generic == 0; }

    /// True when exactly these modifiers are held, no more and no fewer.
    bool matches(ModifierMask held) const;

    /// The keys to hold when the set is to be produced: the generic names stand for the left side.
    ModifierMask keysToHold() const;

private:
    ModifierMask m_sided = 0;
    ModifierMask m_generic = 0; ///< the left-side bit of each generic name
};

} // namespace tamsel::engine
