#pragma once

#include "platform/service_management.h"

#include <QList>
#include <QPointer>

namespace tamsel {

class Bundle;
class EmbeddedService;
class MainQueue;

/// The services where they are on this machine: at the address that the environment names, where
/// they always run and are never touched; else as systemd's units, if they are installed; else as
/// programs of the bundle that this process starts itself.
class LinuxServiceManagement final : public ServiceManagement {
public:
    enum class Kind { fixed, systemd, embedded };
    /// What the environment and the installed units call for.
    static Kind kindHere();

    /// `applicationProgram` is the absolute path of what the login item starts.
    LinuxServiceManagement(Kind kind, const Bundle& bundle, MainQueue& queue,
                           QString applicationProgram);

    std::unique_ptr<ServiceHandle> daemonService(const QString& plistName) override;
    std::unique_ptr<ServiceHandle> agentService(const QString& plistName) override;
    std::unique_ptr<ServiceHandle> mainAppService() override;

    /// Ends the programs that this process has started, and only them. For the very end: blocks
    /// until they are gone, at worst for the time it takes to kill one that does not listen.
    void endOwnPrograms();

private:
    std::unique_ptr<ServiceHandle> embedded(std::unique_ptr<EmbeddedService> service);

    Kind m_kind;
    const Bundle& m_bundle;
    MainQueue& m_queue;
    QString m_applicationProgram;
    QList<QPointer<EmbeddedService>> m_embedded;
};

} // namespace tamsel
