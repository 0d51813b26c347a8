#pragma once

#include "platform/service_management.h"

#include <QObject>

#include <memory>

namespace tamsel {

class Bundle;
class Logger;

/// Registers and unregisters the two background services that come with the application, the
/// daemon and the user's agent, and publishes whether the daemon is installed and running. Nothing
/// is returned; outcomes are logged and published. Main thread.
///
/// `register` is a word of the language, hence registerServices() and unregisterServices().
class DaemonMgr final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isInstalled READ isInstalled NOTIFY isInstalledChanged)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)

public:
    /// Refreshes the status once. The collaborators must outlive it.
    DaemonMgr(ServiceManagement& services, const Bundle& bundle, Logger& logger,
              QObject* parent = nullptr);
    ~DaemonMgr() override;

    /// The daemon is registered: enabled or awaiting the user's approval.
    bool isInstalled() const { return m_isInstalled; }
    /// The daemon is enabled.
    bool isRunning() const { return m_isRunning; }
    /// The daemon's live status, which may be newer than the published pair.
    ServiceStatus daemonStatus() const { return m_daemonSvc->status(); }
    /// For logs; not translated.
    QString statusDescription() const;

    /// Registers both services, unless the daemon's program is missing from the bundle.
    void registerServices();
    void unregisterServices();
    /// Publishes the daemon's status; also happens by itself when the system announces a change.
    void refreshStatus();

signals:
    /// Emitted at every assignment, also of an equal value.
    void isInstalledChanged();
    void isRunningChanged();

private:
    void watch(ServiceHandle& service, const QString& label);
    void registerService(ServiceHandle& service, const QString& label);
    void unregisterService(ServiceHandle& service, const QString& label);
    void logFailure(ServiceOperation operation, const QString& label, const ServiceError& error);
    void publish(bool isInstalled, bool isRunning);

    const Bundle& m_bundle;
    Logger& m_logger;
    bool m_isInstalled = false;
    bool m_isRunning = false;
    std::unique_ptr<ServiceHandle> m_daemonSvc;
    std::unique_ptr<ServiceHandle> m_agentSvc;
};

} // namespace tamsel
