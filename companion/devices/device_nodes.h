#pragma once

#include "core/access_report.h"
#include "devices/node_description.h"

#include <string>
#include <string_view>
#include <tl/expected.hpp>

namespace tamsel {

/// How device nodes are asked what they are. Called from several threads at once.
class DeviceNodes {
public:
    virtual ~DeviceNodes() = default;

    /// What an input node is, without entries for one of no interest; or the errno of what went
    /// wrong, EAGAIN for one that will be announced later.
    virtual tl::expected<NodeDescription, int> look(const std::string& path) const = 0;
    /// Opens the node of the virtual input driver for reading and writing, and closes it again; 0
    /// or the errno.
    virtual int tryOpen(const std::string& path) const = 0;
    virtual Groups groups() const = 0;
};

/// Whether devices that other programs have made are taken for real ones.
enum class VirtualDevices : std::uint8_t { ignored, seen };

/// The kernel's nodes, with what udev knows of them. No call waits for a device, but closing a node
/// takes tens of milliseconds.
class EvdevNodes final : public DeviceNodes {
public:
    EvdevNodes(std::string sysRoot, VirtualDevices virtualDevices)
        : m_sysRoot(std::move(sysRoot)), m_virtualDevices(virtualDevices) {}

    tl::expected<NodeDescription, int> look(const std::string& path) const override;
    int tryOpen(const std::string& path) const override;
    Groups groups() const override { return Groups::current(); }

private:
    std::string m_sysRoot;
    VirtualDevices m_virtualDevices;
};

/// Who made the USB device behind an input node ("event3"), as it says itself; "" when it does not
/// say and for a node that no USB device stands behind.
std::string usbManufacturer(const std::string& sysRoot, std::string_view node);

} // namespace tamsel
