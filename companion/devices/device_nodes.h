#pragma once

#include "core/access_report.h"
#include "records/seen_device.h"

#include <string>
#include <string_view>
#include <tl/expected.hpp>
#include <vector>

namespace tamsel {

/// How device nodes are asked what they are.
class DeviceNodes {
public:
    virtual ~DeviceNodes() = default;

    /// The entries that an input node makes, none for a device of no interest; or the errno of what
    /// went wrong.
    virtual tl::expected<std::vector<SeenDeviceInfo>, int> read(const std::string& path) const = 0;
    /// Opens the node of the virtual input driver for reading and writing, and closes it again; 0
    /// or the errno.
    virtual int tryOpen(const std::string& path) const = 0;
    virtual Groups groups() const = 0;
};

/// The kernel's nodes. No call blocks on a device.
class EvdevNodes final : public DeviceNodes {
public:
    explicit EvdevNodes(std::string sysRoot) : m_sysRoot(std::move(sysRoot)) {}

    tl::expected<std::vector<SeenDeviceInfo>, int> read(const std::string& path) const override;
    int tryOpen(const std::string& path) const override;
    Groups groups() const override { return Groups::current(); }

private:
    std::string m_sysRoot;
};

/// Who made the USB device behind an input node ("event3"), as it says itself; "" when it does not
/// say and for a node that no USB device stands behind.
std::string usbManufacturer(const std::string& sysRoot, std::string_view node);

} // namespace tamsel
