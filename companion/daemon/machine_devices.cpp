#include "daemon/machine_devices.h"

#include "program/event_loop.h"

#include <sys/epoll.h>

namespace tamsel {

MachineDevices::MachineDevices(Core& core, const Log& log)
    : m_core(core), m_log(log), m_watch({}, m_nodes, *this) {}

Result<void> MachineDevices::start(sd_event* loop) {
    if (auto started = m_watch.start(); !started)
        return started;
    const auto onReadable = [](sd_event_source* /*source*/, int /*fd*/, std::uint32_t /*events*/,
                               void* self) {
        static_cast<MachineDevices*>(self)->m_watch.read();
        return 0;
    };
    const int result = ::sd_event_add_io(loop, &m_source, m_watch.fd(), EPOLLIN, onReadable, this);
    if (result < 0)
        return loopError(result);
    return {};
}

engine::DeviceIndex MachineDevices::addDevice(const SeenDeviceInfo& device) {
    return m_core.addDevice(device);
}

void MachineDevices::removeDevice(engine::DeviceIndex device) {
    m_core.removeDevice(device);
}

void MachineDevices::accessChanged(const AccessReport& report) {
    m_core.setAccess(report);
    m_log.info(describe(report));
}

void MachineDevices::complain(const Error& error) {
    m_log.error(error.description());
}

} // namespace tamsel
