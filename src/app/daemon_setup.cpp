#include "app/daemon_setup.h"

#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "log/logger.h"
#include "platform/bundle.h"

#include <QPointer>

namespace tamsel {

DaemonSetup::DaemonSetup(const DaemonSetupManagers& managers, QObject* parent)
    : QObject(parent), m_managers(managers) {
    // The daemon gets a configuration after every reconnect, whoever made it. On a later turn: who
    // connected may be about to send it.
    connect(&managers.daemon, &DaemonXPCClient::reconnectReplaced, this, [this] {
        m_owesConfig = true;
        m_managers.queue.async(this, [this] {
            if (m_owesConfig)
                sendStoredConfig();
        });
    });
}

void DaemonSetup::setupDaemon() {
    DaemonMgr& daemonMgr = m_managers.daemonMgr;
    daemonMgr.registerServices();
    const bool runs = daemonMgr.isInstalled() && daemonMgr.isRunning();
    if (runs || daemonMgr.daemonStatus() == ServiceStatus::requiresApproval) {
        connectAfterDelay();
        return;
    }
    m_managers.logger.info(
        QStringLiteral("[AppDelegate] Daemon 未啟用，延遲 unregister + register（launchd 清理）"));
    daemonMgr.unregisterServices();
    m_nextStep = m_managers.queue.after(cleanUpDelay, [this] {
        m_managers.daemonMgr.registerServices();
        connectAfterDelay();
    });
}

void DaemonSetup::stop() {
    m_nextStep.cancel();
    m_versionTimeout.cancel();
    if (m_handled)
        *m_handled = true;
    m_owesConfig = false;
}

void DaemonSetup::connectAfterDelay() {
    m_nextStep = m_managers.queue.after(connectDelay, [this] {
        m_managers.daemonMgr.refreshStatus();
        m_managers.daemon.connect();
        // The check sends it.
        m_owesConfig = false;
        checkDaemonVersion();
    });
}

void DaemonSetup::checkDaemonVersion() {
    const QString appVersion =
        m_managers.bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString());
    const auto handled = m_handled = std::make_shared<bool>(false);
    MainQueue& queue = m_managers.queue;
    // Replies come on any thread; the object is touched on the main one only.
    const auto decideLater = [&queue, weak = QPointer(this), handled,
                              appVersion](const QString& daemonVersion) {
        queue.async(nullptr, [=] {
            if (weak)
                weak->decide(*handled, appVersion, daemonVersion);
        });
    };
    if (!m_managers.daemon.hasConnection())
        m_managers.daemon.connect();
    if (const auto remote = m_managers.daemon.proxy())
        remote->getVersion([decideLater](const std::string& version) {
            decideLater(QString::fromStdString(version));
        });
    else
        decideLater(QString());
    m_versionTimeout = queue.after(versionTimeout, [this, handled] {
        if (std::exchange(*handled, true))
            return;
        m_managers.logger.warning(
            QStringLiteral("[AppDelegate] Daemon 版本查詢超時（舊版本），重啟 daemon"));
        restartDaemon();
    });
}

void DaemonSetup::decide(bool& handled, const QString& appVersion, const QString& daemonVersion) {
    if (std::exchange(handled, true))
        return;
    if (!daemonVersion.isEmpty() && daemonVersion != appVersion) {
        m_managers.logger.info(QStringLiteral("[AppDelegate] Daemon 版本不一致（daemon=") +
                               daemonVersion + QStringLiteral(" app=") + appVersion +
                               QStringLiteral("），重啟 daemon"));
        restartDaemon();
        return;
    }
    sendStoredConfig();
    m_managers.logger.info(QStringLiteral("[AppDelegate] Daemon 設置完成，版本: ") + daemonVersion);
}

void DaemonSetup::restartDaemon() {
    m_managers.daemon.disconnect();
    m_managers.daemonMgr.unregisterServices();
    m_nextStep = m_managers.queue.after(cleanUpDelay, [this] {
        m_managers.daemonMgr.registerServices();
        m_nextStep = m_managers.queue.after(connectDelay, [this] { reconnectRestarted(); });
    });
}

void DaemonSetup::reconnectRestarted() {
    m_managers.daemonMgr.refreshStatus();
    m_managers.daemon.connect();
    sendStoredConfig();
    m_managers.logger.info(QStringLiteral("[AppDelegate] Daemon 已重啟並重連"));
}

void DaemonSetup::sendStoredConfig() {
    m_owesConfig = false;
    m_managers.daemon.sendStoredConfig();
}

} // namespace tamsel
