#include "core/device_choice.h"

#include <algorithm>

namespace tamsel {

bool isChosen(const Cfg& cfg, const SeenDeviceInfo& device) {
    const auto isIn = [&device](const std::vector<GrabbedDevice>& list) {
        return std::any_of(list.begin(), list.end(), [&device](const GrabbedDevice& each) {
            return each.vendorID == device.vendorID && each.productID == device.productID;
        });
    };
    if (device.isMouse)
        return isIn(cfg.mouseDevices);
    const bool isSelective = cfg.grabScope == GrabScope::selected && !cfg.allowedDevices.empty();
    return !isIn(cfg.excludedKeyboards) && (!isSelective || isIn(cfg.allowedDevices));
}

bool isAppleMade(const SeenDeviceInfo& device) {
    constexpr std::int64_t usbVendor = 0x05AC;
    constexpr std::int64_t bluetoothVendor = 0x004C;
    return device.vendorID == usbVendor || device.vendorID == bluetoothVendor;
}

} // namespace tamsel
