#pragma once

#include "devices/machine_loop.h"
#include "devices/uinput_device.h"
#include "program/event_source.h"

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace tamsel {

/// A virtual device on its way into the world: a helper makes it, udev announces it, and its
/// readers get half a second to open it, for what is written before they have is lost on them.
class MadeDevice final {
public:
    /// `changed` is called when it has become ready and when it could not be made.
    MadeDevice(MachineLoop on, VirtualRecipe recipe, std::function<void()> changed);
    MadeDevice(const MadeDevice&) = delete;
    MadeDevice& operator=(const MadeDevice&) = delete;
    /// Leaves the removal to a helper.
    ~MadeDevice();

    bool isReady() const { return m_isReady; }
    const std::optional<Error>& failure() const { return m_failure; }
    /// Null until it is made.
    UinputDevice* device() { return m_device.get(); }

    /// udev knows the device of this name ("input7"), be it this one or another.
    void announced(std::string_view inputName);

private:
    void made(Result<UinputDevice> result);
    void settle();

    MachineLoop m_on;
    std::function<void()> m_changed;
    std::shared_ptr<UinputDevice> m_device;
    std::optional<Error> m_failure;
    EventSource m_timer;
    bool m_isAnnounced = false;
    bool m_isReady = false;
    std::shared_ptr<bool> m_life = std::make_shared<bool>();
};

} // namespace tamsel
