#pragma once

#include <cstdint>
#include <optional>

namespace tamsel {

/// The kernel's key codes (EV_KEY of linux/input-event-codes.h) beside the catalogue's keyboard
/// codes, paired as the kernel's HID driver pairs them with the usages of the Keyboard/Keypad page
/// (0x07), and fn with the kernel's. One to one. Of the catalogue's keyboard keys four have no
/// kernel code: non_us_pound, which the kernel reports as the backslash, and international7 to
/// international9.
namespace EvdevCodes {

/// The catalogue's code of a kernel key code; nothing for a key that the catalogue lacks.
std::optional<std::uint32_t> toHid(std::uint16_t evdevCode);
/// The kernel's code of a key of the catalogue.
std::optional<std::uint16_t> fromHid(std::uint32_t usage);

} // namespace EvdevCodes

} // namespace tamsel
