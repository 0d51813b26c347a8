#include "devices/device_list.h"

#include <algorithm>

namespace tamsel {

namespace {

auto isSameAs(const GrabbedDevice& device) {
    return [&device](const GrabbedDevice& each) { return isSameDevice(each, device); };
}

} // namespace

bool isSameDevice(const GrabbedDevice& a, const GrabbedDevice& b) {
    return a.vendorID == b.vendorID && a.productID == b.productID;
}

bool containsDevice(const std::vector<GrabbedDevice>& devices, const GrabbedDevice& device) {
    return std::any_of(devices.begin(), devices.end(), isSameAs(device));
}

bool addDevice(std::vector<GrabbedDevice>& devices, const GrabbedDevice& device) {
    if (containsDevice(devices, device))
        return false;
    devices.push_back(device);
    return true;
}

bool removeDevice(std::vector<GrabbedDevice>& devices, const GrabbedDevice& device) {
    return std::erase_if(devices, isSameAs(device)) > 0;
}

DeviceSet::DeviceSet(const std::vector<GrabbedDevice>& devices) {
    for (const GrabbedDevice& device : devices)
        m_ids.emplace(device.vendorID, device.productID);
}

bool DeviceSet::contains(const GrabbedDevice& device) const {
    return m_ids.contains({device.vendorID, device.productID});
}

} // namespace tamsel
