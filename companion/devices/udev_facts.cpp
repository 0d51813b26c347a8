#include "devices/udev_facts.h"

#include <libudev.h>
#include <memory>
#include <unistd.h>

namespace tamsel {

namespace {

struct Unref {
    void operator()(udev* context) const { ::udev_unref(context); }
    void operator()(udev_device* device) const { ::udev_device_unref(device); }
};

std::string property(udev_device* device, const char* name) {
    const char* const value = ::udev_device_get_property_value(device, name);
    return value ? value : "";
}

} // namespace

UdevFacts UdevFacts::of(const std::string& name) {
    UdevFacts facts;
    const std::unique_ptr<udev, Unref> context(::udev_new());
    const std::unique_ptr<udev_device, Unref> device(
        context ? ::udev_device_new_from_subsystem_sysname(context.get(), "input", name.c_str())
                : nullptr);
    if (!device)
        return facts;
    facts.isInitialized = !hasUdev() || ::udev_device_get_is_initialized(device.get()) > 0;
    facts.sysPath = ::udev_device_get_syspath(device.get());
    if (const std::string seat = property(device.get(), "ID_SEAT"); !seat.empty())
        facts.seat = seat;
    facts.integration = property(device.get(), "ID_INTEGRATION");
    // Owned by the device.
    udev_device* const usb =
        ::udev_device_get_parent_with_subsystem_devtype(device.get(), "usb", "usb_device");
    if (usb)
        facts.usbPath = ::udev_device_get_syspath(usb);
    return facts;
}

bool hasUdev() {
    return ::access("/run/udev/control", F_OK) == 0;
}

} // namespace tamsel
