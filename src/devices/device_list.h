#pragma once

#include "records/records.h"

#include <set>
#include <utility>
#include <vector>

namespace tamsel {

// Two devices are the same when both their identifiers are equal, whatever they are called.

bool isSameDevice(const GrabbedDevice& a, const GrabbedDevice& b);
bool containsDevice(const std::vector<GrabbedDevice>& devices, const GrabbedDevice& device);
/// Appends the device unless it is there; true when it was not.
bool addDevice(std::vector<GrabbedDevice>& devices, const GrabbedDevice& device);
/// Removes every entry of the device; true when there was one.
bool removeDevice(std::vector<GrabbedDevice>& devices, const GrabbedDevice& device);

/// The identifiers of a list, for asking it about many devices.
class DeviceSet final {
public:
    explicit DeviceSet(const std::vector<GrabbedDevice>& devices);

    bool contains(const GrabbedDevice& device) const;

private:
    std::set<std::pair<std::int64_t, std::int64_t>> m_ids;
};

} // namespace tamsel
