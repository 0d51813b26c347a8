#include "devices/udev_monitor.h"

#include "devices/udev_facts.h"

#include <cerrno>
#include <string_view>
#include <system_error>

namespace tamsel {

Result<UdevMonitor> UdevMonitor::open() {
    UdevMonitor opened;
    const auto failure = [] {
        return fail("devices cannot be watched: " + std::generic_category().message(errno));
    };
    opened.m_context.reset(::udev_new());
    if (!opened.m_context)
        return failure();
    opened.m_monitor.reset(
        ::udev_monitor_new_from_netlink(opened.m_context.get(), hasUdev() ? "udev" : "kernel"));
    udev_monitor* const monitor = opened.m_monitor.get();
    if (!monitor ||
        ::udev_monitor_filter_add_match_subsystem_devtype(monitor, "input", nullptr) < 0 ||
        ::udev_monitor_filter_add_match_subsystem_devtype(monitor, "misc", nullptr) < 0 ||
        ::udev_monitor_enable_receiving(monitor) < 0)
        return failure();
    return opened;
}

bool UdevMonitor::read(const std::function<void(const News&)>& take) {
    for (;;) {
        errno = 0;
        udev_device* const device = ::udev_monitor_receive_device(m_monitor.get());
        if (!device)
            return errno != ENOBUFS;
        const char* const action = ::udev_device_get_action(device);
        udev_device* const parent = ::udev_device_get_parent(device);
        const char* const parentName = parent ? ::udev_device_get_sysname(parent) : nullptr;
        take({::udev_device_get_sysname(device), parentName ? parentName : "",
              action && action == std::string_view("remove")});
        ::udev_device_unref(device);
    }
}

} // namespace tamsel
