#include "platform/linux/keys/qt_local_events.h"

#include "platform/linux/keys/focus_kind.h"
#include "platform/linux/keys/key_identity.h"

#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace tamsel {

QtLocalEvents::QtLocalEvents(QGuiApplication& application) {
    application.installEventFilter(this);
    connect(&application, &QGuiApplication::focusWindowChanged, this,
            &QtLocalEvents::forgetHeldKeys);
}

bool QtLocalEvents::eventFilter(QObject* receiver, QEvent* event) {
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease ||
                       event->type() == QEvent::ShortcutOverride;
    // Windows hand their keys on to items; only the way in is watched.
    if (!isKey || !receiver->isWindowType())
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (judge(static_cast<const QWindow&>(*receiver), key) == Verdict::pass)
        return false;
    // An override that is accepted leaves no press to the shortcuts.
    event->accept();
    return true;
}

LocalEvents::Verdict QtLocalEvents::judge(const QWindow& window, const QKeyEvent& event) {
    const KeyId key = event.nativeScanCode() != 0
                          ? event.nativeScanCode()
                          : KeyId{1} << 32U | static_cast<quint32>(event.key());
    const auto offered = std::exchange(m_offered, std::nullopt);
    if (event.type() == QEvent::KeyRelease)
        return judgeRelease(window, event, key);
    if (event.type() == QEvent::KeyPress && offered && offered->key == key &&
        offered->timestamp == event.timestamp())
        return offered->verdict;
    const Verdict verdict = judgePress(window, event, key);
    if (verdict == Verdict::swallow)
        m_swallowed.insert(key);
    else
        m_swallowed.erase(key);
    if (event.type() == QEvent::ShortcutOverride)
        m_offered = {key, event.timestamp(), verdict};
    return verdict;
}

LocalEvents::Verdict QtLocalEvents::judgePress(const QWindow& window, const QKeyEvent& event,
                                               KeyId key) {
    const std::uint32_t usage = usageOf(event);
    reportReleased(m_modifiers.dropStale(event));
    if (!HeldModifiers::isModifier(usage))
        return ask(LocalKeyKind::keyDown, usage, window, event);
    if (event.isAutoRepeat())
        return m_swallowed.contains(key) ? Verdict::swallow : Verdict::pass;
    m_modifiers.press(usage, event);
    return ask(LocalKeyKind::flagsChanged, usage, window, event);
}

LocalEvents::Verdict QtLocalEvents::judgeRelease(const QWindow& window, const QKeyEvent& event,
                                                 KeyId key) {
    // The toolkit makes up a release before every repetition.
    if (event.isAutoRepeat())
        return m_swallowed.contains(key) ? Verdict::swallow : Verdict::pass;
    m_swallowed.erase(key);
    const std::uint32_t usage = usageOf(event);
    if (!HeldModifiers::isModifier(usage))
        return ask(LocalKeyKind::keyUp, usage, window, event);
    m_modifiers.release(usage);
    return ask(LocalKeyKind::flagsChanged, usage, window, event);
}

LocalEvents::Verdict QtLocalEvents::ask(LocalKeyKind kind, std::uint32_t usage,
                                        const QWindow& window, const QKeyEvent& event) const {
    if (m_monitors.isEmpty())
        return Verdict::pass;
    LocalKeyEvent local;
    local.kind = kind;
    identify(usage, local);
    local.modifierFlags = m_modifiers.flags(event);
    local.focus = focusKindIn(window);
    if (kind != LocalKeyKind::flagsChanged) {
        local.isARepeat = event.isAutoRepeat();
        local.charactersIgnoringModifiers = textIgnoringModifiers(event);
    }
    return m_monitors.ask(local);
}

void QtLocalEvents::reportReleased(const std::vector<std::uint32_t>& modifiers) const {
    for (const std::uint32_t usage : modifiers) {
        LocalKeyEvent local;
        local.kind = LocalKeyKind::flagsChanged;
        identify(usage, local);
        local.modifierFlags = m_modifiers.flags();
        m_monitors.ask(local);
    }
}

void QtLocalEvents::forgetHeldKeys() {
    reportReleased(m_modifiers.dropAll());
    m_offered.reset();
    m_swallowed.clear();
}

} // namespace tamsel
