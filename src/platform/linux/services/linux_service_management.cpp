#include "platform/linux/services/linux_service_management.h"

#include "platform/linux/services/autostart_entry.h"
#include "platform/linux/services/embedded_service.h"
#include "platform/linux/services/program_holders.h"
#include "platform/linux/services/service_errors.h"
#include "platform/linux/services/systemd_service.h"

namespace tamsel {

namespace {

using Kind = ServicePlaces::Kind;

/// A service that somebody else looks after.
class FixedService final : public ServiceHandle {
public:
    ServiceStatus status() override { return ServiceStatus::enabled; }
    ServiceResult registerService() override { return tl::unexpected(alreadyRegistered()); }
    ServiceResult unregisterService() override { return {}; }
};

QString unitOf(QString plistName) {
    return plistName.replace(QStringLiteral(".plist"), QStringLiteral(".service"));
}

} // namespace

std::unique_ptr<ServiceHandle> LinuxServiceManagement::daemonService(const QString& plistName) {
    if (m_places.kind == Kind::fixed)
        return std::make_unique<FixedService>();
    if (m_places.kind == Kind::systemd)
        return std::make_unique<SystemdService>(QDBusConnection::systemBus(), unitOf(plistName));
    const QString& socket = m_places.daemonSocket;
    return embedded(std::make_unique<EmbeddedService>(
        EmbeddedService::Program{m_places.daemonProgram, [socket] { return socketHolder(socket); },
                                 [socket] { removeForgottenSocket(socket); }},
        m_queue));
}

std::unique_ptr<ServiceHandle> LinuxServiceManagement::agentService(const QString& plistName) {
    if (m_places.kind == Kind::fixed)
        return std::make_unique<FixedService>();
    if (m_places.kind == Kind::systemd)
        return std::make_unique<SystemdService>(QDBusConnection::sessionBus(), unitOf(plistName));
    return embedded(std::make_unique<EmbeddedService>(
        EmbeddedService::Program{m_places.agentProgram,
                                 [lock = m_places.agentLock] {
                                     return lockHolder(lock, QStringLiteral("tamsel-agent"));
                                 }},
        m_queue));
}

std::unique_ptr<ServiceHandle> LinuxServiceManagement::mainAppService() {
    return std::make_unique<AutostartEntry>(AutostartEntry::standardFile(), m_places.application);
}

std::unique_ptr<ServiceHandle>
LinuxServiceManagement::embedded(std::unique_ptr<EmbeddedService> service) {
    m_embedded.append(service.get());
    return service;
}

void LinuxServiceManagement::endOwnPrograms() {
    for (const auto& service : m_embedded)
        if (service)
            service->askOwnToEnd();
    for (const auto& service : m_embedded)
        if (service)
            service->awaitOwnEnd();
}

} // namespace tamsel
