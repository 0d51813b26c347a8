#pragma once

#include "base/error.h"
#include "devices/device_watch.h"
#include "core/core.h"
#include "program/log.h"

#include <systemd/sd-event.h>

namespace tamsel {

/// The machine's own devices, on the daemon's loop: keeps the core's picture of them up to date and
/// logs what stands in the way. Nothing is seized.
class MachineDevices final : private DeviceSink {
public:
    /// Both outlive this object.
    MachineDevices(Core& core, const Log& log);
    MachineDevices(const MachineDevices&) = delete;
    MachineDevices& operator=(const MachineDevices&) = delete;
    ~MachineDevices() override { ::sd_event_source_disable_unref(m_source); }

    Result<void> start(sd_event* loop);

private:
    engine::DeviceIndex addDevice(const SeenDeviceInfo& device) override;
    void removeDevice(engine::DeviceIndex device) override;
    void accessChanged(const AccessReport& report) override;
    void complain(const Error& error) override;

    Core& m_core;
    const Log& m_log;
    EvdevNodes m_nodes{"/sys"};
    DeviceWatch m_watch;
    sd_event_source* m_source = nullptr;
};

} // namespace tamsel
