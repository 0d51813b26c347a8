#pragma once

#include "platform/main_queue.h"

#include <QObject>

#include <chrono>

namespace tamsel {

class Application;
class DaemonMgr;
class DaemonXPCClient;
class LaunchAtLoginMgr;
class Logger;
class StorageMgr;
class SystemExtensionMgr;

/// The managers that a start and an end of the program concern; all outlive the delegate.
struct AppManagers {
    Application& application;
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
    static constexpr std::chrono::milliseconds fullQuitDelay{300};

    explicit AppDelegate(AppManagers managers, QObject* parent = nullptr);

    /// The window is up: the login item at the first launch, the driver, the services, then the
    /// connection to the daemon and the configuration.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();

    /// A full quit is under way: the application may end.
    bool isFullQuit() const { return m_isFullQuit; }
    void setFullQuit() { m_isFullQuit = true; }
    /// Stops the daemon and the agent, and ends the application a moment later.
    void fullQuit();

private:
    void setupDaemon();
    void sendStoredConfig();

    AppManagers m_managers;
    bool m_isFullQuit = false;
    TaskHandle m_pendingQuit;
};

} // namespace tamsel
