#include "engine/engine.h"

#include <algorithm>
#include <utility>

namespace tamsel::engine {

namespace {

constexpr Slot returnKey = 40;
constexpr Slot escapeKey = 41;
constexpr Slot backspaceKey = 42;
constexpr Slot mute = 127;
constexpr Slot volumeDown = 129;

constexpr bool isLockOutKey(Slot slot) {
    return slot == returnKey || slot == escapeKey || slot == backspaceKey;
}

KeyEventAction actionOf(Slot from, const MappingTarget& to) {
    if (from == to.key && to.modifiers == 0)
        return keyPassthrough;
    return to.key >= mute && to.key <= volumeDown ? keyMedia : keyRemap;
}

} // namespace

Outputs Engine::reload(const Cfg& cfg) {
    m_keys.clearOutputs();
    releaseEverything();
    m_mappings = MappingTable(cfg.mappings);
    return m_keys.outputs();
}

void Engine::addDevice(DeviceIndex device) {
    if (device >= m_devices.size())
        m_devices.resize(device + 1U);
    m_devices[device] = Device{};
    m_devices[device].isPresent = true;
}

Outputs Engine::removeDevice(DeviceIndex device) {
    m_keys.clearOutputs();
    if (Device* found = find(device)) {
        releaseEverything();
        *found = Device{};
    }
    return m_keys.outputs();
}

Outputs Engine::setSeizure(DeviceIndex device, Seizure seizure) {
    m_keys.clearOutputs();
    if (Device* found = find(device)) {
        if (found->seizure == Seizure::seized && seizure == Seizure::watched)
            releaseEverything();
        found->seizure = seizure;
    }
    return m_keys.outputs();
}

Outcome Engine::handle(const InputEvent& event) {
    m_keys.clearOutputs();
    Device* const device = find(event.device);
    const Slot slot = slotOf(event.usage);
    if (!device || slot == noSlot)
        return {};
    Press& key = device->presses[slot];
    const bool isDown = event.edge == Edge::down;
    if (key.isDown == isDown)
        return {};
    key.isDown = isDown;
    const bool wasSeized = device->seizure == Seizure::seized;

    if (isDown && isLockOutKey(slot) && lockOutChordIsDown()) {
        releaseEverything();
        for (Device& each : m_devices)
            each.seizure = Seizure::watched;
        const auto report =
            wasSeized ? std::optional(Report{keySuppress, event.usage}) : std::nullopt;
        return {m_keys.outputs(), report, true};
    }
    // A key pressed on a watched device holds nothing: its release stays silent, seized or not.
    if (!wasSeized)
        return {};
    const Report report = isDown ? press(key, slot) : release(key, slot);
    return {m_keys.outputs(), report, false};
}

Engine::Device* Engine::find(DeviceIndex device) {
    return device < m_devices.size() && m_devices[device].isPresent ? &m_devices[device] : nullptr;
}

Report Engine::press(Press& press, Slot slot) {
    const MappingTarget* const mapped = m_mappings.find(slot, m_keys.heldModifiers());
    press.held = mapped ? *mapped : MappingTarget{slot, 0};
    press.action = mapped ? actionOf(slot, press.held) : keyPassthrough;
    for (std::size_t bit = 0; bit < modifierCount; ++bit) {
        if ((press.held.modifiers >> bit & 1U) != 0)
            m_keys.hold(modifierSlot(bit));
    }
    m_keys.hold(press.held.key);
    return {press.action, usageOf(press.held.key)};
}

Report Engine::release(Press& press, Slot slot) {
    const MappingTarget held = std::exchange(press.held, {});
    if (held.key == noSlot)
        return {keySuppress, usageOf(slot)};
    m_keys.release(held.key);
    for (std::size_t bit = modifierCount; bit-- > 0;) {
        if ((held.modifiers >> bit & 1U) != 0)
            m_keys.release(modifierSlot(bit));
    }
    return {press.action, usageOf(held.key)};
}

void Engine::releaseEverything() {
    m_keys.releaseAll();
    for (Device& device : m_devices) {
        for (Press& press : device.presses)
            press.held = {};
    }
}

bool Engine::lockOutChordIsDown() const {
    const auto isDown = [this](Slot slot) {
        return std::any_of(m_devices.begin(), m_devices.end(),
                           [slot](const Device& device) { return device.presses[slot].isDown; });
    };
    const bool anySeized =
        std::any_of(m_devices.begin(), m_devices.end(),
                    [](const Device& device) { return device.seizure == Seizure::seized; });
    return anySeized && isDown(returnKey) && isDown(escapeKey) && isDown(backspaceKey);
}

} // namespace tamsel::engine
