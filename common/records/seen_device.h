#pragma once

#include <cstdint>
#include <string>

namespace tamsel {

/// A device that the daemon has seen; a keyboard and a pointing interface of one device are two.
struct SeenDeviceInfo {
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    std::string product = {};
    std::string manufacturer = {};
    std::string transport = {};
    bool isSeized = false;
    bool isAllowed = false;
    bool isMouse = false;

    /// "vendor:product:k" for a keyboard entry, "vendor:product:m" for a mouse entry.
    std::string identifier() const;

    bool operator==(const SeenDeviceInfo&) const = default;
};

} // namespace tamsel
