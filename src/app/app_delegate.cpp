#include "app/app_delegate.h"

#include "app/launch_at_login_mgr.h"
#include "config/default_config.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "driver/system_extension_mgr.h"
#include "log/logger.h"
#include "platform/application.h"
#include "platform/main_queue.h"

namespace tamsel {

AppDelegate::AppDelegate(AppManagers managers, QObject* parent)
    : QObject(parent), m_managers(managers) {
    // The daemon gets a configuration after every reconnect, whoever made it.
    connect(&managers.daemon, &DaemonXPCClient::reconnectReplaced, this,
            [this] { m_managers.queue.async(this, [this] { sendStoredConfig(); }); });
}

void AppDelegate::applicationDidFinishLaunching() {
    Logger& logger = m_managers.logger;
    logger.info(QStringLiteral("[AppDelegate] applicationDidFinishLaunching"));
    m_managers.launchAtLogin.runFirstLaunchStep();
    logger.info(QStringLiteral("[AppDelegate] 準備加載 DriverKit 擴展..."));
    m_managers.queue.async(this, [this] {
        m_managers.logger.info(QStringLiteral("[AppDelegate] 調用 loadExtension..."));
        m_managers.sysExtMgr.loadExtension();
    });
    m_managers.queue.async(this, [this] { setupDaemon(); });
}

void AppDelegate::setupDaemon() {
    m_managers.daemonMgr.registerServices();
    m_managers.daemon.connect();
    sendStoredConfig();
}

void AppDelegate::sendStoredConfig() {
    m_managers.daemon.sendConfig(withDefaults(m_managers.storage.load()));
}

void AppDelegate::fullQuit() {
    m_managers.daemonMgr.unregisterServices();
    m_managers.daemon.disconnect();
    m_pendingQuit = m_managers.queue.after(fullQuitDelay, [this] {
        setFullQuit();
        m_managers.application.terminate();
    });
}

void AppDelegate::applicationWillTerminate() {
    m_managers.daemon.disconnect();
    m_managers.logger.info(QStringLiteral("[AppDelegate] App 退出，XPC 已斷開"));
}

} // namespace tamsel
