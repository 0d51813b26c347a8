#include "daemon/daemon_mgr.h"

#include "log/logger.h"
#include "platform/bundle.h"

namespace tamsel {

namespace {

const auto daemonLabel = QStringLiteral("Daemon");
const auto agentLabel = QStringLiteral("Agent");

QString line(const QString& text) {
    return QStringLiteral("[DaemonMgr] ") + text;
}

} // namespace

DaemonMgr::DaemonMgr(ServiceManagement& services, const Bundle& bundle, Logger& logger,
                     QObject* parent)
    : QObject(parent),
      m_bundle(bundle),
      m_logger(logger),
      m_daemonSvc(services.daemonService(QStringLiteral("app.tamsel.daemon.plist"))),
      m_agentSvc(services.agentService(QStringLiteral("app.tamsel.agent.plist"))) {
    watch(*m_daemonSvc, daemonLabel);
    watch(*m_agentSvc, agentLabel);
    connect(m_daemonSvc.get(), &ServiceHandle::statusChanged, this, &DaemonMgr::refreshStatus);
    refreshStatus();
}

DaemonMgr::~DaemonMgr() = default;

void DaemonMgr::watch(ServiceHandle& service, const QString& label) {
    connect(&service, &ServiceHandle::failedLater, this,
            [this, label](ServiceOperation operation, const ServiceError& error) {
                logFailure(operation, label, error);
            });
}

QString DaemonMgr::statusDescription() const {
    if (m_isRunning)
        return QStringLiteral("運行中");
    if (daemonStatus() == ServiceStatus::requiresApproval)
        return QStringLiteral("等待用戶批准");
    return m_isInstalled ? QStringLiteral("已安裝（未運行）") : QStringLiteral("未安裝");
}

void DaemonMgr::registerServices() {
    if (!m_bundle.pathForResource(QStringLiteral("tamsel-daemon"), QStringLiteral("app"))) {
        m_logger.error(line(QStringLiteral("Daemon 二進制不在 App Bundle 中")));
        return;
    }
    // A registration whose service is gone stands in the way of a new one.
    for (ServiceHandle* service : {m_daemonSvc.get(), m_agentSvc.get()}) {
        if (service->status() == ServiceStatus::notFound)
            (void)service->unregisterService();
    }
    registerService(*m_daemonSvc, daemonLabel);
    registerService(*m_agentSvc, agentLabel);
    refreshStatus();
}

void DaemonMgr::unregisterServices() {
    unregisterService(*m_daemonSvc, daemonLabel);
    unregisterService(*m_agentSvc, agentLabel);
    refreshStatus();
}

void DaemonMgr::registerService(ServiceHandle& service, const QString& label) {
    const ServiceResult result = service.registerService();
    if (result)
        m_logger.info(line(label + QStringLiteral(" 已註冊")));
    else if (result.error().isAlreadyRegistered())
        m_logger.info(line(label + QStringLiteral(" 已處於註冊狀態")));
    else
        logFailure(ServiceOperation::registration, label, result.error());
}

void DaemonMgr::unregisterService(ServiceHandle& service, const QString& label) {
    const ServiceResult result = service.unregisterService();
    if (result)
        m_logger.info(line(label + QStringLiteral(" 已取消註冊")));
    else
        logFailure(ServiceOperation::unregistration, label, result.error());
}

void DaemonMgr::logFailure(ServiceOperation operation, const QString& label,
                           const ServiceError& error) {
    const QString what = operation == ServiceOperation::registration
                             ? QStringLiteral(" 註冊失敗: ")
                             : QStringLiteral(" 取消註冊失敗: ");
    m_logger.error(line(label + what + error.localizedDescription));
}

void DaemonMgr::refreshStatus() {
    const ServiceStatus status = daemonStatus();
    const bool isRunning = status == ServiceStatus::enabled;
    publish(isRunning || status == ServiceStatus::requiresApproval, isRunning);
    m_logger.info(line(QStringLiteral("狀態: %1 (SMAppService status=%2)")
                           .arg(statusDescription())
                           .arg(static_cast<int>(status))));
}

void DaemonMgr::publish(bool isInstalled, bool isRunning) {
    m_isInstalled = isInstalled;
    Q_EMIT isInstalledChanged();
    m_isRunning = isRunning;
    Q_EMIT isRunningChanged();
}

} // namespace tamsel
