#include "service/core.h"

#include "config/records/cfg_coding.h"
#include "service/device_choice.h"

#include <algorithm>
#include <utility>

namespace tamsel {

Core::Core(VirtualDevice* output, OrderMemory& memory, const std::vector<SeenDeviceInfo>& devices,
           Complain complain)
    : m_output(output),
      m_memory(memory),
      m_complain(std::move(complain)),
      m_order(memory.load()),
      m_savedOrder(m_order) {
    for (const SeenDeviceInfo& device : devices)
        addDevice(device);
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

engine::DeviceIndex Core::addDevice(SeenDeviceInfo device) {
    const engine::DeviceIndex index = m_nextIndex++;
    m_engine.addDevice(index);
    applySeizure(index, m_devices.emplace(index, std::move(device)).first->second);
    return index;
}

void Core::removeDevice(engine::DeviceIndex device) {
    if (m_devices.erase(device) > 0)
        write(m_engine.removeDevice(device));
}

Status Core::status() const {
    const auto text = [this] {
        if (m_isLockedOut || m_order == Order::stop)
            return protocol::status::userStopped;
        // Before the driver's word: that it is missing too shows in the flag beside.
        if (!m_output && m_access.isInputDenied())
            return protocol::status::tccDenied;
        if (!isDriverConnected())
            return protocol::status::driverDisconnected;
        return isGrabbing() ? protocol::status::running
                            : protocol::status::driverConnectedNotGrabbing;
    };
    return {isGrabbing(), isDriverConnected(), text()};
}

std::vector<SeenDeviceInfo> Core::seenDevices() const {
    std::vector<SeenDeviceInfo> entries;
    for (const auto& [index, device] : m_devices) {
        const auto isSame = [&device = device](const SeenDeviceInfo& entry) {
            return entry.vendorID == device.vendorID && entry.productID == device.productID &&
                   entry.product == device.product && entry.isMouse == device.isMouse;
        };
        if (std::any_of(entries.begin(), entries.end(), isSame))
            continue;
        SeenDeviceInfo& entry = entries.emplace_back(device);
        entry.isAllowed = m_cfg && isChosen(*m_cfg, device);
        entry.isSeized = entry.isAllowed && isGrabbing();
    }
    return entries;
}

std::optional<KeyEvent> Core::handle(const engine::InputEvent& event) {
    const engine::Outcome outcome = m_engine.handle(event);
    write(outcome.effects);
    if (outcome.lockOut) {
        m_isLockedOut = true;
        m_complain({"the lock-out chord has stopped remapping"});
    }
    const auto device = m_devices.find(event.device);
    if (!outcome.report || device == m_devices.end())
        return std::nullopt;
    return KeyEvent{event.usage, event.edge == engine::Edge::down, outcome.report->action,
                    outcome.report->outputUsage, isAppleMade(device->second)};
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
    for (const auto& [index, device] : m_devices)
        applySeizure(index, device);
}

void Core::applySeizure(engine::DeviceIndex index, const SeenDeviceInfo& device) {
    const bool isWanted = isGrabbing() && isChosen(*m_cfg, device);
    write(
        m_engine.setSeizure(index, isWanted ? engine::Seizure::seized : engine::Seizure::watched));
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
