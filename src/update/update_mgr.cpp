#include "update/update_mgr.h"

#include "log/logger.h"
#include "platform/clock.h"
#include "platform/user_defaults.h"

namespace tamsel {

namespace {

const QString disableKey = QStringLiteral("DisableAutoUpdateCheck");

bool isResult(UpdateStatus::Kind kind) {
    return kind == UpdateStatus::updateAvailable || kind == UpdateStatus::error ||
           kind == UpdateStatus::upToDate || kind == UpdateStatus::readyToInstall;
}

} // namespace

UpdateMgr::UpdateMgr(Quorel& quorel, UserDefaults& defaults, MainQueue& queue, const Clock& clock,
                     Logger& logger, QObject* parent)
    : QObject(parent),
      m_quorel(quorel),
      m_defaults(defaults),
      m_queue(queue),
      m_clock(clock),
      m_failedUpdate(QString::fromUtf8(
          defaults.dataForKey(failedUpdateKey).value_or(std::nullopt).value_or(QByteArray()))),
      m_disableAutoCheck(defaults.boolForKey(disableKey).value_or(false)) {
    logger.info(QStringLiteral("[更新] UpdateMgr 初始化（Quorel facade）"));
    connect(&quorel, &Quorel::statusChanged, this, &UpdateMgr::mirrorStatus);
    connect(&quorel, &Quorel::availableVersionChanged, this, &UpdateMgr::mirrorVersion);
    mirrorStatus();
    mirrorVersion();
    if (!m_disableAutoCheck)
        startPeriodicCheck();
}

void UpdateMgr::setDisableAutoCheck(bool disable) {
    m_disableAutoCheck = disable;
    static_cast<void>(m_defaults.setBool(disable, disableKey));
    if (disable)
        m_autoCheckTimer.cancel();
    else
        startPeriodicCheck();
    Q_EMIT disableAutoCheckChanged();
}

void UpdateMgr::failedUpdateRead() {
    m_failedUpdate.clear();
    static_cast<void>(m_defaults.setString(m_failedUpdate, failedUpdateKey));
    Q_EMIT failedUpdateChanged();
}

void UpdateMgr::mirrorStatus() {
    m_checkStatus = m_quorel.status();
    if (isResult(m_checkStatus.kind))
        m_lastUpdateCheckDate = m_clock.now();
    Q_EMIT checkStatusChanged();
    if (m_checkStatus.kind == UpdateStatus::readyToInstall)
        Q_EMIT readyToInstall();
}

void UpdateMgr::mirrorVersion() {
    m_availableVer = m_quorel.availableVersion().value_or(QString());
    Q_EMIT availableVerChanged();
}

void UpdateMgr::startPeriodicCheck() {
    m_autoCheckTimer = m_queue.every(checkItv, [this] { m_quorel.checkInBackground(); });
}

} // namespace tamsel
