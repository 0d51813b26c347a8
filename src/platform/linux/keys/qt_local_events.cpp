#include "platform/linux/keys/qt_local_events.h"

#include "platform/linux/keys/focus_kind.h"
#include "platform/linux/keys/key_identity.h"

#include <QGuiApplication>
#include <QWindow>

#include <utility>

namespace tamsel {

namespace {

/// The scan code that tells keys apart; of an event without one, its key above all scan codes.
quint64 identityOf(const QKeyEvent& event) {
    return event.nativeScanCode() != 0 ? event.nativeScanCode()
                                       : quint64{1} << 32U | static_cast<quint32>(event.key());
}

} // namespace

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
    if (isMistakenForPress(key)) {
        QKeyEvent repetition(event->type(), key.key(), key.modifiers(), key.nativeScanCode(),
                             key.nativeVirtualKey(), key.nativeModifiers(), key.text(), true);
        repetition.setTimestamp(key.timestamp());
        repetition.setAccepted(event->isAccepted());
        QCoreApplication::sendEvent(receiver, &repetition);
        event->setAccepted(repetition.isAccepted());
        return true;
    }
    if (judge(static_cast<const QWindow&>(*receiver), key) == Verdict::pass)
        return false;
    // An override that is accepted leaves no press to the shortcuts.
    event->accept();
    return true;
}

bool QtLocalEvents::isMistakenForPress(const QKeyEvent& event) {
    if (event.isAutoRepeat())
        return false;
    const KeyId key = identityOf(event);
    if (event.type() == QEvent::KeyRelease) {
        m_released = {key, event.timestamp(), m_swallowed.contains(key)};
        return false;
    }
    // Nobody lets go of a key and presses it again at the same millisecond.
    const bool isMistaken = m_released.key == key && m_released.timestamp != 0 &&
                            m_released.timestamp == event.timestamp();
    if (isMistaken && m_released.wasSwallowed)
        m_swallowed.insert(key);
    return isMistaken;
}

LocalEvents::Verdict QtLocalEvents::judge(const QWindow& window, const QKeyEvent& event) {
    const KeyId key = identityOf(event);
    // What was swallowed stays so until it is let go of, whoever swallowed it and is gone by now.
    if (event.isAutoRepeat() && m_swallowed.contains(key))
        return Verdict::swallow;
    const auto offered = std::exchange(m_offered, std::nullopt);
    if (event.type() == QEvent::KeyRelease)
        return judgeRelease(window, event, key);
    if (event.type() == QEvent::KeyPress && offered && offered->key == key &&
        offered->timestamp == event.timestamp())
        return offered->verdict;
    const Verdict verdict = judgePress(window, event);
    if (verdict == Verdict::swallow)
        m_swallowed.insert(key);
    else
        m_swallowed.erase(key);
    if (event.type() == QEvent::ShortcutOverride)
        m_offered = {key, event.timestamp(), verdict};
    return verdict;
}

LocalEvents::Verdict QtLocalEvents::judgePress(const QWindow& window, const QKeyEvent& event) {
    const std::uint32_t usage = usageOf(event);
    reportReleased(m_modifiers.dropStale(event));
    if (!HeldModifiers::isModifier(usage))
        return ask(LocalKeyKind::keyDown, usage, window, event);
    if (event.isAutoRepeat())
        return Verdict::pass;
    m_modifiers.press(usage, event);
    return ask(LocalKeyKind::flagsChanged, usage, window, event);
}

LocalEvents::Verdict QtLocalEvents::judgeRelease(const QWindow& window, const QKeyEvent& event,
                                                 KeyId key) {
    // The toolkit makes up a release before every repetition.
    if (event.isAutoRepeat())
        return Verdict::pass;
    const bool wasSwallowed = m_swallowed.erase(key) > 0;
    const std::uint32_t usage = usageOf(event);
    const bool isModifier = HeldModifiers::isModifier(usage);
    if (isModifier)
        m_modifiers.release(usage);
    const Verdict verdict =
        ask(isModifier ? LocalKeyKind::flagsChanged : LocalKeyKind::keyUp, usage, window, event);
    return wasSwallowed ? Verdict::swallow : verdict;
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
}

} // namespace tamsel
