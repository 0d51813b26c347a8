#pragma once

#include "platform/service_management.h"

#include <memory>

namespace tamsel {

class Logger;
class UserDefaults;

/// Makes the application start when the user logs in. The setting is the system's; nothing of it
/// is kept here. Main thread.
class LaunchAtLoginMgr final {
public:
    static constexpr QStringView hasSetupKey = u"HasSetupLaunchAtLogin";

    LaunchAtLoginMgr(ServiceManagement& services, UserDefaults& defaults, Logger& logger);

    ServiceResult enable() { return m_mainApp->registerService(); }
    ServiceResult disable() { return m_mainApp->unregisterService(); }
    bool isEnabled() const { return m_mainApp->status() == ServiceStatus::enabled; }

    /// Turns it on at the user's first launch, and only then: whoever turns it off later keeps it
    /// off, and a failure is not tried again. Nothing is turned on when the store can't take that
    /// note, since every later launch would then be the first one.
    void runFirstLaunchStep();

    /// A switch was moved to `enabled`; a failure is logged. Gives what the switch shall show.
    bool switchTo(bool enabled);

private:
    void logEnableFailure(const QString& description);

    UserDefaults& m_defaults;
    Logger& m_logger;
    std::unique_ptr<ServiceHandle> m_mainApp;
};

} // namespace tamsel
