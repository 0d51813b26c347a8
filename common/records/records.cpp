#include "records/records.h"

#include "records/record_fields.h"
#include "records/seen_device.h"

namespace tamsel {

std::string_view name(ActionType type) {
    return nameOf(type);
}

std::string GrabbedDevice::identifier() const {
    return std::to_string(vendorID) + ":" + std::to_string(productID);
}

std::string SeenDeviceInfo::identifier() const {
    return std::to_string(vendorID) + ":" + std::to_string(productID) + (isMouse ? ":m" : ":k");
}

} // namespace tamsel

std::size_t
std::hash<tamsel::GrabbedDevice>::operator()(const tamsel::GrabbedDevice& device) const noexcept {
    const auto mix = [](std::size_t seed, std::size_t value) {
        return seed ^ (value + 0x9e3779b97f4a7c15U + (seed << 6U) + (seed >> 2U));
    };
    std::size_t seed = std::hash<std::int64_t>{}(device.vendorID);
    seed = mix(seed, std::hash<std::int64_t>{}(device.productID));
    return mix(seed, std::hash<std::string>{}(device.product));
}
