#pragma once

#include <QObject>

namespace tamsel {

class DaemonMgr;
class DaemonXPCClient;
class LaunchAtLoginMgr;
class Logger;
class MainQueue;
class StorageMgr;
class SystemExtensionMgr;

/// The managers that a start and an end of the program concern; all outlive the delegate.
struct AppManagers {
    MainQueue& queue;
    Logger& logger;
    StorageMgr& storage;
    DaemonXPCClient& daemon;
    DaemonMgr& daemonMgr;
    SystemExtensionMgr& sysExtMgr;
    LaunchAtLoginMgr& launchAtLogin;
};

/// The program's spine: what happens at its start and at its end. Main thread.
class AppDelegate final : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(AppManagers managers, QObject* parent = nullptr);

    /// The window is up: the login item at the first launch, the driver, the services, then the
    /// connection to the daemon and the configuration.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();

private:
    void setupDaemon();
    void sendStoredConfig();

    AppManagers m_managers;
};

} // namespace tamsel
