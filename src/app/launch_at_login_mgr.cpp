#include "app/launch_at_login_mgr.h"

#include "log/logger.h"
#include "platform/user_defaults.h"

namespace tamsel {

LaunchAtLoginMgr::LaunchAtLoginMgr(ServiceManagement& services, UserDefaults& defaults,
                                   Logger& logger)
    : m_defaults(defaults), m_logger(logger), m_mainApp(services.mainAppService()) {}

void LaunchAtLoginMgr::runFirstLaunchStep() {
    const QString key = hasSetupKey.toString();
    const auto isDone = m_defaults.contains(key);
    if (isDone && *isDone)
        return;
    const auto noted = isDone ? m_defaults.setBool(true, key) : tl::unexpected(isDone.error());
    if (!noted) {
        logEnableFailure(QString::fromStdString(noted.error().description()));
        return;
    }
    if (const ServiceResult enabled = enable(); !enabled)
        logEnableFailure(enabled.error().localizedDescription);
    else
        m_logger.info(QStringLiteral("[AppDelegate] 首次啟動：已啟用開機啟動"));
}

bool LaunchAtLoginMgr::switchTo(bool enabled) {
    const ServiceResult switched = enabled ? enable() : disable();
    if (switched)
        return enabled;
    m_logger.error(QStringLiteral("切換開機啟動失敗: ") + switched.error().localizedDescription);
    return !enabled;
}

void LaunchAtLoginMgr::logEnableFailure(const QString& description) {
    m_logger.error(QStringLiteral("[AppDelegate] 啟用開機啟動失敗: ") + description);
}

} // namespace tamsel
