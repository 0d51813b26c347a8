#pragma once

#include "keys/key_codes.h"

#include <array>
#include <cstdint>
#include <span>

namespace tamsel::keyTable {

/// The groups of the catalogue in its order; vk_none, before them, is in none.
enum class Group {
    letters,
    numbers,
    functionKeys,
    modifiers,
    controlsAndSymbols,
    arrowsAndNavigation,
    keypad,
    pcKeys,
    mediaKeys,
    international,
    other,
    mouseButtons,
};

/// The whole catalogue.
std::span<const KeyCodeDef> all();
std::span<const KeyCodeDef> group(Group group);

/// A key of the platform's published virtual key codes beside its usage.
struct VirtualKey {
    std::uint8_t usage;
    std::uint8_t virtualKeyCode;
};
std::span<const VirtualKey> virtualKeys();

} // namespace tamsel::keyTable
