#pragma once

#include "app/daemon_poll.h"
#include "app/dashboard_settings.h"
#include "app/status_card.h"

#include <QList>

namespace tamsel {

class AppDelegate;
class Bundle;
class DaemonMgr;
class DaemonXPCClient;
class LaunchAtLoginMgr;
class NotificationCenter;
class PermissionMgr;
class Quorel;
class SettingsPanes;
class SystemExtensionMgr;
class UpdateMgr;
class UserDefaults;

/// What the dashboard works with; all of it outlives the model.
struct DashboardServices {
    MainQueue& queue;
    UserDefaults& defaults;
    NotificationCenter& notifications;
    const Bundle& bundle;
    SettingsPanes& settings;
    DaemonXPCClient& daemon;
    DaemonMgr& daemonMgr;
    SystemExtensionMgr& sysExtMgr;
    UpdateMgr& updateMgr;
    Quorel& quorel;
    PermissionMgr& permission;
    LaunchAtLoginMgr& launchAtLogin;
    AppDelegate& delegate;
};

/// The dashboard: whether remapping works and, if not, what is at fault and what helps; the master
/// switch, the application's own switches, the full quit. It polls the daemon while it is shown.
/// Main thread.
class DashboardVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isLaunchAtLoginEnabled READ isLaunchAtLoginEnabled NOTIFY settingsChanged)
    Q_PROPERTY(bool showInMenuBar READ showInMenuBar NOTIFY settingsChanged)
    Q_PROPERTY(bool remappingEnabled READ remappingEnabled NOTIFY settingsChanged)
    Q_PROPERTY(bool showFullQuitConfirm READ showFullQuitConfirm WRITE setShowFullQuitConfirm NOTIFY
                   showFullQuitConfirmChanged)
    Q_PROPERTY(QString latestChangelog READ latestChangelog NOTIFY latestChangelogChanged)
    Q_PROPERTY(QString version READ version CONSTANT)
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY statusChanged)
    Q_PROPERTY(QString statusLine READ statusLine NOTIFY statusChanged)
    Q_PROPERTY(QList<tamsel::StatusCard> cards READ cards NOTIFY cardsChanged)

public:
    /// StatusCard::Tone, in its order.
    enum Tone { Neutral, Warning, Error, Accent };
    Q_ENUM(Tone)

    explicit DashboardVM(const DashboardServices& services, QObject* parent = nullptr);

    bool isLaunchAtLoginEnabled() const { return m_settings.isLaunchAtLoginEnabled(); }
    bool showInMenuBar() const { return m_settings.showInMenuBar(); }
    bool remappingEnabled() const { return m_settings.remappingEnabled(); }
    bool showFullQuitConfirm() const { return m_showFullQuitConfirm; }
    void setShowFullQuitConfirm(bool show);
    const QString& latestChangelog() const { return m_latestChangelog; }
    /// The application's short version.
    QString version() const;

    const DaemonPoll& poll() const { return m_poll; }

    /// The daemon says that remapping works.
    bool isRunning() const { return m_poll.isRemapping(); }
    /// The daemon's status in words, translated; empty before its first reply.
    QString statusLine() const;
    /// Those that concern the user now, in their order.
    const QList<StatusCard>& cards() const { return m_cards; }

    /// The screen is shown, is not shown any more.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear();

    Q_INVOKABLE void setRemappingEnabled(bool enabled);
    Q_INVOKABLE void setLaunchAtLoginEnabled(bool enabled);
    Q_INVOKABLE void setShowInMenuBar(bool show);
    /// The full quit's question was answered with yes.
    Q_INVOKABLE void fullQuit();
    /// The button of the card with this id was pressed.
    Q_INVOKABLE void act(const QString& cardId);

signals:
    void settingsChanged();
    void showFullQuitConfirmChanged();
    void latestChangelogChanged();
    void statusChanged();
    void cardsChanged();

private:
    void becameActive();
    void openExtensionSettings();
    QList<StatusCard> currentCards() const;
    void updateCards();

    DashboardServices m_services;
    DashboardSettings m_settings;
    DaemonPoll m_poll;
    bool m_showFullQuitConfirm = false;
    QString m_latestChangelog;
    QList<StatusCard> m_cards;
};

} // namespace tamsel
