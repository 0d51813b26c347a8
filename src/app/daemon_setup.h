#pragma once

#include "platform/main_queue.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <memory>

namespace tamsel {

class Bundle;
class DaemonMgr;
class DaemonXPCClient;
class Logger;

/// What the set-up of the daemon works with; all of it outlives the object.
struct DaemonSetupManagers {
    MainQueue& queue;
    Logger& logger;
    const Bundle& bundle;
    DaemonXPCClient& daemon;
    DaemonMgr& daemonMgr;
};

/// Brings the daemon up at the start: registers the services, repairs a registration that does not
/// run, connects, restarts a daemon of another build, and sends the configuration. Main thread.
class DaemonSetup final : public QObject {
public:
    static constexpr std::chrono::milliseconds cleanUpDelay{1500}; ///< unregister -> register
    static constexpr std::chrono::milliseconds connectDelay{2000}; ///< register -> connect
    static constexpr std::chrono::milliseconds versionTimeout{5000};

    explicit DaemonSetup(const DaemonSetupManagers& managers, QObject* parent = nullptr);

    void setupDaemon();
    /// Takes back every step that is still to come, so that nothing brings the daemon up again.
    void stop();

private:
    void connectAfterDelay();
    void checkDaemonVersion();
    void decide(bool& handled, const QString& appVersion, const QString& daemonVersion);
    void restartDaemon();
    void reconnectRestarted();
    void sendStoredConfig();

    DaemonSetupManagers m_managers;
    TaskHandle m_nextStep; ///< the steps wait one for another
    TaskHandle m_versionTimeout;
    std::shared_ptr<bool> m_handled; ///< of the version check that was begun last
    /// A caller's connect took the place of a reconnect, which would have sent the configuration.
    bool m_owesConfig = false;
};

} // namespace tamsel
