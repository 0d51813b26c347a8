#include "service/core.h"

#include "config/records/cfg_coding.h"
#include "service/device_choice.h"

#include <utility>

namespace tamsel {

Core::Core(VirtualDevice* output, OrderMemory& memory, std::vector<SeenDeviceInfo> devices,
           Complain complain)
    : m_output(output),
      m_memory(memory),
      m_devices(std::move(devices)),
      m_complain(std::move(complain)),
      m_order(memory.load()),
      m_savedOrder(m_order) {
    for (std::size_t i = m_devices.size(); i-- > 0;)
        m_engine.addDevice(static_cast<engine::DeviceIndex>(i));
}

Result<void> Core::updateCfg(ByteView encoded) {
    if (encoded.size() > maxCfgSize)
        return fail("the configuration is too large");
    auto cfg = decodeCfg(encoded);
    if (!cfg)
        return tl::unexpected(std::move(cfg).error());
    write(m_engine.reload(*cfg));
    m_cfg = std::move(*cfg);
    applySeizure();
    return {};
}

bool Core::startGrabbing() {
    if (m_isLockedOut)
        return false;
    // Saved before anything is seized: no key waits for the disk.
    m_order = Order::start;
    rememberOrder();
    applySeizure();
    return isGrabbing();
}

bool Core::stopGrabbing() {
    m_isLockedOut = false;
    m_order = Order::stop;
    applySeizure();
    rememberOrder();
    return true;
}

Status Core::status() const {
    const auto text = [this] {
        if (m_isLockedOut || m_order == Order::stop)
            return protocol::status::userStopped;
        if (!m_output)
            return protocol::status::driverDisconnected;
        return isGrabbing() ? protocol::status::running
                            : protocol::status::driverConnectedNotGrabbing;
    };
    return {isGrabbing(), m_output != nullptr, text()};
}

std::vector<SeenDeviceInfo> Core::seenDevices() const {
    std::vector<SeenDeviceInfo> devices = m_devices;
    for (SeenDeviceInfo& device : devices) {
        device.isAllowed = m_cfg && isChosen(*m_cfg, device);
        device.isSeized = device.isAllowed && isGrabbing();
    }
    return devices;
}

std::optional<KeyEvent> Core::handle(const engine::InputEvent& event) {
    const engine::Outcome outcome = m_engine.handle(event);
    write(outcome.outputs);
    if (outcome.lockOut) {
        m_isLockedOut = true;
        m_complain({"the lock-out chord has stopped remapping"});
    }
    if (!outcome.report)
        return std::nullopt;
    return KeyEvent{event.usage, event.edge == engine::Edge::down, outcome.report->action,
                    outcome.report->outputUsage, isAppleMade(m_devices[event.device])};
}

void Core::shutDown() {
    m_isShutDown = true;
    applySeizure();
}

bool Core::isGrabbing() const {
    return m_output && m_cfg && m_order == Order::start && !m_isLockedOut && !m_isShutDown;
}

void Core::rememberOrder() {
    if (m_savedOrder == m_order)
        return;
    if (const auto saved = m_memory.save(m_order))
        m_savedOrder = m_order;
    else
        m_complain(saved.error());
}

void Core::applySeizure() {
    for (std::size_t i = 0; i < m_devices.size(); ++i) {
        const bool isWanted = isGrabbing() && isChosen(*m_cfg, m_devices[i]);
        write(m_engine.setSeizure(static_cast<engine::DeviceIndex>(i),
                                  isWanted ? engine::Seizure::seized : engine::Seizure::watched));
    }
}

void Core::write(engine::Outputs outputs) {
    if (!m_output || outputs.empty())
        return;
    const auto written = m_output->write(outputs);
    if (!written && !m_outputFailed)
        m_complain(written.error());
    m_outputFailed = !written;
}

} // namespace tamsel
