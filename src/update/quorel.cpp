#include "update/quorel.h"

#include "platform/bundle.h"
#include "platform/clock.h"
#include "platform/system_log.h"

#include <QDateTime>

namespace tamsel {

namespace {

const QString feedKey = QStringLiteral("QLFeedURL");

} // namespace

Quorel::Quorel(const QuorelServices& services, QObject* parent)
    : QObject(parent), m_services(services), m_userDriver(services.driverLog) {
    log(QStringLiteral("[Quorel] 初始化"));
    if (const auto feed = services.bundle.infoString(feedKey))
        log(QStringLiteral("[Quorel] QLFeedURL: ") + *feed);
    else
        log(QStringLiteral("[Quorel] QLFeedURL 未設置（需 consumer 在 Info.plist 配置）"));
    wireDriver();
    m_updater = services.updaters.makeUpdater(m_userDriver, *this);
    m_updater->setAutomaticallyChecksForUpdates(false);
    if (const auto started = m_updater->startUpdater())
        log(QStringLiteral("[Quorel] SPUUpdater 啟動成功"));
    else
        services.log.write(SystemLogType::error,
                           QStringLiteral("[Quorel] SPUUpdater 啟動失敗: ") +
                               QString::fromStdString(started.error().description()));
}

Quorel::~Quorel() = default;

void Quorel::wireDriver() {
    m_userDriver.onErr = [this](const QString& message) {
        m_services.log.write(SystemLogType::error, QStringLiteral("[Quorel] onErr: ") + message);
        endedWith(UpdateStatus::failed(message));
    };
    m_userDriver.onUpToDate = [this] {
        log(QStringLiteral("[Quorel] onUpToDate"));
        endedWith(UpdateStatus::upToDate);
    };
    m_userDriver.onUpdateFound = [this](const QString& version, const QString& build) {
        log(QStringLiteral("[Quorel] onUpdateFound: %1 (build %2)").arg(version, build));
        found(version, build);
    };
    m_userDriver.onDownloadProgress = [this](double fraction) {
        setStatus(UpdateStatus::downloaded(fraction));
    };
    m_userDriver.onReadyToInstall = [this] {
        log(QStringLiteral("[Quorel] onReadyToInstall"));
        setStatus(UpdateStatus::readyToInstall);
    };
}

bool Quorel::isBusy() const {
    return m_updater->sessionInProgress() || !m_updater->canCheckForUpdates();
}

void Quorel::check(bool userInitiated) {
    if (isBusy()) {
        log(QStringLiteral("[Quorel] check skipped: session already in progress"));
        return;
    }
    log(QStringLiteral("[Quorel] check(userInitiated: %1)")
            .arg(userInitiated ? QStringLiteral("true") : QStringLiteral("false")));
    setStatus(UpdateStatus::checking);
    startTimeout();
    m_updater->checkForUpdates();
}

void Quorel::checkInBackground() {
    if (isBusy()) {
        log(QStringLiteral("[Quorel] checkInBackground skipped: session already in progress"));
        return;
    }
    log(QStringLiteral("[Quorel] checkInBackground"));
    setStatus(UpdateStatus::checking);
    startTimeout();
    m_userDriver.setAutoStartDownload(true);
    m_updater->checkForUpdatesInBackground();
}

void Quorel::startTimeout() {
    m_checkTimeoutTimer = m_services.queue.after(checkTimeout, [this] { timedOut(); });
}

void Quorel::timedOut() {
    if (m_status.kind != UpdateStatus::checking)
        return;
    m_services.log.write(
        SystemLogType::error,
        QStringLiteral("[Quorel] ❌ 檢查超時 (%1s)")
            .arg(std::chrono::duration_cast<std::chrono::seconds>(checkTimeout).count()));
    m_lastUpdateCheckDate = m_services.clock.now();
    setStatus(UpdateStatus::failed(updaterCheckTimedOut.toString()));
}

void Quorel::downloadAndInstall() {
    log(QStringLiteral("[Quorel] downloadAndInstall"));
    if (m_userDriver.hasDownloadReply()) {
        m_userDriver.startDownload();
        return;
    }
    m_userDriver.setAutoStartDownload(true);
    setStatus(UpdateStatus::downloaded(0.0));
    m_updater->checkForUpdates();
}

void Quorel::installAndRelaunch() {
    log(QStringLiteral("[Quorel] installAndRelaunch"));
    m_userDriver.installAndRelaunch();
}

void Quorel::skipVersion(const QString& version) {
    log(QStringLiteral("[Quorel] skip version: ") + version);
    m_userDriver.declineDownload(SPUUserUpdateChoice::skip);
    setStatus(UpdateStatus::idle);
}

void Quorel::remindLater() {
    log(QStringLiteral("[Quorel] remindLater"));
    m_userDriver.declineDownload(SPUUserUpdateChoice::dismiss);
    setStatus(UpdateStatus::idle);
}

void Quorel::tryInstallOnDeactivate() {
    log(QStringLiteral("[Quorel] tryInstallOnDeactivate"));
    if (m_userDriver.hasInstallReply())
        m_userDriver.installAndRelaunch();
}

std::optional<QString> Quorel::feedURLString() {
    auto feed = m_services.bundle.infoString(feedKey);
    if (!feed)
        return std::nullopt;
    const auto sinceEpoch = std::chrono::duration_cast<std::chrono::milliseconds>(
        m_services.clock.now().time_since_epoch());
    const auto local =
        QDateTime::fromMSecsSinceEpoch(sinceEpoch.count(), m_services.clock.timeZone());
    // No cache between here and the feed knows this address yet.
    return *feed + QStringLiteral("?t=") + local.toString(QStringLiteral("yyMMdd.HHmm"));
}

void Quorel::didFindValidUpdate(const AppcastItem& item) {
    log(QStringLiteral("[Quorel] didFindValidUpdate: %1 (build %2)")
            .arg(item.displayVersionString, item.versionString));
    found(item.displayVersionString, item.versionString);
}

void Quorel::didNotFindUpdate() {
    log(QStringLiteral("[Quorel] updaterDidNotFindUpdate()"));
    endedWith(UpdateStatus::upToDate);
}

void Quorel::didAbortWithError(const UpdaterError& error) {
    if (error.domain == updaterErrorDomain && error.code == updaterNoUpdateCode) {
        log(QStringLiteral("[Quorel] 已是最新版本"));
        endedWith(UpdateStatus::upToDate);
        return;
    }
    m_services.log.write(SystemLogType::error, QStringLiteral("[Quorel] didAbortWithError: ") +
                                                   error.localizedDescription);
    endedWith(UpdateStatus::failed(error.localizedDescription));
}

void Quorel::didFinishUpdateCycle(const std::optional<UpdaterError>& error) {
    ended();
    const bool isUndecided =
        m_status.kind == UpdateStatus::idle || m_status.kind == UpdateStatus::checking;
    if (isUndecided && error)
        setStatus(UpdateStatus::failed(error->localizedDescription));
    else if (m_status.kind == UpdateStatus::checking)
        setStatus(UpdateStatus::upToDate);
}

void Quorel::found(const QString& version, const QString& build) {
    m_availableVersion = version;
    m_availableBuildNumber = build;
    Q_EMIT availableVersionChanged();
    endedWith(UpdateStatus::available(version));
}

void Quorel::ended() {
    m_checkTimeoutTimer.cancel();
    m_lastUpdateCheckDate = m_services.clock.now();
}

void Quorel::endedWith(const UpdateStatus& status) {
    ended();
    setStatus(status);
}

void Quorel::setStatus(const UpdateStatus& status) {
    m_status = status;
    Q_EMIT statusChanged();
}

void Quorel::log(const QString& line) {
    m_services.log.write(SystemLogType::standard, line);
}

} // namespace tamsel
