#pragma once

#include "daemon/key_viewer_callback_handler.h"
#include "platform/daemon_connection.h"
#include "platform/main_queue.h"
#include "records/records.h"
#include "records/seen_device.h"

#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace tamsel {

class ConfigDesk;

/// Owns the application's one connection to the daemon. Connects on demand, hands out the remote
/// proxy, sends the configuration, and after any loss reconnects 1.5 seconds later and sends the
/// configuration again. Puts no time-out on any reply. Main thread only; handlers given to it run
/// on a queue of the connection unless said otherwise.
///
/// States: idle or stopped (no connection, no reconnecting), connected, waiting to reconnect.
/// "Connected" says that the connection object runs, not that the daemon has answered.
class DaemonXPCClient final : public QObject {
    Q_OBJECT

public:
    using KeyEventHandler = KeyViewerCallbackHandler::EventHandler;
    using StatusHandler = std::function<void(bool)>;
    using SeenDevicesHandler = std::function<void(std::vector<SeenDeviceInfo>)>;

    static constexpr std::chrono::milliseconds reconnectInterval{1500};

    DaemonXPCClient(DaemonConnector& connector, ConfigDesk& desk, CallbackServices services,
                    QObject* parent = nullptr);
    ~DaemonXPCClient() override;

    /// Makes the connection if there is none, and allows reconnecting.
    void connect();
    /// Closes the connection and stops reconnecting.
    void disconnect();
    bool hasConnection() const { return m_conn != nullptr; }
    /// The remote interface, null without a connection. Never connects.
    std::shared_ptr<TamselDaemonProtocol> proxy();

    /// Sends `cfg` as it is given (the caller has merged the defaults in). Connects first.
    void sendConfig(const Cfg& cfg);
    /// Sends what is in force; every change at the desk is sent by itself.
    void sendStoredConfig();

    /// Who gets the daemon's key events, on the main thread; null for nobody. While it is set, a
    /// new connection subscribes again by itself.
    void setKeyViewerOnEvent(KeyEventHandler onEvent);
    /// Is told whether key events will arrive from the daemon.
    void setKeyViewerStatusHandler(StatusHandler handler);
    /// `completion` gets the daemon's answer; it is not called without a connection.
    void subscribeKeyViewer(std::function<void(bool)> completion);
    void unsubscribeKeyViewer();

    /// The devices that the daemon has seen, on the main thread; empty when they can't be had.
    void fetchSeenDevices(SeenDevicesHandler completion);

signals:
    /// A connection was asked for and made; whether anybody answers on it is not known yet.
    void connectionMade();
    /// A caller's connect() has taken the place of the pending reconnect, which would have sent
    /// the configuration.
    void reconnectReplaced();

private:
    void resubscribe();
    void tellKeyViewerStatus(bool available);
    void reportLoss(std::uint64_t generation, const QString& line);
    void handleConnectionLoss();
    void scheduleReconnect();
    void reconnect();

    DaemonConnector& m_connector;
    ConfigDesk& m_desk;
    CallbackServices m_services;

    std::unique_ptr<KeyViewerCallbackHandler> m_keyViewerHandler;
    std::unique_ptr<DaemonConnection> m_conn;
    std::uint64_t m_generation = 0; ///< counts connections, to tell a late report of an older one
    TaskHandle m_reconnectWorkItem;
    bool m_shouldReconnect = false;
    KeyEventHandler m_keyViewerOnEvent;
    StatusHandler m_keyViewerStatusHandler;
};

} // namespace tamsel
