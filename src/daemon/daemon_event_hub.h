#pragma once

#include "daemon/daemon_xpc_client.h"
#include "platform/local_event_monitor.h"

#include <QObject>
#include <QUuid>

#include <functional>
#include <map>
#include <memory>

namespace tamsel {

/// Shares one subscription to the daemon's key events among any number of listeners: subscribes
/// for the first, unsubscribes after the last. While the daemon cannot report, the listeners get
/// the application's own key events instead (action 0, output = input, not from Apple; no mouse
/// buttons). Main thread only; listeners are called there, in no particular order, each on a later
/// turn than what it reports. A listener may add and remove listeners, also itself.
class DaemonEventHub final : public QObject {
    Q_OBJECT

public:
    struct Sink {
        std::function<void(const KeyEvent&)> onEvent;
        /// Whether the events come from the daemon (true) or from the application's own windows.
        std::function<void(bool)> onConnection;
    };

    DaemonEventHub(DaemonXPCClient& daemon, LocalEvents& localEvents, MainQueue& queue,
                   QObject* parent = nullptr);
    ~DaemonEventHub() override;

    /// Neither handler runs within the call. A sink that joins others takes isDaemonConnected() for
    /// its state; the first one is told.
    QUuid addSink(Sink sink);
    void removeSink(const QUuid& token);

    bool hasSinks() const { return !m_sinks.empty(); }
    /// Whether the daemon reports events, as last learned; false without listeners.
    bool isDaemonConnected() const { return m_isDaemonConnected; }

private:
    void startSubscription();
    void endSubscription();
    void applyStatus(bool reporting);
    void handleLocalEvent(const LocalKeyEvent& event);
    void tellEvent(const KeyEvent& event);
    /// Calls `tell` with every sink that is there from beginning to end.
    void forEachSink(const std::function<void(const Sink&)>& tell);

    DaemonXPCClient& m_daemon;
    LocalEvents& m_localEvents;
    MainQueue& m_queue;
    std::map<QUuid, Sink> m_sinks;
    bool m_isDaemonConnected = false;
    std::unique_ptr<LocalEventMonitor> m_monitor; ///< while the daemon cannot report
};

} // namespace tamsel
