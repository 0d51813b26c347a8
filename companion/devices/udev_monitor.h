#pragma once

#include "base/error.h"

#include <functional>
#include <libudev.h>
#include <memory>
#include <string>

namespace tamsel {

/// Tells of devices as udev announces them: once it has set their permissions and properties. On a
/// machine without udev the kernel's own word has to do.
class UdevMonitor final {
public:
    struct News {
        std::string name;   ///< "event3", "uinput"
        std::string parent; ///< "input7" for a node of an input device
        bool isGone = false;
    };

    static Result<UdevMonitor> open();

    int fd() const { return ::udev_monitor_get_fd(m_monitor.get()); }
    /// Takes what there is; false when some was lost.
    bool read(const std::function<void(const News&)>& take);

private:
    struct Unref {
        void operator()(udev* context) const { ::udev_unref(context); }
        void operator()(udev_monitor* monitor) const { ::udev_monitor_unref(monitor); }
    };

    std::unique_ptr<udev, Unref> m_context;
    std::unique_ptr<udev_monitor, Unref> m_monitor;
};

} // namespace tamsel
