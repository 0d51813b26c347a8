#include "keytools/keyboard_shortcut_handler.h"

#include <utility>

namespace tamsel {

namespace {

constexpr std::uint32_t blockingModifiers =
    ModifierFlags::command | ModifierFlags::control | ModifierFlags::option;

} // namespace

KeyboardShortcutHandler::KeyboardShortcutHandler(LocalEvents& localEvents, Shortcuts shortcuts,
                                                 QObject* parent)
    : QObject(parent), m_localEvents(localEvents), m_shortcuts(std::move(shortcuts)) {}

void KeyboardShortcutHandler::install() {
    m_keyMonitor = m_localEvents.addMonitor(
        LocalKeyKind::keyDown, [this](const LocalKeyEvent& event) { return handle(event); });
}

LocalEvents::Verdict KeyboardShortcutHandler::handle(const LocalKeyEvent& event) const {
    using enum LocalEvents::Verdict;
    if (event.focus == FocusKind::textInput || event.focus == FocusKind::popup)
        return pass;
    if (event.modifierFlags & blockingModifiers)
        return pass;
    const QString characters = event.charactersIgnoringModifiers.toLower();
    if (characters.isEmpty())
        return pass;
    const auto shortcut = m_shortcuts.find(characters.front());
    if (shortcut == m_shortcuts.end())
        return pass;
    if (!event.isARepeat) {
        const Action action = shortcut->second; // it may destroy the handler
        action();
    }
    return swallow;
}

} // namespace tamsel
