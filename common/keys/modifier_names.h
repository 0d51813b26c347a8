#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tamsel {

/// The modifier keys and their names. A trigger may also hold a generic name, which stands for the
/// key of either side; a key chord takes the left one.
namespace modifierNames {

/// The keys that a modifier name can mean, by their usages: 224..231 of the Keyboard/Keypad page of
/// the USB HID Usage Tables in their order, then fn (255).
inline constexpr std::array<std::string_view, 9> keys{
    "left_control", "left_shift",    "left_option", "left_command", "right_control", "right_shift",
    "right_option", "right_command", "fn"};

/// The generic names; the left key of generic[i] is keys[i], the right one keys[i + sideDistance].
inline constexpr std::array<std::string_view, 4> generic{"control", "shift", "option", "command"};
inline constexpr std::size_t sideDistance = 4;

/// Where a name stands in `keys`, or in `generic`; nothing for any other text.
std::optional<std::size_t> indexOfKey(std::string_view name);
std::optional<std::size_t> indexOfGeneric(std::string_view name);

} // namespace modifierNames

/// Whether a key code is a modifier key's: 224..231 or 255. Caps lock is none.
constexpr bool isModifierUsage(std::uint32_t usage) {
    return (usage >= 224 && usage <= 231) || usage == 255;
}

} // namespace tamsel
