#include "devices/device_nodes.h"

#include "devices/device_description.h"
#include "base/unique_fd.h"

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

struct FreeDevice {
    void operator()(libevdev* device) const { ::libevdev_free(device); }
};

/// The first bytes of a file, "" when it cannot be read.
std::string firstBytes(const fs::path& path) {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    std::array<char, 256> buffer{};
    const ssize_t count =
        file.isOpen() ? ::read(file.get(), buffer.data(), buffer.size()) : ssize_t{0};
    return {buffer.data(), static_cast<std::size_t>(std::max(count, ssize_t{0}))};
}

} // namespace

tl::expected<std::vector<SeenDeviceInfo>, int> EvdevNodes::read(const std::string& path) const {
    const UniqueFd file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (!file.isOpen())
        return tl::unexpected(errno);
    struct stat info {};
    if (::fstat(file.get(), &info) != 0)
        return tl::unexpected(errno);
    if (!S_ISCHR(info.st_mode))
        return tl::unexpected(ENOTTY);
    libevdev* opened = nullptr;
    if (const int result = ::libevdev_new_from_fd(file.get(), &opened); result < 0)
        return tl::unexpected(-result);
    const std::unique_ptr<libevdev, FreeDevice> device(opened);
    const bool isUsb = ::libevdev_get_id_bustype(device.get()) == BUS_USB;
    const std::string_view node = std::string_view(path).substr(path.rfind('/') + 1);
    return describe(device.get(), isUsb ? usbManufacturer(m_sysRoot, node) : std::string());
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
