#pragma once

#include "app/status_card.h"
#include "platform/main_queue.h"

#include <QList>

#include <chrono>

namespace tamsel {

class AppDelegate;
class Bundle;
class DaemonMgr;
class DaemonXPCClient;
class LaunchAtLoginMgr;
class Logger;
class NotificationCenter;
class PermissionMgr;
class Quorel;
class SettingsPanes;
class SystemExtensionMgr;
class TamselDaemonProtocol;
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
/// switch, the application's own switches, the full quit. It asks the daemon for its status every
/// three seconds while it is shown, and brings the daemon in line with the master switch. Main
/// thread.
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

    static constexpr std::chrono::milliseconds pollInterval{3000};
    static constexpr int unresponsiveAfter = 4; ///< ticks without a reply

    explicit DashboardVM(const DashboardServices& services, QObject* parent = nullptr);

    bool isLaunchAtLoginEnabled() const { return m_isLaunchAtLoginEnabled; }
    bool showInMenuBar() const { return m_showInMenuBar; }
    bool remappingEnabled() const { return m_remappingEnabled; }
    bool showFullQuitConfirm() const { return m_showFullQuitConfirm; }
    void setShowFullQuitConfirm(bool show);
    const QString& latestChangelog() const { return m_latestChangelog; }
    /// The application's short version.
    QString version() const;

    bool hasDaemonStatus() const { return m_status.hasDaemonStatus; }
    bool driverConnected() const { return m_status.driverConnected; }
    bool daemonTccDenied() const { return m_status.daemonTccDenied; }
    const QString& daemonStatusText() const { return m_status.daemonStatusText; }
    bool daemonUnresponsive() const { return m_status.daemonUnresponsive; }
    int pollTickCount() const { return m_pollTickCount; }

    /// The daemon says that remapping works.
    bool isRunning() const;
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
    enum class Counting { no, yes };
    /// What the daemon's replies and their absence amount to.
    struct Status {
        bool hasDaemonStatus = false;
        bool driverConnected = false;
        bool daemonTccDenied = false;
        QString daemonStatusText;
        bool daemonUnresponsive = false;

        bool operator==(const Status&) const = default;
    };

    void loadSettings();
    void startPolling();
    void stopPolling();
    void becameActive();
    bool isDaemonUp() const;
    void fetchStatus(Counting counting);
    void apply(bool isGrabbing, bool driverConnected, const QString& statusText);
    void alignDaemon(bool isGrabbing);
    std::shared_ptr<TamselDaemonProtocol> proxy();
    void sendGrabbingOrder(bool start);
    void setStatus(const Status& status);
    void openExtensionSettings();
    QList<StatusCard> currentCards() const;
    void updateCards();

    DashboardServices m_services;
    bool m_isLaunchAtLoginEnabled = false;
    bool m_showInMenuBar = true;
    bool m_showFullQuitConfirm = false;
    bool m_remappingEnabled = true;
    QString m_latestChangelog;
    Status m_status;
    TaskHandle m_pollTimer;
    int m_pollTickCount = 0;
    QList<StatusCard> m_cards;
};

} // namespace tamsel
