#pragma once

#include "platform/service_management.h"

#include <QList>
#include <QPointer>

#include <optional>

namespace tamsel {

class EmbeddedService;
class MainQueue;

/// Where the services are.
struct ServicePlaces {
    /// Somebody else's, where they always run and are never touched; systemd's units; or programs
    /// that this process starts itself, per user.
    enum class Kind { fixed, systemd, embedded };

    Kind kind = Kind::embedded;
    std::optional<QString> daemonProgram = {};
    QString daemonSocket = {}; ///< that the embedded daemon listens on
    std::optional<QString> agentProgram = {};
    QString agentLock = {};   ///< that an agent holds while it runs
    QString application = {}; ///< the absolute path of what the login item starts
};

class LinuxServiceManagement final : public ServiceManagement {
public:
    LinuxServiceManagement(ServicePlaces places, MainQueue& queue)
        : m_places(std::move(places)), m_queue(queue) {}

    std::unique_ptr<ServiceHandle> daemonService(const QString& plistName) override;
    std::unique_ptr<ServiceHandle> agentService(const QString& plistName) override;
    std::unique_ptr<ServiceHandle> mainAppService() override;

    /// Ends the programs that this process has started, and only them. For the very end: blocks
    /// until they are gone, at worst for the time it takes to kill one that does not listen.
    void endOwnPrograms();

private:
    std::unique_ptr<ServiceHandle> embedded(std::unique_ptr<EmbeddedService> service);

    const ServicePlaces m_places;
    MainQueue& m_queue;
    QList<QPointer<EmbeddedService>> m_embedded;
};

} // namespace tamsel
