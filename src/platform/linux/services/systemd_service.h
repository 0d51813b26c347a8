#pragma once

#include "platform/linux/services/systemd_unit.h"
#include "platform/service_management.h"

#include <optional>

namespace tamsel {

/// A service as a unit of systemd's: registered means enabled and running. Registering enables and
/// starts it, unregistering disables and stops it; polkit may ask the user in between.
class SystemdService final : public ServiceHandle {
public:
    SystemdService(const QDBusConnection& bus, const QString& unit);

    /// As of the last answer; asking has it read anew.
    ServiceStatus status() override;
    ServiceResult registerService() override;
    ServiceResult unregisterService() override;

private:
    ServiceStatus knownStatus() const;
    void refresh();
    void takeFacts(const std::optional<UnitFacts>& facts);
    void announce();

    void begin(ServiceOperation operation);
    void run(ServiceOperation operation);
    void enable();
    void disable();
    /// Begins the operation's job, after the manager has read the unit files anew if they changed.
    void reloadAndRun(bool filesChanged);
    void runJob();
    void conclude(std::optional<ServiceError> error);
    void settle(std::optional<ServiceError> error);

    SystemdUnit m_unit;
    std::optional<UnitFacts> m_facts; ///< nothing before the first answer
    ServiceStatus m_announced = ServiceStatus::notRegistered;
    bool m_isRefreshing = false;
    bool m_isStale = false; ///< the unit has changed since m_isRefreshing began
    std::optional<ServiceOperation> m_running;
    std::optional<ServiceOperation> m_next; ///< what was asked for while m_running went on
};

} // namespace tamsel
