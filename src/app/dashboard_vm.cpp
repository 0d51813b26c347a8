#include "app/dashboard_vm.h"

#include "app/app_delegate.h"
#include "app/changelog.h"
#include "app/dashboard_cards.h"
#include "app/launch_at_login_mgr.h"
#include "app/permission_mgr.h"
#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "driver/system_extension_mgr.h"
#include "platform/bundle.h"
#include "platform/notification_center.h"
#include "platform/settings_panes.h"
#include "platform/user_defaults.h"
#include "update/update_mgr.h"

#include <QPointer>

#include <utility>

namespace tamsel {

namespace {

const QString showInMenuBarKey = QStringLiteral("ShowInMenuBar");
const QString remappingEnabledKey = QStringLiteral("KeyboardRemappingEnabled");

} // namespace

DashboardVM::DashboardVM(const DashboardServices& services, QObject* parent)
    : QObject(parent),
      m_services(services),
      m_remappingEnabled(services.defaults.boolForKey(remappingEnabledKey).value_or(true)) {
    connect(&services.notifications, &NotificationCenter::applicationDidBecomeActive, this,
            &DashboardVM::becameActive);
    connect(&services.daemonMgr, &DaemonMgr::isInstalledChanged, this, &DashboardVM::updateCards);
    connect(&services.daemonMgr, &DaemonMgr::isRunningChanged, this, &DashboardVM::updateCards);
    connect(&services.sysExtMgr, &SystemExtensionMgr::isLoadedChanged, this,
            &DashboardVM::updateCards);
    connect(&services.sysExtMgr, &SystemExtensionMgr::needsApprovalChanged, this,
            &DashboardVM::updateCards);
    connect(&services.sysExtMgr, &SystemExtensionMgr::statusChanged, this,
            &DashboardVM::updateCards);
    connect(&services.updateMgr, &UpdateMgr::checkStatusChanged, this, &DashboardVM::updateCards);
    connect(&services.updateMgr, &UpdateMgr::failedUpdateChanged, this, &DashboardVM::updateCards);
    connect(this, &DashboardVM::statusChanged, this, &DashboardVM::updateCards);
    connect(this, &DashboardVM::settingsChanged, this, &DashboardVM::updateCards);
    updateCards();
}

void DashboardVM::setShowFullQuitConfirm(bool show) {
    if (std::exchange(m_showFullQuitConfirm, show) != show)
        Q_EMIT showFullQuitConfirmChanged();
}

QString DashboardVM::version() const {
    return m_services.bundle.infoString(QStringLiteral("CFBundleShortVersionString"))
        .value_or(QString());
}

bool DashboardVM::isRunning() const {
    return m_status.hasDaemonStatus &&
           protocol::status::canonical(m_status.daemonStatusText.toStdString()) ==
               protocol::status::running;
}

QString DashboardVM::statusLine() const {
    return m_status.hasDaemonStatus ? daemonStatusLine(m_status.daemonStatusText) : QString();
}

void DashboardVM::appear() {
    loadSettings();
    m_services.daemonMgr.refreshStatus();
    m_services.permission.checkPermission();
    startPolling();
    m_latestChangelog = loadLatestChangelog(m_services.bundle);
    Q_EMIT latestChangelogChanged();
}

void DashboardVM::disappear() {
    stopPolling();
}

void DashboardVM::loadSettings() {
    m_isLaunchAtLoginEnabled = m_services.launchAtLogin.isEnabled();
    m_showInMenuBar = m_services.defaults.boolForKey(showInMenuBarKey).value_or(true);
    Q_EMIT settingsChanged();
}

void DashboardVM::startPolling() {
    stopPolling();
    m_pollTickCount = 0;
    Status status = m_status;
    status.daemonUnresponsive = false;
    setStatus(status);
    fetchStatus(Counting::no);
    m_pollTimer = m_services.queue.every(pollInterval, [this] {
        m_services.queue.async(this, [this] {
            // The last firing may come after the end of the polling.
            if (m_pollTimer)
                fetchStatus(Counting::yes);
        });
    });
}

void DashboardVM::stopPolling() {
    m_pollTimer.cancel();
}

void DashboardVM::becameActive() {
    m_services.daemonMgr.refreshStatus();
    m_services.permission.checkPermission();
    fetchStatus(Counting::no);
}

bool DashboardVM::isDaemonUp() const {
    return m_services.daemonMgr.isInstalled() && m_services.daemonMgr.isRunning();
}

void DashboardVM::fetchStatus(Counting counting) {
    if (!isDaemonUp()) {
        m_services.daemonMgr.refreshStatus();
        m_pollTickCount = 0;
        setStatus({});
        return;
    }
    if (counting == Counting::yes && ++m_pollTickCount >= unresponsiveAfter) {
        Status status = m_status;
        status.daemonUnresponsive = true;
        setStatus(status);
    }
    MainQueue& queue = m_services.queue;
    const QPointer<DashboardVM> weak(this);
    const auto applyLater = [&queue, weak](bool isGrabbing, bool driverConnected,
                                           const QString& statusText) {
        queue.async(nullptr, [=] {
            if (weak)
                weak->apply(isGrabbing, driverConnected, statusText);
        });
    };
    const auto remote = proxy();
    if (!remote) {
        const auto& text = protocol::status::notConnected;
        applyLater(false, false, QString::fromUtf8(text.data(), qsizetype(text.size())));
        return;
    }
    remote->getStatus(
        [applyLater](bool isGrabbing, bool driverConnected, const std::string& statusText) {
            applyLater(isGrabbing, driverConnected, QString::fromStdString(statusText));
        });
}

void DashboardVM::apply(bool isGrabbing, bool driverConnected, const QString& statusText) {
    m_pollTickCount = 0;
    const std::string code = statusText.toStdString();
    setStatus({true, driverConnected, code == protocol::status::tccDenied, statusText, false});
    alignDaemon(isGrabbing);
}

void DashboardVM::alignDaemon(bool isGrabbing) {
    if (m_remappingEnabled && !isGrabbing && m_services.sysExtMgr.isLoaded() &&
        !m_status.daemonTccDenied)
        sendGrabbingOrder(true);
    else if (!m_remappingEnabled && isGrabbing)
        sendGrabbingOrder(false);
}

std::shared_ptr<TamselDaemonProtocol> DashboardVM::proxy() {
    if (!m_services.daemon.hasConnection())
        m_services.daemon.connect();
    return m_services.daemon.proxy();
}

void DashboardVM::sendGrabbingOrder(bool start) {
    const auto remote = proxy();
    if (!remote)
        return;
    const auto ignored = [](bool) {};
    if (start)
        remote->startGrabbing(ignored);
    else
        remote->stopGrabbing(ignored);
}

void DashboardVM::setStatus(const Status& status) {
    if (m_status == status)
        return;
    m_status = status;
    Q_EMIT statusChanged();
}

void DashboardVM::setRemappingEnabled(bool enabled) {
    m_remappingEnabled = enabled;
    static_cast<void>(m_services.defaults.setBool(enabled, remappingEnabledKey));
    Q_EMIT settingsChanged();
    sendGrabbingOrder(enabled);
}

void DashboardVM::setLaunchAtLoginEnabled(bool enabled) {
    m_isLaunchAtLoginEnabled = m_services.launchAtLogin.switchTo(enabled);
    Q_EMIT settingsChanged();
}

void DashboardVM::setShowInMenuBar(bool show) {
    m_showInMenuBar = show;
    static_cast<void>(m_services.defaults.setBool(show, showInMenuBarKey));
    Q_EMIT settingsChanged();
    Q_EMIT m_services.notifications.menuBarVisibilityChanged();
}

void DashboardVM::fullQuit() {
    setShowFullQuitConfirm(false);
    // A poll would connect again.
    stopPolling();
    m_services.delegate.fullQuit();
}

void DashboardVM::act(const QString& cardId) {
    if (cardId == dashboardCard::driver) {
        if (m_services.sysExtMgr.needsApproval())
            openExtensionSettings();
        else
            m_services.sysExtMgr.loadExtension();
    } else if (cardId == dashboardCard::service) {
        if (m_services.daemonMgr.daemonStatus() == ServiceStatus::requiresApproval)
            m_services.settings.openLoginItems();
        else
            m_services.daemonMgr.registerServices();
    } else if (cardId == dashboardCard::connection) {
        openExtensionSettings();
    } else if (cardId == dashboardCard::permission) {
        m_services.settings.open(settingsPane::inputMonitoring);
    } else if (cardId == dashboardCard::update) {
        m_services.delegate.setFullQuit();
        m_services.quorel.installAndRelaunch();
    } else if (cardId == dashboardCard::failedUpdate) {
        m_services.updateMgr.failedUpdateRead();
    }
}

void DashboardVM::openExtensionSettings() {
    m_services.settings.open(m_services.settings.systemVersion() >= 15
                                 ? settingsPane::extensions
                                 : settingsPane::extensionsBefore15);
}

QList<StatusCard> DashboardVM::currentCards() const {
    return dashboardCards({
        .driverLoaded = m_services.sysExtMgr.isLoaded(),
        .driverNeedsApproval = m_services.sysExtMgr.needsApproval(),
        .driverText = m_services.sysExtMgr.status().displayText(),
        .daemonUp = isDaemonUp(),
        .daemonNeedsApproval =
            m_services.daemonMgr.daemonStatus() == ServiceStatus::requiresApproval,
        .hasDaemonStatus = m_status.hasDaemonStatus,
        .daemonUnresponsive = m_status.daemonUnresponsive,
        .driverConnected = m_status.driverConnected,
        .daemonTccDenied = m_status.daemonTccDenied,
        .statusLine = statusLine(),
        .remappingEnabled = m_remappingEnabled,
        .updateReady = m_services.updateMgr.checkStatus().kind == UpdateStatus::readyToInstall,
        .failedUpdate = m_services.updateMgr.failedUpdate(),
    });
}

void DashboardVM::updateCards() {
    QList<StatusCard> cards = currentCards();
    if (cards == m_cards)
        return;
    m_cards = std::move(cards);
    Q_EMIT cardsChanged();
}

} // namespace tamsel
