#pragma once

#include <cstddef>
#include <cstdint>

namespace tamsel::engine {

/// A dense number for each code that the engine can hold, so that its tables are plain arrays:
/// 1..255 are the HID keyboard usages and fn, 256..287 the mouse buttons 0x1001..0x1020.
/// Codes: USB HID Usage Tables, Keyboard/Keypad page (0x07); the rest as in KeyCodes.
using Slot = std::uint16_t;

inline constexpr Slot noSlot = 0;
inline constexpr std::size_t slotCount = 288;

namespace detail {
inline constexpr std::uint32_t keyboardEnd = 256;
inline constexpr std::uint32_t firstButton = 0x1001;
inline constexpr std::uint32_t buttonCount = 32;
} // namespace detail

/// noSlot for "no key" and for every code outside the two ranges.
constexpr Slot slotOf(std::uint32_t usage) {
    if (usage < detail::keyboardEnd)
        return static_cast<Slot>(usage);
    if (usage - detail::firstButton < detail::buttonCount)
        return static_cast<Slot>(detail::keyboardEnd + (usage - detail::firstButton));
    return noSlot;
}

constexpr std::uint32_t usageOf(Slot slot) {
    return slot < detail::keyboardEnd ? slot : detail::firstButton + (slot - detail::keyboardEnd);
}

static_assert(slotOf(0x1000) == noSlot && slotOf(0x1021) == noSlot);
static_assert(slotOf(0x1020) == slotCount - 1 && usageOf(slotCount - 1) == 0x1020);

} // namespace tamsel::engine
