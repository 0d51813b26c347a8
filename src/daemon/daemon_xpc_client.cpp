#include "daemon/daemon_xpc_client.h"

#include "coding/cfg_coding.h"
#include "coding/seen_devices_coding.h"
#include "config/config_desk.h"
#include "log/logger.h"

#include <QPointer>

#include <string_view>

namespace tamsel {

namespace {

DaemonConnection::ErrorHandler logError(Logger& logger, const QString& line) {
    return [&logger, line](const Error& error) {
        logger.error(line + QString::fromStdString(error.description()));
    };
}

} // namespace

DaemonXPCClient::DaemonXPCClient(DaemonConnector& connector, ConfigDesk& desk,
                                 CallbackServices services, QObject* parent)
    : QObject(parent), m_connector(connector), m_desk(desk), m_services(services) {
    QObject::connect(&desk, &ConfigDesk::changed, this, &DaemonXPCClient::sendConfig);
}

DaemonXPCClient::~DaemonXPCClient() = default;

void DaemonXPCClient::connect() {
    m_shouldReconnect = true;
    const bool replacesReconnect = static_cast<bool>(m_reconnectWorkItem);
    m_reconnectWorkItem.cancel();
    if (m_conn)
        return;

    auto conn = m_connector.makeConnection(protocol::serviceName);
    m_keyViewerHandler = std::make_unique<KeyViewerCallbackHandler>(m_services);
    m_keyViewerHandler->setOnEvent(m_keyViewerOnEvent);
    conn->setExportedObject(m_keyViewerHandler.get());

    const std::uint64_t generation = ++m_generation;
    const QPointer<DaemonXPCClient> weak(this);
    conn->setInvalidationHandler([weak, generation] {
        if (weak)
            weak->reportLoss(generation, QStringLiteral("[DaemonXPC] 連接已失效"));
    });
    conn->setInterruptionHandler([weak, generation] {
        if (weak)
            weak->reportLoss(generation,
                             QStringLiteral("[DaemonXPC] 連接已中斷，清除連接以便自動重連"));
    });
    conn->resume();
    m_conn = std::move(conn);
    m_services.logger.info(QStringLiteral("[DaemonXPC] 已連接到 Daemon"));
    if (m_keyViewerOnEvent)
        resubscribe();
    Q_EMIT connectionMade();
    if (replacesReconnect)
        Q_EMIT reconnectReplaced();
}

void DaemonXPCClient::resubscribe() {
    const auto remote = m_conn->remoteObjectProxy(logError(
        m_services.logger, QStringLiteral("[DaemonXPC] 重連後重新訂閱 Key Viewer 代理錯誤: ")));
    if (!remote)
        return;
    remote->subscribeKeyViewer(
        [weak = QPointer(this), &logger = m_services.logger](bool subscribed) {
            logger.info(QStringLiteral("[DaemonXPC] 重連後重新訂閱 Key Viewer: ") +
                        QLatin1String(subscribed ? "true" : "false"));
            if (weak)
                weak->tellKeyViewerStatus(subscribed);
        });
}

void DaemonXPCClient::tellKeyViewerStatus(bool available) {
    if (const StatusHandler handler = m_keyViewerStatusHandler)
        handler(available);
}

void DaemonXPCClient::reportLoss(std::uint64_t generation, const QString& line) {
    m_services.logger.warning(line);
    m_services.queue.async(this, [this, generation] {
        // A report that was still on its way when the next connection was made concerns a
        // connection that is gone already; it must not take the new one down.
        if (!m_conn || generation == m_generation)
            handleConnectionLoss();
    });
}

void DaemonXPCClient::handleConnectionLoss() {
    m_conn.reset();
    if (m_keyViewerOnEvent)
        tellKeyViewerStatus(false);
    scheduleReconnect();
}

void DaemonXPCClient::scheduleReconnect() {
    if (!m_shouldReconnect)
        return;
    m_reconnectWorkItem = m_services.queue.after(reconnectInterval, [this] { reconnect(); });
}

void DaemonXPCClient::reconnect() {
    if (!m_shouldReconnect)
        return;
    m_conn.reset();
    m_reconnectWorkItem.cancel();
    connect();
    sendStoredConfig();
    m_services.logger.info(QStringLiteral("[DaemonXPC] 已自動重連並重新發送配置"));
}

std::shared_ptr<TamselDaemonProtocol> DaemonXPCClient::proxy() {
    return m_conn ? m_conn->remoteObjectProxy(
                        logError(m_services.logger, QStringLiteral("[DaemonXPC] 代理錯誤: ")))
                  : nullptr;
}

void DaemonXPCClient::sendStoredConfig() {
    sendConfig(m_desk.inForce());
}

void DaemonXPCClient::sendConfig(const Cfg& cfg) {
    if (!m_conn) {
        // What is sent here is what the reconnect would have sent.
        m_reconnectWorkItem.cancel();
        connect();
    }
    Logger& logger = m_services.logger;
    const auto remote = proxy();
    if (!remote) {
        logger.error(QStringLiteral("[DaemonXPC] 無法獲取代理"));
        return;
    }
    const auto bytes = encodeCfg(cfg);
    if (!bytes) {
        logger.error(QStringLiteral("[DaemonXPC] 編碼配置失敗: ") +
                     QString::fromStdString(bytes.error().description()));
        return;
    }
    remote->updateCfg(*bytes, [&logger](bool accepted) {
        if (accepted)
            logger.info(QStringLiteral("[DaemonXPC] 配置發送成功"));
        else
            logger.error(QStringLiteral("[DaemonXPC] 配置發送失敗"));
    });
}

void DaemonXPCClient::disconnect() {
    m_shouldReconnect = false;
    m_reconnectWorkItem.cancel();
    if (m_conn) {
        m_conn->invalidate();
        m_conn.reset();
    }
}

void DaemonXPCClient::setKeyViewerOnEvent(KeyEventHandler onEvent) {
    m_keyViewerOnEvent = std::move(onEvent);
    if (m_keyViewerHandler)
        m_keyViewerHandler->setOnEvent(m_keyViewerOnEvent);
}

void DaemonXPCClient::setKeyViewerStatusHandler(StatusHandler handler) {
    m_keyViewerStatusHandler = std::move(handler);
}

void DaemonXPCClient::subscribeKeyViewer(std::function<void(bool)> completion) {
    const auto remote = proxy();
    if (!remote) {
        tellKeyViewerStatus(false);
        return;
    }
    remote->subscribeKeyViewer(
        [weak = QPointer(this), completion = std::move(completion)](bool subscribed) {
            if (weak)
                weak->tellKeyViewerStatus(subscribed);
            completion(subscribed);
        });
}

void DaemonXPCClient::unsubscribeKeyViewer() {
    setKeyViewerOnEvent(nullptr);
    if (const auto remote = proxy())
        remote->unsubscribeKeyViewer([](bool) {});
}

void DaemonXPCClient::fetchSeenDevices(SeenDevicesHandler completion) {
    if (!m_conn)
        connect();
    MainQueue& queue = m_services.queue;
    const auto remote = proxy();
    if (!remote) {
        queue.async(nullptr, [completion = std::move(completion)] { completion({}); });
        return;
    }
    remote->getSeenDevices([&queue, completion = std::move(completion)](const Bytes& json) {
        const std::string_view text(reinterpret_cast<const char*>(json.data()), json.size());
        queue.async(nullptr,
                    [completion, devices = decodeSeenDevices(text).value_or(
                                     std::vector<SeenDeviceInfo>{})] { completion(devices); });
    });
}

} // namespace tamsel
