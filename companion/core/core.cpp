#include "core/core.h"

#include "coding/cfg_coding.h"
#include "core/device_choice.h"

#include <algorithm>
#include <string>
#include <system_error>
#include <utility>

namespace tamsel {

namespace {

/// A line that ends in CR LF or CR ends in LF, the character that Return types.
std::string withUnixLineEnds(std::string_view text) {
    std::string lines;
    lines.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')
            continue;
        lines += text[i] == '\r' ? '\n' : text[i];
    }
    return lines;
}

} // namespace

Core::Core(VirtualDevice& output, OrderMemory& memory, Complain complain)
    : m_output(output),
      m_memory(memory),
      m_complain(std::move(complain)),
      m_order(memory.load()),
      m_savedOrder(m_order) {}

Result<void> Core::updateCfg(ByteView encoded) {
    if (encoded.size() > maxCfgSize)
        return fail("the configuration is too large");
    auto cfg = decodeCfg(encoded);
    if (!cfg)
        return tl::unexpected(std::move(cfg).error());
    ++m_releaseCount;
    apply(m_engine.reload(*cfg));
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
    if (m_control)
        m_control->tryAgain();
    return isGrabbing();
}

bool Core::stopGrabbing() {
    ++m_releaseCount;
    m_isLockedOut = false;
    m_order = Order::stop;
    applySeizure();
    rememberOrder();
    return true;
}

void Core::addDevice(engine::DeviceIndex index, SeenDeviceInfo device, Reach reach) {
    m_engine.addDevice(index);
    applySeizure(index, m_devices.emplace(index, Device{std::move(device), reach}).first->second);
}

void Core::removeDevice(engine::DeviceIndex device) {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return;
    const bool wasSeized = found->second.isSeized;
    m_devices.erase(found);
    // One that is only watched holds nothing, and the engine would let go of what others hold.
    if (wasSeized)
        apply(m_engine.removeDevice(device));
}

void Core::seized(engine::DeviceIndex device, KeysThen keys) {
    const auto found = m_devices.find(device);
    if (found == m_devices.end() || !found->second.isWanted)
        return;
    found->second.isSeized = true;
    found->second.isRefused = false;
    // Nobody has seen what was released while it was free.
    if (keys == KeysThen::allUp)
        m_engine.addDevice(device);
    apply(m_engine.setSeizure(device, engine::Seizure::seized));
}

void Core::freed(engine::DeviceIndex device) {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return;
    found->second.isSeized = false;
    apply(m_engine.setSeizure(device, engine::Seizure::watched));
}

void Core::refused(engine::DeviceIndex device, int error) {
    const auto found = m_devices.find(device);
    if (found == m_devices.end())
        return;
    if (!std::exchange(found->second.isRefused, true))
        m_complain({"cannot be seized: " + std::generic_category().message(error),
                    found->second.info.product});
}

void Core::setAccess(const AccessReport& access) {
    m_access = access;
    applySeizure();
}

void Core::outputFailed(const Error& error) {
    if (std::exchange(m_isOutputBroken, true))
        return;
    ++m_releaseCount;
    applySeizure();
    m_complain(error);
}

void Core::outputReady() {
    m_isOutputBroken = false;
    applySeizure();
}

void Core::setAsleep(bool isAsleep) {
    ++m_releaseCount;
    m_isAsleep = isAsleep;
    applySeizure();
}

Status Core::status() const {
    const auto text = [this] {
        if (m_isLockedOut || m_order == Order::stop)
            return protocol::status::userStopped;
        if (isGrabbing())
            return protocol::status::running;
        // Before the driver's word: that it is missing too shows in the flag beside.
        if (m_access.isInputDenied())
            return protocol::status::tccDenied;
        return isDriverConnected() ? protocol::status::driverConnectedNotGrabbing
                                   : protocol::status::driverDisconnected;
    };
    return {isGrabbing(), isDriverConnected(), text()};
}

std::vector<SeenDeviceInfo> Core::seenDevices() const {
    std::vector<SeenDeviceInfo> entries;
    for (const auto& [index, device] : m_devices) {
        const SeenDeviceInfo& info = device.info;
        const auto isSame = [&info](const SeenDeviceInfo& entry) {
            return entry.vendorID == info.vendorID && entry.productID == info.productID &&
                   entry.product == info.product && entry.isMouse == info.isMouse;
        };
        auto entry = std::find_if(entries.begin(), entries.end(), isSame);
        if (entry == entries.end()) {
            entry = entries.insert(entry, info);
            entry->isAllowed = entry->isSeized = false;
        }
        entry->isAllowed |= m_cfg && device.reach == Reach::canBeSeized && isChosen(*m_cfg, info);
        entry->isSeized |= device.isSeized;
    }
    return entries;
}

std::optional<KeyEvent> Core::handle(const engine::InputEvent& event) {
    const engine::Outcome outcome = m_engine.handle(event);
    if (outcome.lockOut) {
        ++m_releaseCount;
        m_isLockedOut = true;
    }
    apply(outcome.effects);
    if (outcome.lockOut) {
        applySeizure();
        m_complain({"the lock-out chord has stopped remapping"});
    }
    const auto device = m_devices.find(event.device);
    if (!outcome.report || device == m_devices.end())
        return std::nullopt;
    return KeyEvent{event.usage, event.edge == engine::Edge::down, outcome.report->action,
                    outcome.report->outputUsage, isAppleMade(device->second.info)};
}

void Core::shutDown() {
    ++m_releaseCount;
    m_isShutDown = true;
    applySeizure();
}

bool Core::mayGrab() const {
    return m_cfg && m_order == Order::start && !m_isLockedOut && !m_isShutDown && !m_isAsleep &&
           isDriverConnected() && !m_access.isInputDenied();
}

bool Core::isGrabbing() const {
    const auto count = [this](bool Device::*flag) {
        return std::count_if(m_devices.begin(), m_devices.end(), [flag](const auto& each) {
            return each.second.isWanted && each.second.*flag;
        });
    };
    const auto wanted = count(&Device::isWanted);
    return mayGrab() && (wanted == 0 || count(&Device::isRefused) < wanted);
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
    for (auto& [index, device] : m_devices)
        applySeizure(index, device);
}

void Core::applySeizure(engine::DeviceIndex index, Device& device) {
    const bool isWanted =
        mayGrab() && device.reach == Reach::canBeSeized && isChosen(*m_cfg, device.info);
    if (device.isWanted == isWanted || !m_control)
        return;
    device.isWanted = isWanted;
    device.isRefused = false;
    // What is held goes up before the device is anybody else's.
    if (!isWanted)
        apply(m_engine.setSeizure(index, engine::Seizure::watched));
    m_control->want(index, isWanted ? engine::Seizure::seized : engine::Seizure::watched);
}

void Core::apply(const engine::Effects& effects) {
    for (const ShortcutAction* action : effects.actions)
        noteOutput(m_output.record(*action));
    write(effects.outputs);
    // Last: what is typed overwrites the outputs.
    for (const ShortcutAction* action : effects.actions)
        run(*action);
}

void Core::run(const ShortcutAction& action) {
    switch (action.type) {
    case ActionType::keyPress:
        return; // among the outputs
    case ActionType::typeText:
        return type(action.value, maxTypedText);
    case ActionType::pasteClipboard:
        return typeClipboard();
    case ActionType::command:
        if (m_runner)
            m_runner->runCommand(action.value);
        return;
    case ActionType::openURL:
        if (m_runner)
            m_runner->openURL(action.value);
        return;
    }
}

void Core::typeClipboard() {
    if (!m_runner)
        return;
    m_runner->requestClipboardText(
        [this, releaseCount = m_releaseCount](const std::optional<std::string>& text) {
            if (text && releaseCount == m_releaseCount)
                type(withUnixLineEnds(*text), maxTypedClipboard);
        });
}

void Core::type(std::string_view text, std::size_t limit) {
    // A release action may come with the very order to write nothing any more.
    if (!mayGrab())
        return;
    if (const auto typed = m_engine.type(text, limit))
        write(*typed);
    else
        m_complain(typed.error());
}

void Core::write(engine::Outputs outputs) {
    if (!outputs.empty())
        noteOutput(m_output.write(outputs));
}

void Core::noteOutput(const Result<void>& done) {
    if (!done && !m_outputFailed)
        m_complain(done.error());
    m_outputFailed = !done;
}

} // namespace tamsel
