#include "engine/engine.h"

#include "keys/us_typing.h"

#include <algorithm>
#include <utility>

namespace tamsel::engine {

namespace {

constexpr Slot returnKey = 40;
constexpr Slot escapeKey = 41;
constexpr Slot backspaceKey = 42;
constexpr Slot mute = 127;
constexpr Slot volumeDown = 129;
constexpr ModifierMask leftShift = 1U << 1U;

constexpr bool isLockOutKey(Slot slot) {
    return slot == returnKey || slot == escapeKey || slot == backspaceKey;
}

KeyEventAction outputAction(Slot output) {
    return output >= mute && output <= volumeDown ? keyMedia : keyRemap;
}

KeyEventAction actionOf(Slot from, const MappingTarget& to) {
    return from == to.key && to.modifiers == 0 ? keyPassthrough : outputAction(to.key);
}

} // namespace

Engine::Engine() {
    // At most every key of a device fires at once: when the devices are released.
    m_fired.reserve(slotCount);
}

Effects Engine::reload(const Cfg& cfg) {
    begin();
    releaseEverything();
    m_mappings = MappingTable(cfg.mappings);
    m_lastCombos = std::exchange(m_combos, ComboTable(cfg.shortcuts));
    return effects();
}

void Engine::addDevice(DeviceIndex device) {
    if (device >= m_devices.size())
        m_devices.resize(device + 1U);
    m_devices[device] = Device{};
    m_devices[device].isPresent = true;
}

Effects Engine::removeDevice(DeviceIndex device) {
    begin();
    if (Device* found = find(device)) {
        releaseEverything();
        *found = Device{};
    }
    return effects();
}

Effects Engine::setSeizure(DeviceIndex device, Seizure seizure) {
    begin();
    if (Device* found = find(device)) {
        if (found->seizure == Seizure::seized && seizure == Seizure::watched)
            releaseEverything();
        found->seizure = seizure;
    }
    return effects();
}

Outcome Engine::handle(const InputEvent& event) {
    begin();
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
        return {effects(), report, true};
    }
    // A key pressed on a watched device holds nothing: its release stays silent, seized or not.
    if (!wasSeized)
        return {};
    const Report report = isDown ? press(key, slot) : release(key, slot);
    return {effects(), report, false};
}

Result<Outputs> Engine::type(std::string_view text, std::size_t limit) {
    m_keys.clearOutputs();
    if (text.size() > limit)
        return fail("a text is too long to be typed");
    // All characters that can be typed are single bytes.
    const auto keyOf = [](char character) {
        return usTyping(static_cast<unsigned char>(character));
    };
    if (!std::all_of(text.begin(), text.end(), keyOf))
        return fail("a text has a character that no key of a US layout types");
    for (const char character : text) {
        const auto key = keyOf(character);
        m_keys.tap(slotOf(key->usage), key->shift == ShiftKey::held ? leftShift : ModifierMask{0});
    }
    endChord();
    return m_keys.outputs();
}

Engine::Device* Engine::find(DeviceIndex device) {
    return device < m_devices.size() && m_devices[device].isPresent ? &m_devices[device] : nullptr;
}

void Engine::begin() {
    m_keys.clearOutputs();
    m_fired.clear();
}

Report Engine::press(Press& press, Slot slot) {
    const ModifierMask held = m_keys.heldModifiers();
    const MappingTarget* const mapped = m_mappings.find(slot, held);
    const MappingTarget target = mapped ? *mapped : MappingTarget{slot, 0, false};
    // The modifiers that chose the mapping are spent on it.
    const unsigned effective = ((target.isConditional ? 0U : held) | target.modifiers) &
                               ~unsigned{modifierBit(target.key)};
    press.action = mapped ? actionOf(slot, target) : keyPassthrough;
    press.output = target.key;
    if (const Combo* const combo = m_combos.find(target.key, static_cast<ModifierMask>(effective)))
        pressCombo(press, slot, *combo);
    else
        pressKey(press, target);
    return {press.action, usageOf(press.output)};
}

void Engine::pressCombo(Press& press, Slot slot, const Combo& combo) {
    press.combo = &combo;
    press.action = keySuppress;
    press.output = slot;
    m_fired.push_back(&combo.action);
    if (combo.chord.isEmpty()) {
        endChord();
        return;
    }
    press.output = combo.chord.mainKey();
    press.action = outputAction(press.output);
    beginChord(press, combo.chord);
}

void Engine::pressKey(Press& press, const MappingTarget& target) {
    if (modifierBit(target.key) == 0) {
        if (target.isConditional) {
            beginChord(press, {target.modifiers, {target.key}});
            return;
        }
        endChord();
    }
    press.isHeld = true;
    press.modifiers = target.modifiers;
    for (std::size_t bit = 0; bit < modifierCount; ++bit) {
        if ((press.modifiers >> bit & 1U) != 0)
            m_keys.hold(modifierSlot(bit));
    }
    m_keys.hold(target.key);
}

void Engine::beginChord(Press& press, const KeyChord& chord) {
    m_keys.beginChord(chord);
    m_chordOwner = &press;
}

void Engine::endChord() {
    m_keys.endChord();
    m_chordOwner = nullptr;
}

Report Engine::release(Press& press, Slot slot) {
    const Press was = std::exchange(press, {});
    if (was.output == noSlot)
        return {keySuppress, usageOf(slot)};
    if (m_chordOwner == &press)
        endChord();
    if (was.isHeld) {
        m_keys.release(was.output);
        for (std::size_t bit = modifierCount; bit-- > 0;) {
            if ((was.modifiers >> bit & 1U) != 0)
                m_keys.release(modifierSlot(bit));
        }
    }
    if (was.combo && was.combo->actionUp)
        m_fired.push_back(&*was.combo->actionUp);
    return {was.action, usageOf(was.output)};
}

void Engine::releaseEverything() {
    m_keys.releaseAll();
    m_chordOwner = nullptr;
    for (Device& device : m_devices) {
        for (Press& press : device.presses) {
            const Press was = std::exchange(press, Press{.isDown = press.isDown});
            if (was.combo && was.combo->actionUp)
                m_fired.push_back(&*was.combo->actionUp);
        }
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
