#include "app/dashboard_settings.h"

#include "app/launch_at_login_mgr.h"
#include "platform/notification_center.h"
#include "platform/user_defaults.h"

namespace tamsel {

namespace {

const QString showInMenuBarKey = QStringLiteral("ShowInMenuBar");
const QString remappingEnabledKey = QStringLiteral("KeyboardRemappingEnabled");

} // namespace

DashboardSettings::DashboardSettings(UserDefaults& defaults, NotificationCenter& notifications,
                                     LaunchAtLoginMgr& launchAtLogin)
    : m_defaults(defaults),
      m_notifications(notifications),
      m_launchAtLogin(launchAtLogin),
      m_remappingEnabled(defaults.boolForKey(remappingEnabledKey).value_or(true)) {}

void DashboardSettings::load() {
    m_isLaunchAtLoginEnabled = m_launchAtLogin.isEnabled();
    m_showInMenuBar = m_defaults.boolForKey(showInMenuBarKey).value_or(true);
    Q_EMIT changed();
}

void DashboardSettings::setLaunchAtLoginEnabled(bool enabled) {
    m_isLaunchAtLoginEnabled = m_launchAtLogin.switchTo(enabled);
    Q_EMIT changed();
}

void DashboardSettings::setShowInMenuBar(bool show) {
    m_showInMenuBar = show;
    static_cast<void>(m_defaults.setBool(show, showInMenuBarKey));
    Q_EMIT changed();
    Q_EMIT m_notifications.menuBarVisibilityChanged();
}

void DashboardSettings::setRemappingEnabled(bool enabled) {
    m_remappingEnabled = enabled;
    static_cast<void>(m_defaults.setBool(enabled, remappingEnabledKey));
    Q_EMIT changed();
}

} // namespace tamsel
