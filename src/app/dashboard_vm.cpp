#include "app/dashboard_vm.h"

#include "app/app_delegate.h"
#include "app/changelog.h"
#include "app/dashboard_cards.h"
#include "app/permission_mgr.h"
#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"
#include "platform/bundle.h"
#include "platform/notification_center.h"
#include "platform/settings_panes.h"
#include "update/update_mgr.h"

#include <utility>

namespace tamsel {

DashboardVM::DashboardVM(const DashboardServices& services, QObject* parent)
    : QObject(parent),
      m_services(services),
      m_settings(services.defaults, services.notifications, services.launchAtLogin),
      m_poll({services.queue, services.daemon, services.daemonMgr, services.sysExtMgr},
             [this] { return m_settings.remappingEnabled(); }) {
    connect(&m_poll, &DaemonPoll::statusChanged, this, &DashboardVM::statusChanged);
    connect(&m_settings, &DashboardSettings::changed, this, &DashboardVM::settingsChanged);
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

QString DashboardVM::statusLine() const {
    const DaemonPoll::Status& status = m_poll.status();
    return status.hasDaemonStatus ? daemonStatusLine(status.daemonStatusText) : QString();
}

void DashboardVM::appear() {
    m_settings.load();
    m_services.daemonMgr.refreshStatus();
    m_services.permission.checkPermission();
    m_poll.start();
    m_latestChangelog = loadLatestChangelog(m_services.bundle);
    Q_EMIT latestChangelogChanged();
}

void DashboardVM::disappear() {
    m_poll.stop();
}

void DashboardVM::becameActive() {
    m_services.daemonMgr.refreshStatus();
    m_services.permission.checkPermission();
    m_poll.ask();
}

void DashboardVM::setRemappingEnabled(bool enabled) {
    m_settings.setRemappingEnabled(enabled);
    m_poll.orderGrabbing(enabled);
}

void DashboardVM::setLaunchAtLoginEnabled(bool enabled) {
    m_settings.setLaunchAtLoginEnabled(enabled);
}

void DashboardVM::setShowInMenuBar(bool show) {
    m_settings.setShowInMenuBar(show);
}

void DashboardVM::fullQuit() {
    setShowFullQuitConfirm(false);
    // A poll would connect again.
    m_poll.stop();
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
    const DaemonPoll::Status& status = m_poll.status();
    return dashboardCards({
        .driverLoaded = m_services.sysExtMgr.isLoaded(),
        .driverNeedsApproval = m_services.sysExtMgr.needsApproval(),
        .driverText = m_services.sysExtMgr.status().displayText(),
        .daemonUp = m_poll.isDaemonUp(),
        .daemonNeedsApproval =
            m_services.daemonMgr.daemonStatus() == ServiceStatus::requiresApproval,
        .hasDaemonStatus = status.hasDaemonStatus,
        .daemonUnresponsive = status.daemonUnresponsive,
        .driverConnected = status.driverConnected,
        .daemonTccDenied = status.daemonTccDenied,
        .statusLine = statusLine(),
        .remappingEnabled = m_settings.remappingEnabled(),
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
