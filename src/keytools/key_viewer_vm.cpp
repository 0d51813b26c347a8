#include "keytools/key_viewer_vm.h"

#include "daemon/daemon_event_hub.h"
#include "keys/key_codes.h"
#include "platform/clock.h"

#include <QPointer>

#include <chrono>
#include <utility>

namespace tamsel {

namespace {

QString name(std::uint32_t usage) {
    return QString::fromStdString(KeyCodes::name(usage));
}

QString actionName(std::uint8_t action) {
    switch (action) {
    case keyPassthrough:
        return QStringLiteral("passthrough");
    case keySuppress:
        return QStringLiteral("suppress");
    case keyRemap:
        return QStringLiteral("remap");
    case keyMedia:
        return QStringLiteral("media");
    default:
        return {};
    }
}

} // namespace

KeyViewerVM::KeyViewerVM(DaemonEventHub& hub, const Clock& clock, QObject* parent)
    : QObject(parent), m_hub(hub), m_clock(clock) {}

KeyViewerVM::~KeyViewerVM() {
    leaveHub();
}

void KeyViewerVM::start() {
    if (m_hubToken)
        return;
    const bool joinsOthers = m_hub.hasSinks();
    const QPointer<KeyViewerVM> weak(this);
    m_hubToken = m_hub.addSink({[weak](const KeyEvent& event) {
                                    if (weak)
                                        weak->append(event);
                                },
                                [weak](bool connected) {
                                    if (weak)
                                        weak->setDaemonConnected(connected);
                                }});
    if (joinsOthers)
        setDaemonConnected(m_hub.isDaemonConnected());
}

void KeyViewerVM::stop() {
    leaveHub();
    clear();
}

void KeyViewerVM::clear() {
    if (m_events.isEmpty())
        return;
    m_events.clear();
    Q_EMIT eventsChanged();
}

void KeyViewerVM::leaveHub() {
    if (const auto token = std::exchange(m_hubToken, std::nullopt))
        m_hub.removeSink(*token);
}

void KeyViewerVM::setDaemonConnected(bool connected) {
    if (std::exchange(m_isDaemonConnected, connected) != connected)
        Q_EMIT isDaemonConnectedChanged();
}

void KeyViewerVM::append(const KeyEvent& event) {
    using std::chrono::milliseconds;
    KeyViewerEvent row;
    row.id = QUuid::createUuid().toString(QUuid::WithoutBraces);
    row.eventType = event.keyDown ? QStringLiteral("down") : QStringLiteral("up");
    row.keyName = name(event.usage);
    row.keyDown = event.keyDown;
    row.action = event.action;
    row.actionName = actionName(event.action);
    if (event.action != keySuppress)
        row.outputName = name(event.outputUsage);
    row.fromApple = event.fromApple;
    row.timestamp = QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<milliseconds>(m_clock.now().time_since_epoch()).count(),
        Qt::UTC);
    m_events.append(std::move(row));
    if (m_events.size() > maxEvents)
        m_events.removeFirst();
    Q_EMIT eventsChanged();
}

} // namespace tamsel
