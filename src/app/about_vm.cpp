#include "app/about_vm.h"

#include "app/app_delegate.h"
#include "app/changelog.h"
#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"
#include "log/logger.h"
#include "platform/bundle.h"
#include "platform/workspace.h"
#include "update/update_mgr.h"

#include <utility>

namespace tamsel {

namespace {

const QString website = QStringLiteral("https://tamsel.app");

} // namespace

AboutVM::AboutVM(const AboutServices& services, QObject* parent)
    : QObject(parent), m_services(services), m_keyMonitor(services.localEvents, keys()) {
    connect(&services.updateMgr, &UpdateMgr::checkStatusChanged, this,
            &AboutVM::updateStatusChanged);
    connect(&services.updateMgr, &UpdateMgr::disableAutoCheckChanged, this,
            &AboutVM::disableAutoCheckChanged);
    connect(&services.logger, &Logger::recentLogsChanged, this, &AboutVM::logChanged);
}

KeyboardShortcutHandler::Shortcuts AboutVM::keys() {
    return {
        {u'w', [this] { selectTab(WhatsNew); }}, {u'l', [this] { selectTab(Logs); }},
        {u'f', [this] { selectTab(Feedback); }}, {u'd', [this] { selectTab(Advanced); }},
        {u'u', [this] { actOnUpdate(); }},       {u'k', [this] { openKeyViewer(); }},
    };
}

void AboutVM::appear() {
    m_keyMonitor.install();
    if (m_changelogText.isEmpty()) {
        m_changelogText = loadChangelog(m_services.bundle);
        Q_EMIT changelogTextChanged();
    }
    if (!disableAutoCheck())
        m_services.quorel.checkInBackground();
}

void AboutVM::disappear() {
    m_keyMonitor.remove();
}

void AboutVM::selectTab(AboutTab tab) {
    if (std::exchange(m_selectedTab, tab) != tab)
        Q_EMIT selectedTabChanged();
}

void AboutVM::setShowUninstallConfirm(bool show) {
    if (std::exchange(m_showUninstallConfirm, show) != show)
        Q_EMIT showUninstallConfirmChanged();
}

QString AboutVM::versionLine() const {
    const auto info = [this](const QString& key, const QString& missing) {
        return m_services.bundle.infoString(key).value_or(missing);
    };
    return QStringLiteral("v%1 (Build %2)")
        .arg(info(QStringLiteral("CFBundleShortVersionString"), QStringLiteral("1.0.0")),
             info(QStringLiteral("CFBundleVersion"), QStringLiteral("1")));
}

UpdateStatus AboutVM::updateStatus() const {
    return m_services.updateMgr.checkStatus();
}

QString AboutVM::updatedBy() const {
    return m_services.bundle.infoString(QStringLiteral("QLFeedURL"))
               ? QString()
               : tr("This copy is updated by your system's package manager.");
}

bool AboutVM::disableAutoCheck() const {
    return m_services.updateMgr.disableAutoCheck();
}

void AboutVM::setDisableAutoCheck(bool disable) {
    m_services.updateMgr.setDisableAutoCheck(disable);
}

void AboutVM::actOnUpdate() {
    switch (updateStatus().kind) {
    case UpdateStatus::updateAvailable:
        m_services.quorel.downloadAndInstall();
        break;
    case UpdateStatus::readyToInstall:
        m_services.delegate.setFullQuit();
        m_services.quorel.installAndRelaunch();
        break;
    case UpdateStatus::idle:
    case UpdateStatus::upToDate:
    case UpdateStatus::error:
        m_services.quorel.check(true);
        break;
    case UpdateStatus::checking:
    case UpdateStatus::downloading:
        break;
    }
}

void AboutVM::openWebsite() {
    m_services.workspace.openURL(QUrl(website), [](const Result<void>&) {});
}

int AboutVM::logCount() const {
    return static_cast<int>(m_services.logger.recentLogs().size());
}

QString AboutVM::logText() const {
    return m_services.logger.formattedText();
}

void AboutVM::copyLog() {
    m_services.logger.copyAll();
}

void AboutVM::clearLog() {
    m_services.logger.clear();
}

void AboutVM::uninstall() {
    setShowUninstallConfirm(false);
    m_services.daemonMgr.unregisterServices();
    m_services.sysExtMgr.unloadExtension();
    m_services.logger.info(QStringLiteral("系統組件已卸載（Daemon + System Extension）"));
}

} // namespace tamsel
