#pragma once

#include <cstdint>
#include <optional>

namespace tamsel {

enum class ShiftKey : std::uint8_t { up, held };

/// How a keyboard types one character.
struct TypedKey {
    std::uint32_t usage = 0; ///< of the Keyboard/Keypad page
    ShiftKey shift = ShiftKey::up;

    bool operator==(const TypedKey&) const = default;
};

/// The key that types a character on a US layout; nothing for all but 97 characters: those of ASCII
/// that print, line feed (Return) and horizontal tab. From the US legends of the Keyboard/Keypad
/// page (0x07) in the USB HID Usage Tables.
std::optional<TypedKey> usTyping(char32_t character);

} // namespace tamsel
