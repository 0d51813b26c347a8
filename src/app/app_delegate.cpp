#include "app/app_delegate.h"

#include "config/default_config.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "log/logger.h"

namespace tamsel {

void AppDelegate::applicationDidFinishLaunching() {
    m_logger.info(QStringLiteral("[AppDelegate] applicationDidFinishLaunching"));
    m_daemon.connect();
    m_daemon.sendConfig(withDefaults(m_storage.load()));
}

void AppDelegate::applicationWillTerminate() {
    m_daemon.disconnect();
    m_logger.info(QStringLiteral("[AppDelegate] App 退出，XPC 已斷開"));
}

} // namespace tamsel
