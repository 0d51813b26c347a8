#include "platform/linux/services/linux_service_management.h"

#include "protocol/socket_path.h"
#include "platform/bundle.h"
#include "platform/linux/services/autostart_entry.h"
#include "platform/linux/services/embedded_service.h"
#include "platform/linux/services/program_holders.h"
#include "platform/linux/services/service_errors.h"
#include "platform/linux/services/systemd_service.h"

namespace tamsel {

namespace {

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

LinuxServiceManagement::Kind LinuxServiceManagement::kindHere() {
    if (!qEnvironmentVariableIsEmpty("TAMSEL_DAEMON_ADDRESS"))
        return Kind::fixed;
    return protocol::systemUnitInstalled() ? Kind::systemd : Kind::embedded;
}

LinuxServiceManagement::LinuxServiceManagement(Kind kind, const Bundle& bundle, MainQueue& queue,
                                               QString applicationProgram)
    : m_kind(kind),
      m_bundle(bundle),
      m_queue(queue),
      m_applicationProgram(std::move(applicationProgram)) {}

std::unique_ptr<ServiceHandle> LinuxServiceManagement::daemonService(const QString& plistName) {
    if (m_kind == Kind::fixed)
        return std::make_unique<FixedService>();
    if (m_kind == Kind::systemd)
        return std::make_unique<SystemdService>(QDBusConnection::systemBus(), unitOf(plistName));
    const auto socket = QString::fromStdString(protocol::socketFile(protocol::userDaemonAddress()));
    return embedded(std::make_unique<EmbeddedService>(
        EmbeddedService::Program{
            m_bundle.pathForResource(QStringLiteral("tamsel-daemon"), QStringLiteral("app")),
            [socket] { return socketHolder(socket); }, [socket] { removeForgottenSocket(socket); }},
        m_queue));
}

std::unique_ptr<ServiceHandle> LinuxServiceManagement::agentService(const QString& plistName) {
    if (m_kind == Kind::fixed)
        return std::make_unique<FixedService>();
    if (m_kind == Kind::systemd)
        return std::make_unique<SystemdService>(QDBusConnection::sessionBus(), unitOf(plistName));
    const auto name = QStringLiteral("tamsel-agent");
    const auto lock = QString::fromStdString(protocol::userRuntimeFolder()) +
                      QStringLiteral("/tamsel/agent.lock");
    return embedded(std::make_unique<EmbeddedService>(
        EmbeddedService::Program{m_bundle.pathForResource(name, QStringLiteral("app")),
                                 [lock, name] { return lockHolder(lock, name); }},
        m_queue));
}

std::unique_ptr<ServiceHandle> LinuxServiceManagement::mainAppService() {
    return std::make_unique<AutostartEntry>(AutostartEntry::standardFile(), m_applicationProgram);
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
