#include "app/app_delegate.h"

#include "app/launch_at_login_mgr.h"
#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "driver/system_extension_mgr.h"
#include "log/logger.h"
#include "platform/app_window.h"
#include "platform/notification_center.h"
#include "platform/power_off_announcer.h"
#include "platform/user_defaults.h"
#include "update/update_mgr.h"

#include <QUrl>

namespace tamsel {

namespace {

constexpr int toolTipDelay = 100; // milliseconds
/// Desktops here have Control where others have Command; either counts.
constexpr std::uint32_t commandModifiers = ModifierFlags::command | ModifierFlags::control;
const QString urlScheme = QStringLiteral("tamsel:");

} // namespace

AppDelegate::AppDelegate(const AppManagers& managers, QObject* parent)
    : QObject(parent),
      m_managers(managers),
      m_daemonSetup(
          {managers.queue, managers.logger, managers.bundle, managers.daemon, managers.daemonMgr}),
      m_menuBarItem(managers.statusBar, managers.defaults, managers.queue, managers.updateMgr) {
    connect(&m_menuBarItem, &MenuBarItem::clicked, this, &AppDelegate::openMainWindow);
    connect(&managers.updateMgr, &UpdateMgr::readyToInstall, this, &AppDelegate::openMainWindow);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    Logger& logger = m_managers.logger;
    logger.info(QStringLiteral("[AppDelegate] applicationDidFinishLaunching"));
    connect(&m_managers.powerOff, &PowerOffAnnouncer::willPowerOff, this,
            &AppDelegate::powerOffAnnounced);
    static_cast<void>(
        m_managers.defaults.setInteger(toolTipDelay, QStringLiteral("NSInitialToolTipDelay")));
    openMainWindow();
    m_menuBarItem.updateMenuBarVisibility();
    installCmdQMonitor();
    connect(&m_managers.notifications, &NotificationCenter::menuBarVisibilityChanged,
            &m_menuBarItem, &MenuBarItem::updateMenuBarVisibility);
    m_managers.launchAtLogin.runFirstLaunchStep();
    logger.info(QStringLiteral("[AppDelegate] 準備加載 DriverKit 擴展..."));
    m_managers.queue.async(this, [this] {
        m_managers.logger.info(QStringLiteral("[AppDelegate] 調用 loadExtension..."));
        m_managers.sysExtMgr.loadExtension();
    });
    m_managers.queue.async(this, [this] { m_daemonSetup.setupDaemon(); });
}

void AppDelegate::powerOffAnnounced() {
    m_isPoweringOff = true;
    m_powerOffResetItem =
        m_managers.queue.after(powerOffWindow, [this] { m_isPoweringOff = false; });
}

void AppDelegate::openMainWindow() {
    Application& application = m_managers.application;
    const bool isNew = !m_mainWindow;
    if (isNew)
        m_mainWindow = application.makeMainWindow();
    if (!m_mainWindow)
        return;
    const bool wasVisible = m_mainWindow->isVisible();
    if (application.activationPolicy() != ActivationPolicy::regular)
        application.setActivationPolicy(ActivationPolicy::regular);
    application.activate();
    m_mainWindow->makeKeyAndOrderFront();
    if (!isNew && !wasVisible)
        Q_EMIT m_managers.notifications.mainWindowReopen();
}

void AppDelegate::hideToBackground() {
    m_managers.application.orderOutWindows();
    Q_EMIT m_managers.notifications.applicationDidHide();
    m_hiding = m_managers.queue.after(accessoryDelay, [this] { becomeAccessory(); });
}

void AppDelegate::becomeAccessory() {
    // Without an icon nothing but its entry in the task bar leads back to the application.
    if (m_managers.application.hasVisibleWindows() || !m_menuBarItem.hasStatusItem())
        return;
    m_managers.application.setActivationPolicy(ActivationPolicy::accessory);
    m_hiding = m_managers.queue.after(renewDelay, [this] { m_menuBarItem.renew(); });
}

bool AppDelegate::windowShouldClose(const AppWindow& window) {
    if (!m_mainWindow || &window != m_mainWindow)
        return true;
    hideToBackground();
    return false;
}

bool AppDelegate::applicationShouldHandleReopen(bool) {
    openMainWindow();
    return false;
}

void AppDelegate::applicationOpenURLs(const QStringList& urls) {
    for (const QString& text : urls) {
        // The scheme as it is written: a QUrl's is in lower case.
        if (!text.startsWith(urlScheme, Qt::CaseSensitive))
            continue;
        const QString page = QUrl(text).host();
        openMainWindow();
        m_managers.queue.after(this, navigateDelay, [this, page] {
            Q_EMIT m_managers.notifications.navigateToPage(page);
        });
    }
}

void AppDelegate::installCmdQMonitor() {
    if (!m_cmdQMonitor)
        m_cmdQMonitor = m_managers.localEvents.addMonitor(
            LocalKeyKind::keyDown,
            [this](const LocalKeyEvent& event) { return handleCmdQ(event); });
}

LocalEvents::Verdict AppDelegate::handleCmdQ(const LocalKeyEvent& event) {
    if (!(event.modifierFlags & commandModifiers) || event.charactersIgnoringModifiers != u"q" ||
        m_isFullQuit)
        return LocalEvents::Verdict::pass;
    hideToBackground();
    return LocalEvents::Verdict::swallow;
}

TerminateReply AppDelegate::applicationShouldTerminate() {
    if (m_isFullQuit || m_isPoweringOff)
        return TerminateReply::now;
    hideToBackground();
    return TerminateReply::cancel;
}

void AppDelegate::applicationWillTerminate() {
    m_managers.daemon.disconnect();
    m_managers.logger.info(QStringLiteral("[AppDelegate] App 退出，XPC 已斷開"));
}

void AppDelegate::fullQuit() {
    // A start that is still under way would register the services again.
    m_daemonSetup.stop();
    m_managers.daemonMgr.unregisterServices();
    m_managers.daemon.disconnect();
    m_pendingQuit = m_managers.queue.after(fullQuitDelay, [this] {
        setFullQuit();
        m_managers.application.terminate();
    });
}

} // namespace tamsel
