#pragma once

#include <string>

namespace tamsel {

/// What udev knows of a device node. On a machine without udev every node counts as initialized.
struct UdevFacts {
    bool isInitialized = false;
    std::string sysPath;        ///< "/sys/devices/.../input7/event3"
    std::string seat = "seat0"; ///< ID_SEAT
    std::string integration;    ///< ID_INTEGRATION: "internal", "external" or ""
    std::string usbPath;        ///< of the USB device behind it; "" when there is none

    /// `name` is "event3". Uninitialized for a node that is not there.
    static UdevFacts of(const std::string& name);
};

/// Whether a udev runs here, which announces devices once it has dealt with them.
bool hasUdev();

} // namespace tamsel
