#include "core/core.h"

#include "coding/cfg_coding.h"
#include "core/device_choice.h"

#include <algorithm>
#include <string>
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

engine::DeviceIndex Core::addDevice(SeenDeviceInfo device) {
    const engine::DeviceIndex index = m_nextIndex++;
    m_engine.addDevice(index);
    applySeizure(index, m_devices.emplace(index, std::move(device)).first->second);
    return index;
}

void Core::removeDevice(engine::DeviceIndex device) {
    if (m_devices.erase(device) > 0)
        apply(m_engine.removeDevice(device));
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
    if (outcome.lockOut) {
        ++m_releaseCount;
        m_isLockedOut = true;
        m_complain({"the lock-out chord has stopped remapping"});
    }
    apply(outcome.effects);
    const auto device = m_devices.find(event.device);
    if (!outcome.report || device == m_devices.end())
        return std::nullopt;
    return KeyEvent{event.usage, event.edge == engine::Edge::down, outcome.report->action,
                    outcome.report->outputUsage, isAppleMade(device->second)};
}

void Core::shutDown() {
    ++m_releaseCount;
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
    apply(
        m_engine.setSeizure(index, isWanted ? engine::Seizure::seized : engine::Seizure::watched));
}

void Core::apply(const engine::Effects& effects) {
    if (m_output) {
        for (const ShortcutAction* action : effects.actions)
            noteOutput(m_output->record(*action));
    }
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
    if (!isGrabbing())
        return;
    if (const auto typed = m_engine.type(text, limit))
        write(*typed);
    else
        m_complain(typed.error());
}

void Core::write(engine::Outputs outputs) {
    if (m_output && !outputs.empty())
        noteOutput(m_output->write(outputs));
}

void Core::noteOutput(const Result<void>& done) {
    if (!done && !m_outputFailed)
        m_complain(done.error());
    m_outputFailed = !done;
}

} // namespace tamsel
