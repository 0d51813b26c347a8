#pragma once

#include <QObject>

namespace tamsel {

class LaunchAtLoginMgr;
class NotificationCenter;
class UserDefaults;

/// The switches on the dashboard, kept in the user defaults. Main thread.
class DashboardSettings final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives this object.
    DashboardSettings(UserDefaults& defaults, NotificationCenter& notifications,
                      LaunchAtLoginMgr& launchAtLogin);

    bool isLaunchAtLoginEnabled() const { return m_isLaunchAtLoginEnabled; }
    bool showInMenuBar() const { return m_showInMenuBar; }
    /// The master switch.
    bool remappingEnabled() const { return m_remappingEnabled; }

    /// Reads again what others may have changed: all but the master switch.
    void load();
    void setLaunchAtLoginEnabled(bool enabled);
    void setShowInMenuBar(bool show);
    void setRemappingEnabled(bool enabled);

signals:
    void changed();

private:
    UserDefaults& m_defaults;
    NotificationCenter& m_notifications;
    LaunchAtLoginMgr& m_launchAtLogin;
    bool m_isLaunchAtLoginEnabled = false;
    bool m_showInMenuBar = true;
    bool m_remappingEnabled = true;
};

} // namespace tamsel
