#pragma once

#include "records/seen_device.h"

#include <libevdev/libevdev.h>
#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

/// Which interfaces a device node offers; one may offer both.
struct Interfaces {
    bool isKeyboard = false;
    bool isPointer = false;

    bool operator==(const Interfaces&) const = default;
};

/// What a keyboard is: keys/keyboard_shape.h. A pointer is a mouse (left button, two relative axes)
/// or a touchpad (left button, touch, two absolute axes); game controllers, tablets and touch
/// screens are none. Codes: linux/input-event-codes.h.
Interfaces classify(const libevdev* device);

/// Whether Tamsel made the device itself (see virtual_identity.h).
bool isOwnVirtualDevice(const libevdev* device);

/// "usb", "bluetooth", "ps2", "virtual", else "bus 0xNN" with the kernel's number (linux/input.h).
std::string transportName(int bus);

/// A text from hardware made fit to be shown and compared: well-formed UTF-8 without control
/// characters or blanks around it, 128 bytes at most.
std::string cleanText(std::string_view raw);

/// Volume keys on a device that is neither keyboard, pointer, switch nor game controller: the
/// sibling that many keyboards have for them.
bool hasMediaKeysOnly(const libevdev* device);

/// Whether the device has buttons or relative axes that go through a stand-in.
bool hasPointingHalf(const libevdev* device);

/// What there is to tell of a device, an entry for each interface, the keyboard first; nothing for
/// a device of no interest and for Tamsel's own. `isAllowed` is set where it can be seized: not on
/// devices with switches, whose words to the system must never be in doubt, nor on touch devices.
std::vector<SeenDeviceInfo> describe(const libevdev* device, const std::string& manufacturer);

} // namespace tamsel
