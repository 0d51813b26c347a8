#include "daemon/daemon_event_hub.h"

#include "daemon/local_key.h"
#include "keys/key_codes.h"

#include <QPointer>

#include <vector>

namespace tamsel {

DaemonEventHub::DaemonEventHub(DaemonXPCClient& daemon, LocalEvents& localEvents, MainQueue& queue,
                               QObject* parent)
    : QObject(parent), m_daemon(daemon), m_localEvents(localEvents), m_queue(queue) {}

DaemonEventHub::~DaemonEventHub() {
    if (hasSinks())
        endSubscription();
}

QUuid DaemonEventHub::addSink(Sink sink) {
    const QUuid token = QUuid::createUuid();
    m_sinks.emplace(token, std::move(sink));
    if (m_sinks.size() == 1)
        startSubscription();
    return token;
}

void DaemonEventHub::removeSink(const QUuid& token) {
    m_sinks.erase(token);
    if (m_sinks.empty())
        endSubscription();
}

void DaemonEventHub::startSubscription() {
    const QPointer<DaemonEventHub> weak(this);
    // Possibly called on a queue of the connection.
    m_daemon.setKeyViewerStatusHandler([weak, &queue = m_queue](bool reporting) {
        if (weak)
            queue.async(weak, [weak, reporting] { weak->applyStatus(reporting); });
    });
    if (!m_daemon.hasConnection())
        m_daemon.connect();
    m_daemon.setKeyViewerOnEvent([weak, &queue = m_queue](const KeyEvent& event) {
        if (weak)
            queue.async(weak, [weak, event] { weak->tellEvent(event); });
    });
    m_daemon.subscribeKeyViewer([](bool) {});
}

void DaemonEventHub::endSubscription() {
    m_daemon.setKeyViewerStatusHandler(nullptr);
    m_daemon.unsubscribeKeyViewer();
    m_monitor.reset();
    m_isDaemonConnected = false;
}

void DaemonEventHub::applyStatus(bool reporting) {
    // Late: the last listener has left.
    if (m_sinks.empty())
        return;
    m_isDaemonConnected = reporting;
    forEachSink([reporting](const Sink& sink) { sink.onConnection(reporting); });
    m_monitor.reset();
    if (reporting || m_sinks.empty())
        return;
    m_monitor = m_localEvents.addMonitor(allLocalKeyKinds, [this](const LocalKeyEvent& event) {
        m_queue.async(this, [this, event] { handleLocalEvent(event); });
        return LocalEvents::Verdict::pass;
    });
}

void DaemonEventHub::handleLocalEvent(const LocalKeyEvent& event) {
    const std::uint32_t usage = hidUsage(event);
    if (usage == KeyCodes::noKey)
        return;
    const bool keyDown = event.kind == LocalKeyKind::flagsChanged
                             ? modifierIsDown(event)
                             : event.kind == LocalKeyKind::keyDown;
    tellEvent({usage, keyDown, keyPassthrough, usage, false});
}

void DaemonEventHub::tellEvent(const KeyEvent& event) {
    forEachSink([&event](const Sink& sink) { sink.onEvent(event); });
}

void DaemonEventHub::forEachSink(const std::function<void(const Sink&)>& tell) {
    std::vector<QUuid> tokens;
    for (const auto& [token, sink] : m_sinks)
        tokens.push_back(token);
    for (const QUuid& token : tokens) {
        if (const auto found = m_sinks.find(token); found != m_sinks.end()) {
            const Sink sink = found->second; // a sink may take itself off while it runs
            tell(sink);
        }
    }
}

} // namespace tamsel
