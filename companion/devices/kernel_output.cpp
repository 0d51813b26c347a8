#include "devices/kernel_output.h"

#include "engine/usage_slots.h"
#include "keys/evdev_codes.h"

#include <algorithm>

namespace tamsel {

namespace {

constexpr std::uint32_t firstButton = 0x1001;
constexpr std::uint32_t buttonsWithCode = 16;
/// The key beside Return on ISO keyboards, which the kernel reports as the backslash.
constexpr std::uint32_t nonUsPound = 50;

/// The kernel's code of a key or button; 0 when there is none.
std::uint16_t codeOf(std::uint32_t usage) {
    if (usage - firstButton < buttonsWithCode)
        return static_cast<std::uint16_t>(BTN_MOUSE + (usage - firstButton));
    if (usage == nonUsPound)
        return KEY_BACKSLASH;
    return EvdevCodes::fromHid(usage).value_or(KEY_RESERVED);
}

bool isButton(std::uint32_t usage) {
    return usage >= firstButton;
}

} // namespace

KernelOutput::KernelOutput(MachineLoop on, std::function<void()> changed)
    : m_on(on), m_changed(std::move(changed)) {}

void KernelOutput::open() {
    close();
    const auto make = [this](VirtualRecipe recipe) {
        return std::make_unique<MadeDevice>(m_on, std::move(recipe), [this] { m_changed(); });
    };
    m_builtIn = make(keyboardRecipe(KeyboardPlace::builtIn));
    m_external = make(keyboardRecipe(KeyboardPlace::external));
    m_pointer = make(pointerRecipe());
}

void KernelOutput::close() {
    m_writeFailure.reset();
    m_soon = {};
    m_touched.clear();
    m_carriers = {};
    m_lastWritten = nullptr;
    m_builtIn.reset();
    m_external.reset();
    m_pointer.reset();
}

bool KernelOutput::isReady() const {
    return !m_writeFailure && m_builtIn && m_builtIn->isReady() && m_external->isReady() &&
           m_pointer->isReady();
}

std::optional<Error> KernelOutput::failure() const {
    for (const MadeDevice* each : {m_builtIn.get(), m_external.get(), m_pointer.get()}) {
        if (each && each->failure())
            return each->failure();
    }
    return m_writeFailure;
}

void KernelOutput::announced(std::string_view inputName) {
    for (MadeDevice* each : {m_builtIn.get(), m_external.get(), m_pointer.get()}) {
        if (each)
            each->announced(inputName);
    }
}

void KernelOutput::begin(const Source& source) {
    m_source = source;
    m_isInFrame = true;
}

void KernelOutput::end() {
    noteFailure(syncAll());
    m_isInFrame = false;
    m_source.pointer = nullptr;
}

void KernelOutput::noteFailure(const Result<void>& done) {
    if (done || m_writeFailure)
        return;
    m_writeFailure = done.error();
    // Not now: whoever writes is in the middle of something.
    m_soon = EventSource::after(m_on.loop, std::chrono::microseconds(0), [this] { m_changed(); });
}

Result<void> KernelOutput::write(std::span<const engine::OutputEvent> events) {
    if (!isReady())
        return fail("the virtual devices are not there");
    Result<void> done;
    for (const engine::OutputEvent& event : events) {
        Target& carrier = m_carriers[engine::slotOf(event.usage)];
        const bool isDown = event.edge == engine::Edge::down;
        const Target to = isDown ? target(event.usage) : carrier;
        carrier = isDown ? to : Target{};
        if (!to.device)
            continue;
        // What one keyboard lets go is up before another one's key goes down.
        if (m_lastWritten && m_lastWritten != to.device && done)
            done = m_lastWritten->sync();
        m_lastWritten = to.device;
        emit(to.device, EV_KEY, to.code, isDown ? 1 : 0);
    }
    if (!m_isInFrame && done)
        done = syncAll();
    noteFailure(done);
    return done;
}

KernelOutput::Target KernelOutput::target(std::uint32_t usage) {
    const std::uint16_t code = codeOf(usage);
    if (code == KEY_RESERVED)
        return {};
    if (!isButton(usage))
        return {keyboard(m_source.place), code};
    const bool hasOwn = m_source.pointer && m_source.pointer->has(EV_KEY, code);
    return {hasOwn ? m_source.pointer : m_pointer->device(), code};
}

void KernelOutput::pass(const input_event& event, Held& held) {
    UinputDevice* const keys = keyboard(m_source.place);
    UinputDevice* to = nullptr;
    for (UinputDevice* const each : {m_source.pointer, keys}) {
        if (each && each->has(event.type, event.code))
            to = each;
    }
    if (!to)
        return;
    if (event.type == EV_KEY) {
        const std::pair key(to, static_cast<std::uint16_t>(event.code));
        std::erase(held.m_keys, key);
        if (event.value != 0)
            held.m_keys.push_back(key);
    }
    emit(to, event.type, event.code, event.value);
}

bool KernelOutput::isHeld(const Held& held, std::uint16_t code) {
    return std::any_of(held.m_keys.begin(), held.m_keys.end(),
                       [code](const auto& key) { return key.second == code; });
}

void KernelOutput::release(Held& held) {
    for (const auto& [device, code] : std::exchange(held.m_keys, {}))
        emit(device, EV_KEY, code, 0);
    noteFailure(syncAll());
}

void KernelOutput::forget(const UinputDevice* pointer) {
    std::erase(m_touched, pointer);
    if (m_lastWritten == pointer)
        m_lastWritten = nullptr;
    for (Target& carrier : m_carriers) {
        if (carrier.device == pointer)
            carrier = {};
    }
}

UinputDevice* KernelOutput::keyboard(KeyboardPlace place) {
    MadeDevice* const made = (place == KeyboardPlace::builtIn ? m_builtIn : m_external).get();
    return made ? made->device() : nullptr;
}

void KernelOutput::emit(UinputDevice* device, std::uint16_t type, std::uint16_t code,
                        std::int32_t value) {
    if (std::find(m_touched.begin(), m_touched.end(), device) == m_touched.end())
        m_touched.push_back(device);
    device->add(type, code, value);
}

Result<void> KernelOutput::syncAll() {
    Result<void> done;
    for (UinputDevice* const device : m_touched) {
        if (auto synced = device->sync(); !synced)
            done = std::move(synced);
    }
    m_touched.clear();
    m_lastWritten = nullptr;
    return done;
}

} // namespace tamsel
