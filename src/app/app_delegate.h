#pragma once

namespace tamsel {

class DaemonXPCClient;
class Logger;
class StorageMgr;

/// The program's spine: what happens at its start and at its end. Main thread.
class AppDelegate final {
public:
    AppDelegate(DaemonXPCClient& daemon, StorageMgr& storage, Logger& logger)
        : m_daemon(daemon), m_storage(storage), m_logger(logger) {}

    /// The window is up: connect to the daemon and send it the configuration.
    void applicationDidFinishLaunching();
    void applicationWillTerminate();

private:
    DaemonXPCClient& m_daemon;
    StorageMgr& m_storage;
    Logger& m_logger;
};

} // namespace tamsel
