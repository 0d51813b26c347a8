#include "daemon/local_key.h"

#include "keys/key_codes.h"

#include <array>

namespace tamsel {

namespace {

constexpr std::uint16_t firstModifier = 54;
constexpr std::uint16_t fnVirtualKey = 63;

/// The flag of each modifier key, by virtual key code from the first one on.
constexpr std::array<std::uint32_t, fnVirtualKey - firstModifier + 1> modifierMask{
    ModifierFlags::rightCommand, ModifierFlags::leftCommand,
    ModifierFlags::leftShift,    ModifierFlags::capsLock,
    ModifierFlags::leftOption,   ModifierFlags::leftControl,
    ModifierFlags::rightShift,   ModifierFlags::rightOption,
    ModifierFlags::rightControl, ModifierFlags::fn};

} // namespace

std::uint32_t hidUsage(const LocalKeyEvent& event) {
    return event.codeKind == LocalKeyEvent::CodeKind::hidUsage
               ? event.keyCode
               : KeyCodes::macToHid(event.keyCode).value_or(event.keyCode);
}

bool modifierIsDown(const LocalKeyEvent& event) {
    std::uint16_t virtualKey = event.keyCode;
    if (event.codeKind == LocalKeyEvent::CodeKind::hidUsage) {
        if (event.keyCode != KeyCodes::fn)
            return false;
        virtualKey = fnVirtualKey;
    }
    return virtualKey >= firstModifier && virtualKey <= fnVirtualKey &&
           (event.modifierFlags & modifierMask[virtualKey - firstModifier]) != 0;
}

} // namespace tamsel
