#include "app/permission_mgr.h"

#include "daemon/daemon_mgr.h"

namespace tamsel {

PermissionMgr::PermissionMgr(DaemonMgr& daemonMgr, QObject* parent)
    : QObject(parent), m_daemonMgr(daemonMgr) {
    checkPermission();
}

void PermissionMgr::checkPermission() {
    const bool isInstalled = m_daemonMgr.isInstalled();
    const bool isRunning = m_daemonMgr.isRunning();
    m_hasPermission = isInstalled && isRunning;
    m_debugInfo = !isInstalled ? QStringLiteral("Daemon: 未安裝")
                  : isRunning  ? QStringLiteral("Daemon: 運行中")
                               : QStringLiteral("Daemon: 已安裝但未運行");
    Q_EMIT hasPermissionChanged();
    Q_EMIT debugInfoChanged();
}

void PermissionMgr::requestPermission() {
    m_daemonMgr.registerServices();
    checkPermission();
}

} // namespace tamsel
