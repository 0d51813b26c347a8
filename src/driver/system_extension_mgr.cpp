#include "driver/system_extension_mgr.h"

#include "daemon/daemon_xpc_client.h"
#include "driver/stuck_driver.h"
#include "log/logger.h"
#include "platform/background_queue.h"

#include <QPointer>

namespace tamsel {

SystemExtensionMgr::SystemExtensionMgr(SysExtServices services, DaemonXPCClient& daemon,
                                       QObject* parent)
    : SystemExtensionRequestDelegate(parent), m_services(services), m_daemon(daemon) {}

SystemExtensionMgr::~SystemExtensionMgr() = default;

void SystemExtensionMgr::loadExtension() {
    m_services.logger.info(QStringLiteral("[SysExtMgr] 請求加載擴展: ") + driverBundleId);
    m_services.extensions.submit({Kind::activation, driverBundleId}, *this);
    setStatus(SysExtStatus::loading);
    m_services.logger.info(QStringLiteral("[SysExtMgr] 請求已提交"));
}

void SystemExtensionMgr::unloadExtension() {
    m_services.logger.info(QStringLiteral("[SysExtMgr] 請求卸載擴展: ") + driverBundleId);
    m_services.extensions.submit({Kind::deactivation, driverBundleId}, *this);
    setStatus(SysExtStatus::unloading);
}

ReplacementAction
SystemExtensionMgr::actionForReplacingExtension(const SystemExtensionRequest&,
                                                const SystemExtensionProperties& installed,
                                                const SystemExtensionProperties& offered) {
    m_services.logger.info(QStringLiteral("[SysExtMgr] 請求替換擴展: ") + installed.bundleVersion +
                           QStringLiteral(" → ") + offered.bundleVersion);
    tellDaemon(Grabbing::stop);
    return ReplacementAction::replace;
}

void SystemExtensionMgr::requestNeedsUserApproval(const SystemExtensionRequest&) {
    m_services.logger.warning(QStringLiteral("[SysExtMgr] 需要用戶批准"));
    m_services.queue.async(this, [this] {
        setNeedsApproval(true);
        setStatus(SysExtStatus::needsApproval);
    });
}

void SystemExtensionMgr::didFinishWithResult(const SystemExtensionRequest& request,
                                             std::int64_t result) {
    m_services.logger.success(QStringLiteral("[SysExtMgr] 完成: ") + QString::number(result));
    m_services.queue.async(this, [this, kind = request.kind, result] { finish(kind, result); });
}

void SystemExtensionMgr::finish(Kind kind, std::int64_t result) {
    setExtensionStatus(result);
    setNeedsApproval(false);
    if (result == systemExtensionWillCompleteAfterReboot)
        setStatus(SysExtStatus::completesAfterRestart);
    else if (result == systemExtensionCompleted)
        completed(kind);
    else
        setStatus(SysExtStatus::unknownResult);
}

void SystemExtensionMgr::completed(Kind kind) {
    const bool isLoaded = kind == Kind::activation;
    setIsLoaded(isLoaded);
    setStatus(isLoaded ? SysExtStatus::loaded : SysExtStatus::unknown);
    m_hasRetriedAfterDisconnect = false;
    if (isLoaded)
        m_services.queue.after(this, startGrabbingDelay, [this] { tellDaemon(Grabbing::start); });
}

void SystemExtensionMgr::didFailWithError(const SystemExtensionRequest& request,
                                          const SystemExtensionError& error) {
    m_services.logger.error(QStringLiteral("[SysExtMgr] 失敗: domain=") + error.domain +
                            QStringLiteral(" code=") + QString::number(error.code) + u' ' +
                            error.description);
    m_services.queue.async(this, [this, kind = request.kind, error] { fail(kind, error); });
}

void SystemExtensionMgr::fail(Kind kind, const SystemExtensionError& error) {
    setNeedsApproval(false);
    // Only an activation can be blocked by an old driver, and a refusal by the user (another code)
    // must never end in killing anything.
    const bool startsRepair = kind == Kind::activation &&
                              error.domain == systemExtensionErrorDomain &&
                              error.code == systemExtensionRequestCanceled;
    if (!startsRepair || m_hasRetriedAfterDisconnect) {
        setStatus(SysExtStatus::failed(error.code, error.localizedDescription));
        return;
    }
    m_hasRetriedAfterDisconnect = true;
    m_services.logger.info(QStringLiteral("[SysExtMgr] requestCanceled，嘗試殺死卡住的舊驅動..."));
    setStatus(SysExtStatus::repairing);
    killStuckDextAndRetry();
}

void SystemExtensionMgr::killStuckDextAndRetry() {
    tellDaemon(Grabbing::stop);
    // The background thread never looks at this object: only the main thread can tell whether it
    // is still there.
    m_services.background.run([weak = QPointer(this), services = m_services] {
        killStuckDext(driverBundleId, services.processes, services.logger);
        services.queue.async(nullptr, [weak] {
            if (weak)
                weak->scheduleRetry();
        });
    });
}

void SystemExtensionMgr::scheduleRetry() {
    m_services.queue.after(this, retryDelay, [this] {
        m_services.logger.info(QStringLiteral("[SysExtMgr] 重試加載擴展..."));
        loadExtension();
    });
}

void SystemExtensionMgr::tellDaemon(Grabbing order) {
    if (!m_daemon.hasConnection())
        m_daemon.connect();
    const auto remote = m_daemon.proxy();
    if (!remote)
        return;
    const auto ignoreReply = [](bool) {};
    if (order == Grabbing::stop)
        remote->stopGrabbing(ignoreReply);
    else
        remote->startGrabbing(ignoreReply);
}

QVariant SystemExtensionMgr::extensionStatusVariant() const {
    return m_extensionStatus ? QVariant::fromValue<qint64>(*m_extensionStatus) : QVariant();
}

void SystemExtensionMgr::setExtensionStatus(std::int64_t result) {
    if (m_extensionStatus == result)
        return;
    m_extensionStatus = result;
    Q_EMIT extensionStatusChanged();
}

void SystemExtensionMgr::setIsLoaded(bool isLoaded) {
    if (m_isLoaded == isLoaded)
        return;
    m_isLoaded = isLoaded;
    Q_EMIT isLoadedChanged();
}

void SystemExtensionMgr::setNeedsApproval(bool needsApproval) {
    if (m_needsApproval == needsApproval)
        return;
    m_needsApproval = needsApproval;
    Q_EMIT needsApprovalChanged();
}

void SystemExtensionMgr::setStatus(const SysExtStatus& status) {
    if (m_status == status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

} // namespace tamsel
