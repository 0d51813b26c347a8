#pragma once

#include "core/core.h"
#include "devices/device_watch.h"
#include "devices/kernel_device.h"
#include "devices/udev_monitor.h"

#include <functional>
#include <list>
#include <optional>

namespace tamsel {

/// The machine's devices: keeps the core's picture of them up to date, seizes and frees them as the
/// core wishes, feeds it their events and writes what comes of them to virtual devices.
class KernelDevices final : public DeviceControl, private DeviceSink, private KernelDeviceSink {
public:
    using Say = std::function<void(const std::string&)>;
    using Publish = std::function<void(const KeyEvent&)>;

    /// Everything referred to outlives this object. `say` gets lines for the log.
    KernelDevices(sd_event* loop, const DeviceNodes& nodes, Say say);
    ~KernelDevices() override;

    VirtualDevice& output() { return m_output; }

    /// `core` writes to this object's output; `publish` is told what a key viewer is to see.
    Result<void> start(Core& core, Publish publish);

    void want(engine::DeviceIndex device, engine::Seizure seizure) override;
    void tryAgain() override;
    /// After the machine has slept.
    void lookAgain();

private:
    void nodeAppeared(const NodeDescription& node) override;
    void nodeGone(const std::string& name) override;
    void accessChanged(const AccessReport& report) override;
    void complain(const Error& error) override;
    void seized(engine::DeviceIndex device) override { m_core->seized(device, KeysThen::allUp); }
    void freed(engine::DeviceIndex device) override { m_core->freed(device); }
    void refused(engine::DeviceIndex device, int error) override { m_core->refused(device, error); }
    void handle(const engine::InputEvent& event) override;
    void lost(const std::string& name) override;
    void changed() override;

    void readNews();
    void announced(const std::string& inputName);
    void outputChanged();
    void readLights(KeyboardPlace place);
    KernelDevice* find(engine::DeviceIndex device);

    Helpers m_helpers;
    MachineLoop m_on;
    Core* m_core = nullptr;
    Say m_say;
    Publish m_publish;
    KernelOutput m_output;
    DeviceWatch m_watch;
    std::optional<UdevMonitor> m_monitor;
    std::list<KernelDevice> m_devices;
    EventSource m_helpersSource;
    EventSource m_newsSource;
    EventSource m_builtInLights;
    EventSource m_externalLights;
    EventSource m_retry;
    std::vector<std::string> m_lost;
    EventSource m_later;
};

} // namespace tamsel
