#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tamsel {

/// One entry of the key catalogue; `id` equals `code` in every entry.
struct KeyCodeDef {
    std::uint32_t id;
    std::uint32_t code;
    std::string_view name;

    bool operator==(const KeyCodeDef&) const = default;
};

/// A group of the catalogue as the key selector shows it; `title` is English, the key of its
/// translation.
struct KeyGroup {
    std::string_view title;
    std::span<const KeyCodeDef> keys;
};

/// The categories of the compact key picker.
enum class KeyCat {
    modifierKeys,
    controlsAndSymbols,
    arrowKeys,
    letterKeys,
    numberKeys,
    functionKeys,
    specialKeys,
};

/// Every key and mouse button that a mapping or combo can name. Keyboard keys carry their usage of
/// the USB HID Usage Tables' Keyboard/Keypad page (0x07), fn is 255, mouse button n is 0x1000 + n,
/// 0 is no key. All lists are constants of the program.
namespace KeyCodes {

inline constexpr std::uint32_t noKey = 0;
inline constexpr std::uint32_t capsLock = 57;
inline constexpr std::uint32_t fn = 255;
inline constexpr std::uint32_t mouseButtonBase = 0x1000;

/// The whole catalogue, 183 entries, vk_none first.
std::span<const KeyCodeDef> all();

/// The first entry with this code, or null.
const KeyCodeDef* find(std::uint32_t code);
/// The first entry with this name, or null.
const KeyCodeDef* find(std::string_view name);

/// The entry's name, or "unknown (0xA5)" with at least two upper-case hexadecimal digits.
std::string name(std::uint32_t code);

/// The twelve sections of the key selector in its order (mouse buttons before "Other", no vk_none).
std::span<const KeyGroup> selectorGroups();

/// The categories in declaration order, their titles and keys.
std::span<const KeyCat> categories();
std::string_view title(KeyCat category);
std::span<const KeyCodeDef> keys(KeyCat category);

/// HID usage to virtual key code and back; nothing outside the 77 pairs.
std::optional<std::uint16_t> hidToMac(std::uint32_t usage);
std::optional<std::uint32_t> macToHid(std::uint16_t virtualKeyCode);

} // namespace KeyCodes

} // namespace tamsel
