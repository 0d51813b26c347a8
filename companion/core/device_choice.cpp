#include "core/device_choice.h"

#include <algorithm>

namespace tamsel {

bool isChosen(const Cfg& cfg, const SeenDeviceInfo& device) {
    const auto& list = device.isMouse ? cfg.mouseDevices : cfg.excludedKeyboards;
    const bool isListed =
        std::find(list.begin(), list.end(),
                  GrabbedDevice{device.vendorID, device.productID, device.product}) != list.end();
    return isListed == device.isMouse;
}

bool isAppleMade(const SeenDeviceInfo& device) {
    constexpr std::int64_t usbVendor = 0x05AC;
    constexpr std::int64_t bluetoothVendor = 0x004C;
    return device.vendorID == usbVendor || device.vendorID == bluetoothVendor;
}

} // namespace tamsel
