#include "keytools/key_recorder_vm.h"

#include "daemon/daemon_event_hub.h"
#include "daemon/local_key.h"
#include "keys/key_codes.h"
#include "keys/modifier_names.h"

#include <QPointer>

#include <utility>

namespace tamsel {

namespace {

constexpr std::uint32_t escape = 0x29;

} // namespace

KeyRecorderVM::KeyRecorderVM(DaemonEventHub& hub, LocalEvents& localEvents, MainQueue& queue,
                             Modifiers modifiers, QObject* parent)
    : QObject(parent),
      m_hub(hub),
      m_localEvents(localEvents),
      m_queue(queue),
      m_modifiers(modifiers) {}

KeyRecorderVM::~KeyRecorderVM() {
    leaveHub();
}

void KeyRecorderVM::startCapture() {
    startCapture([this](const RecordedKey& key) { Q_EMIT recorded(key.keyCode, key.modifiers); });
}

void KeyRecorderVM::startCapture(Completion onComplete) {
    if (m_isCapturing)
        return;
    m_isCapturing = true;
    m_onComplete = std::move(onComplete);
    m_keyMonitor = m_localEvents.addMonitor(allLocalKeyKinds, [this](const LocalKeyEvent& event) {
        handleLocalEvent(event);
        return LocalEvents::Verdict::swallow;
    });
    joinHub();
    m_timeoutItem = m_queue.after(timeout, [this] { cancel(); });
    Q_EMIT isCapturingChanged();
}

void KeyRecorderVM::joinHub() {
    const bool joinsOthers = m_hub.hasSinks();
    const QPointer<KeyRecorderVM> weak(this);
    m_hubToken = m_hub.addSink({[weak](const KeyEvent& event) {
                                    // The local monitor has the keyboard's keys.
                                    if (weak && event.usage >= KeyCodes::mouseButtonBase)
                                        weak->handleKey(event.usage,
                                                        event.keyDown ? Motion::down : Motion::up);
                                },
                                [weak](bool connected) {
                                    if (weak)
                                        weak->setDaemonConnected(connected);
                                }});
    if (joinsOthers)
        setDaemonConnected(m_hub.isDaemonConnected());
}

void KeyRecorderVM::leaveHub() {
    if (const auto token = std::exchange(m_hubToken, std::nullopt))
        m_hub.removeSink(*token);
}

void KeyRecorderVM::setDaemonConnected(bool connected) {
    if (std::exchange(m_isDaemonConnected, connected) != connected)
        Q_EMIT isDaemonConnectedChanged();
}

void KeyRecorderVM::handleLocalEvent(const LocalKeyEvent& event) {
    const std::uint32_t usage = hidUsage(event);
    switch (event.kind) {
    case LocalKeyKind::keyDown:
        // A key that is held since before the record, such as the Return that started it, is no
        // answer.
        if (!event.isARepeat)
            handleKey(usage, Motion::down);
        return;
    case LocalKeyKind::keyUp:
        handleKey(usage, Motion::up);
        return;
    case LocalKeyKind::flagsChanged:
        handleKey(usage, modifierIsDown(event) ? Motion::down : Motion::up);
        return;
    }
}

void KeyRecorderVM::handleKey(std::uint32_t usage, Motion motion) {
    if (!m_isCapturing || usage == KeyCodes::noKey)
        return;
    const bool isDown = motion == Motion::down;
    if (usage == escape && isDown) {
        cancel();
    } else if (!isModifierUsage(usage)) {
        if (isDown)
            finishCapture(RecordedKey{usage, heldModifierNames()});
    } else if (captureModifiers()) {
        if (isDown)
            m_heldModifiers.insert(usage);
        else
            m_heldModifiers.erase(usage);
    }
}

QStringList KeyRecorderVM::heldModifierNames() const {
    QStringList names;
    for (const std::uint32_t usage : m_heldModifiers)
        names << QString::fromStdString(KeyCodes::name(usage));
    return names;
}

void KeyRecorderVM::finishCapture(const std::optional<RecordedKey>& result) {
    if (!m_isCapturing)
        return;
    m_isCapturing = false;
    m_timeoutItem.cancel();
    m_keyMonitor.reset();
    leaveHub();
    const Completion onComplete = std::exchange(m_onComplete, nullptr);
    m_heldModifiers.clear();
    Q_EMIT isCapturingChanged();
    if (result && onComplete)
        onComplete(*result);
}

} // namespace tamsel
