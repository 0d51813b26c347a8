#include "devices/device_description.h"

#include "base/unicode.h"
#include "devices/virtual_identity.h"
#include "keys/keyboard_shape.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <linux/input.h>
#include <span>

namespace tamsel {

namespace {

bool has(const libevdev* device, unsigned type, unsigned code) {
    return ::libevdev_has_event_code(device, type, code) == 1;
}

/// The length of the well-formed character at the start of a text; 0 when there is none.
std::size_t characterLength(std::string_view text) {
    constexpr std::size_t longest = 4;
    for (std::size_t length = 1; length <= std::min(longest, text.size()); ++length) {
        if (utf16Length(text.substr(0, length)))
            return length;
    }
    return 0;
}

bool isControl(std::string_view character) {
    const auto byte = [&](std::size_t at) { return static_cast<std::uint8_t>(character[at]); };
    // C1 controls, U+0080..U+009F, are C2 80..C2 9F.
    return character.size() == 1 ? byte(0) < 0x20 || byte(0) == 0x7F
                                 : character.size() == 2 && byte(0) == 0xC2 && byte(1) < 0xA0;
}

} // namespace

Interfaces classify(const libevdev* device) {
    const bool isMouse = has(device, EV_REL, REL_X) && has(device, EV_REL, REL_Y);
    const bool isTouchpad =
        has(device, EV_ABS, ABS_X) && has(device, EV_ABS, ABS_Y) && has(device, EV_KEY, BTN_TOUCH);
    return {isKeyboard([device](unsigned code) { return has(device, EV_KEY, code); }),
            has(device, EV_KEY, BTN_LEFT) && (isMouse || isTouchpad)};
}

bool isOwnVirtualDevice(const libevdev* device) {
    // A stand-in has the identity of what it stands for.
    const char* const phys = ::libevdev_get_phys(device);
    return phys && phys == virtual_identity::phys;
}

bool hasMediaKeysOnly(const libevdev* device) {
    constexpr std::array<std::uint16_t, 3> volume{KEY_MUTE, KEY_VOLUMEDOWN, KEY_VOLUMEUP};
    const bool hasVolume = std::any_of(volume.begin(), volume.end(), [device](std::uint16_t code) {
        return has(device, EV_KEY, code);
    });
    const Interfaces interfaces = classify(device);
    return !interfaces.isKeyboard && !interfaces.isPointer && hasVolume &&
           ::libevdev_has_event_type(device, EV_SW) == 0 && !has(device, EV_KEY, BTN_JOYSTICK) &&
           !has(device, EV_KEY, BTN_GAMEPAD);
}

bool hasPointingHalf(const libevdev* device) {
    return has(device, EV_KEY, BTN_LEFT) || has(device, EV_REL, REL_X);
}

std::string transportName(int bus) {
    switch (bus) {
    case BUS_USB:
        return "usb";
    case BUS_BLUETOOTH:
        return "bluetooth";
    case BUS_I8042:
        return "ps2";
    case BUS_VIRTUAL:
        return "virtual";
    default:
        std::array<char, 16> text{};
        std::snprintf(text.data(), text.size(), "bus 0x%02X", static_cast<unsigned>(bus) & 0xFFFFU);
        return text.data();
    }
}

std::string cleanText(std::string_view raw) {
    constexpr std::size_t longest = 128;
    std::string out;
    while (!raw.empty()) {
        const std::size_t length = characterLength(raw);
        const std::string_view character = raw.substr(0, std::max<std::size_t>(length, 1));
        const std::string_view clean = length == 0 ? "?" : isControl(character) ? " " : character;
        if (out.size() + clean.size() > longest)
            break;
        if (clean != " " || !out.empty())
            out += clean;
        raw.remove_prefix(character.size());
    }
    out.erase(out.find_last_not_of(' ') + 1);
    return out;
}

std::vector<SeenDeviceInfo> describe(const libevdev* device, const std::string& manufacturer) {
    if (isOwnVirtualDevice(device))
        return {};
    const Interfaces interfaces = classify(device);
    SeenDeviceInfo info;
    info.vendorID = ::libevdev_get_id_vendor(device);
    info.productID = ::libevdev_get_id_product(device);
    info.product = cleanText(::libevdev_get_name(device));
    info.manufacturer = manufacturer;
    info.transport = transportName(::libevdev_get_id_bustype(device));
    info.isAllowed =
        ::libevdev_has_event_type(device, EV_SW) == 0 && !has(device, EV_KEY, BTN_TOUCH);
    std::vector<SeenDeviceInfo> entries;
    for (const bool isMouse : {false, true}) {
        info.isMouse = isMouse;
        if (isMouse ? interfaces.isPointer : interfaces.isKeyboard)
            entries.push_back(info);
    }
    return entries;
}

} // namespace tamsel
