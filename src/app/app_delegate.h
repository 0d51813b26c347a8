#pragma once

#include "app/daemon_setup.h"
#include "app/menu_bar_item.h"
#include "platform/application.h"
#include "platform/local_event_monitor.h"
#include "platform/main_queue.h"

#include <QObject>

#include <chrono>

namespace tamsel {

class LaunchAtLoginMgr;
class NotificationCenter;
class PowerOffAnnouncer;
class SystemExtensionMgr;

/// The platform and the managers that the program's life concerns; all outlive the delegate.
struct AppManagers {
    Application& application;
    StatusBar& statusBar;
    PowerOffAnnouncer& powerOff;
    LocalEvents& localEvents;
    NotificationCenter& notifications;
    UserDefaults& defaults;
    const Bundle& bundle;
    MainQueue& queue;
    Logger& logger;
    DaemonXPCClient& daemon;
    DaemonMgr& daemonMgr;
    SystemExtensionMgr& sysExtMgr;
    LaunchAtLoginMgr& launchAtLogin;
    UpdateMgr& updateMgr;
};

/// The program's spine: its start, its window and icon, and its end. Closing the window, the quit
/// keys and every ordinary request to end only hide the application; it ends in a full quit or
/// when the machine goes down. Main thread.
class AppDelegate final : public QObject, public ApplicationDelegate {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds powerOffWindow{30'000};
    static constexpr std::chrono::milliseconds accessoryDelay{100};
    static constexpr std::chrono::milliseconds renewDelay{500};
    static constexpr std::chrono::milliseconds navigateDelay{100};
    static constexpr std::chrono::milliseconds fullQuitDelay{300};

    explicit AppDelegate(const AppManagers& managers, QObject* parent = nullptr);
    ~AppDelegate() override;

    void applicationDidFinishLaunching() override;
    TerminateReply applicationShouldTerminate() override;
    void applicationWillTerminate() override;
    bool applicationShouldTerminateAfterLastWindowClosed() const override { return false; }
    bool applicationShouldHandleReopen(bool hasVisibleWindows) override;
    void applicationOpenURLs(const QStringList& urls) override;
    bool windowShouldClose(const AppWindow& window) override;

    /// Makes the main window at the first call, and brings it to the front at every one.
    void openMainWindow();

    /// A full quit is under way: the application may end.
    bool isFullQuit() const { return m_isFullQuit; }
    void setFullQuit() { m_isFullQuit = true; }
    /// Stops the daemon and the agent, and ends the application a moment later.
    void fullQuit();

private:
    void powerOffAnnounced();
    void installCmdQMonitor();
    LocalEvents::Verdict handleCmdQ(const LocalKeyEvent& event);
    void hideToBackground();
    void becomeAccessory();

    AppManagers m_managers;
    DaemonSetup m_daemonSetup;
    MenuBarItem m_menuBarItem;
    AppWindow* m_mainWindow = nullptr; ///< the application's, for the whole run
    std::unique_ptr<LocalEventMonitor> m_cmdQMonitor;
    bool m_isFullQuit = false;
    bool m_isPoweringOff = false;
    TaskHandle m_powerOffResetItem;
    TaskHandle m_hiding; ///< the next step of going to the background
    TaskHandle m_pendingQuit;
};

} // namespace tamsel
