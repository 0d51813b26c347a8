#include "platform/linux/keys/held_modifiers.h"

#include "keys/key_codes.h"
#include "platform/local_event_monitor.h"

namespace tamsel {

namespace {

struct ModifierKey {
    std::uint32_t usage;
    std::uint32_t flags;
};
constexpr ModifierKey modifierKeys[] = {
    {224, ModifierFlags::leftControl | ModifierFlags::control},
    {225, ModifierFlags::leftShift | ModifierFlags::shift},
    {226, ModifierFlags::leftOption | ModifierFlags::option},
    {227, ModifierFlags::leftCommand | ModifierFlags::command},
    {228, ModifierFlags::rightControl | ModifierFlags::control},
    {229, ModifierFlags::rightShift | ModifierFlags::shift},
    {230, ModifierFlags::rightOption | ModifierFlags::option},
    {231, ModifierFlags::rightCommand | ModifierFlags::command},
    {KeyCodes::capsLock, ModifierFlags::capsLock},
    {KeyCodes::fn, ModifierFlags::fn},
};

std::uint32_t flagsOf(std::uint32_t usage) {
    for (const ModifierKey& key : modifierKeys) {
        if (key.usage == usage)
            return key.flags;
    }
    return 0;
}

/// By what the layout makes of the key. Alt with Shift is Meta on common layouts, and what AltGr
/// and the locks show as is not settled.
Qt::KeyboardModifiers modifiersOfKey(int key) {
    switch (key) {
    case Qt::Key_Shift:
        return Qt::ShiftModifier;
    case Qt::Key_Control:
        return Qt::ControlModifier;
    case Qt::Key_Alt:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return Qt::AltModifier | Qt::MetaModifier;
    default:
        return {};
    }
}

} // namespace

bool HeldModifiers::isModifier(std::uint32_t usage) {
    return flagsOf(usage) != 0;
}

void HeldModifiers::press(std::uint32_t usage, const QKeyEvent& event) {
    m_held[usage] = modifiersOfKey(event.key());
}

std::vector<std::uint32_t> HeldModifiers::dropStale(const QKeyEvent& event) {
    const Qt::KeyboardModifiers set = event.modifiers() | modifiersOfKey(event.key());
    std::vector<std::uint32_t> stale;
    for (const auto& [usage, modifiers] : m_held) {
        if (modifiers && !(modifiers & set))
            stale.push_back(usage);
    }
    for (const std::uint32_t usage : stale)
        m_held.erase(usage);
    return stale;
}

std::vector<std::uint32_t> HeldModifiers::dropAll() {
    std::vector<std::uint32_t> dropped;
    for (const auto& [usage, modifiers] : m_held)
        dropped.push_back(usage);
    m_held.clear();
    return dropped;
}

std::uint32_t HeldModifiers::flags() const {
    std::uint32_t flags = 0;
    for (const auto& [usage, modifiers] : m_held)
        flags |= flagsOf(usage);
    return flags;
}

std::uint32_t HeldModifiers::flags(const QKeyEvent& event) const {
    constexpr std::pair<Qt::KeyboardModifier, std::uint32_t> unsided[] = {
        {Qt::ShiftModifier, ModifierFlags::shift},
        {Qt::ControlModifier, ModifierFlags::control},
        {Qt::AltModifier, ModifierFlags::option},
        {Qt::MetaModifier, ModifierFlags::command}};
    const Qt::KeyboardModifiers others = event.modifiers() & ~modifiersOfKey(event.key());
    std::uint32_t all = flags();
    for (const auto& [modifier, flag] : unsided) {
        if (others.testFlag(modifier))
            all |= flag;
    }
    return all;
}

} // namespace tamsel
