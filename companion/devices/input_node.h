#pragma once

#include "base/unique_fd.h"

#include <chrono>
#include <cstdint>
#include <libevdev/libevdev.h>
#include <memory>
#include <string>
#include <tl/expected.hpp>
#include <vector>

namespace tamsel {

/// An open device node. Closing one takes tens of milliseconds, so does freeing one.
class InputNode final {
public:
    /// The errno on failure. Its descriptor is above those of all virtual devices: the kernel
    /// closes a killed process's descriptors in ascending order, so that virtual keys go up before
    /// nodes are freed. Open for writing, too, where that is allowed.
    static tl::expected<InputNode, int> open(const std::string& path);

    int fd() const { return m_fd.get(); }
    const libevdev* device() const { return m_device.get(); }
    bool has(unsigned type, unsigned code) const {
        return ::libevdev_has_event_code(m_device.get(), type, code) == 1;
    }

    /// The next event, in `event`: 0; or the negative errno, -EAGAIN when there is none and -ENODEV
    /// when the device is gone. When the kernel had to drop some, what they changed comes instead.
    int next(input_event& event);

    /// The codes that are down; takes events of keys that are waiting to be read with it.
    std::vector<std::uint16_t> keysDown() const;
    /// Tells every reader that these keys are up; the physical releases will be no news to them.
    void pretendUp(const std::vector<std::uint16_t>& codes);
    /// 0 or the errno.
    int grab();
    void setLight(std::uint16_t code, std::int32_t value);

private:
    struct FreeDevice {
        void operator()(libevdev* device) const { ::libevdev_free(device); }
    };

    InputNode(UniqueFd fd, libevdev* device) : m_fd(std::move(fd)), m_device(device) {}

    UniqueFd m_fd;
    std::unique_ptr<libevdev, FreeDevice> m_device;
    bool m_isCatchingUp = false;
};

} // namespace tamsel
