#include "devices/device_nodes.h"

#include "base/unique_fd.h"
#include "devices/device_description.h"
#include "devices/input_node.h"
#include "devices/udev_facts.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <linux/input.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace tamsel {

namespace {

namespace fs = std::filesystem;

/// By udev's word, else by the port.
bool isBuiltIn(int bus, const std::string& integration) {
    if (!integration.empty())
        return integration == "internal";
    return bus == BUS_I8042 || bus == BUS_HOST || bus == BUS_I2C || bus == BUS_SPI ||
           bus == BUS_RMI;
}

/// The first bytes of a file, "" when it cannot be read.
std::string firstBytes(const fs::path& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    std::array<char, 256> buffer{};
    const ssize_t count =
        file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : ssize_t{0};
    return {buffer.data(), static_cast<std::size_t>(std::max(count, ssize_t{0}))};
}

} // namespace

tl::expected<NodeDescription, int> EvdevNodes::look(const std::string& path) const {
    const auto node = InputNode::open(path);
    if (!node)
        return tl::unexpected(node.error());
    const std::string name = path.substr(path.rfind('/') + 1);
    const UdevFacts facts = UdevFacts::of(name);
    if (!facts.isInitialized)
        return tl::unexpected(EAGAIN);
    NodeDescription description;
    description.name = name;
    description.sysPath = facts.sysPath;
    const libevdev* const device = node->device();
    const bool isVirtual = facts.sysPath.find("/devices/virtual/input/") != std::string::npos;
    if (facts.seat != "seat0" || isOwnVirtualDevice(device) ||
        (isVirtual && m_virtualDevices == VirtualDevices::ignored))
        return description;
    const int bus = ::libevdev_get_id_bustype(device);
    description.entries =
        describe(device, bus == BUS_USB ? usbManufacturer(m_sysRoot, name) : std::string());
    const char* const uniq = ::libevdev_get_uniq(device);
    // The physical path of a Bluetooth device is the adapter's.
    description.family = bus == BUS_BLUETOOTH ? (uniq ? uniq : "") : facts.usbPath;
    description.place =
        isBuiltIn(bus, facts.integration) ? KeyboardPlace::builtIn : KeyboardPlace::external;
    description.hasMediaKeys =
        description.entries.empty() && !description.family.empty() && hasMediaKeysOnly(device);
    if (hasPointingHalf(device))
        description.standIn = cloneRecipe(device);
    return description;
}

int EvdevNodes::tryOpen(const std::string& path) const {
    const UniqueFd file(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    return file.isOpen() ? 0 : errno;
}

std::string usbManufacturer(const std::string& sysRoot, std::string_view node) {
    std::error_code error;
    const fs::path root = fs::canonical(sysRoot, error);
    if (error)
        return {};
    fs::path folder = fs::canonical(root / "class/input" / node / "device", error);
    if (error)
        return {};
    for (; folder.native().size() > root.native().size(); folder = folder.parent_path()) {
        // The nearest USB device only: above it stands the hub that it is plugged into.
        if (fs::exists(folder / "idVendor", error))
            return cleanText(firstBytes(folder / "manufacturer"));
    }
    return {};
}

} // namespace tamsel
