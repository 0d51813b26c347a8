#pragma once

#include "keytools/keyboard_shortcut_handler.h"
#include "update/update_status.h"

#include <QObject>

namespace tamsel {

class AppDelegate;
class Bundle;
class DaemonMgr;
class LocalEvents;
class Logger;
class Quorel;
class SystemExtensionMgr;
class UpdateMgr;
class Workspace;

/// What the About screen works with; all of it outlives the model.
struct AboutServices {
    LocalEvents& localEvents;
    const Bundle& bundle;
    Workspace& workspace;
    Logger& logger;
    UpdateMgr& updateMgr;
    Quorel& quorel;
    DaemonMgr& daemonMgr;
    SystemExtensionMgr& sysExtMgr;
    AppDelegate& delegate;
};

/// The About screen: the product and its version, its updates, the change log, the application's
/// log, and taking the system components out again. Main thread.
class AboutVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(AboutTab selectedTab READ selectedTab WRITE selectTab NOTIFY selectedTabChanged)
    Q_PROPERTY(bool showUninstallConfirm READ showUninstallConfirm WRITE setShowUninstallConfirm
                   NOTIFY showUninstallConfirmChanged)
    Q_PROPERTY(QString changelogText READ changelogText NOTIFY changelogTextChanged)
    Q_PROPERTY(QString versionLine READ versionLine CONSTANT)
    Q_PROPERTY(UpdateState updateState READ updateState NOTIFY updateStatusChanged)
    Q_PROPERTY(tamsel::UpdateStatus updateStatus READ updateStatus NOTIFY updateStatusChanged)
    Q_PROPERTY(QString updatedBy READ updatedBy CONSTANT)
    Q_PROPERTY(bool disableAutoCheck READ disableAutoCheck WRITE setDisableAutoCheck NOTIFY
                   disableAutoCheckChanged)
    Q_PROPERTY(int logCount READ logCount NOTIFY logChanged)
    Q_PROPERTY(QString logText READ logText NOTIFY logChanged)

public:
    /// In the order of the tabs.
    enum AboutTab { WhatsNew, Logs, Feedback, Advanced };
    Q_ENUM(AboutTab)
    /// UpdateStatus::Kind, in its order.
    enum UpdateState { UpdateAvailable, Downloading, Failed, Idle, Checking, UpToDate, Ready };
    Q_ENUM(UpdateState)

    explicit AboutVM(const AboutServices& services, QObject* parent = nullptr);

    AboutTab selectedTab() const { return m_selectedTab; }
    void selectTab(AboutTab tab);
    bool showUninstallConfirm() const { return m_showUninstallConfirm; }
    void setShowUninstallConfirm(bool show);
    /// Empty until the screen has been shown once.
    const QString& changelogText() const { return m_changelogText; }
    /// "v1.4.2 (Build 142)"
    QString versionLine() const;
    UpdateStatus updateStatus() const;
    UpdateState updateState() const { return static_cast<UpdateState>(updateStatus().kind); }
    /// Who updates this copy, in words, when it is not the copy itself; else empty.
    QString updatedBy() const;
    bool disableAutoCheck() const;
    void setDisableAutoCheck(bool disable);
    int logCount() const;
    /// Newest first.
    QString logText() const;

    /// The screen is shown, is not shown any more.
    Q_INVOKABLE void appear();
    Q_INVOKABLE void disappear();

    /// The one thing to do about updates now: check, install, or restart; nothing while the
    /// updater is at work.
    Q_INVOKABLE void actOnUpdate();
    Q_INVOKABLE void openWebsite();
    Q_INVOKABLE void openKeyViewer() { Q_EMIT keyViewerRequested(); }
    Q_INVOKABLE void copyLog();
    Q_INVOKABLE void clearLog();
    /// The uninstall question was answered with yes: takes the services and the driver out. The
    /// application goes on.
    Q_INVOKABLE void uninstall();

signals:
    void selectedTabChanged();
    void showUninstallConfirmChanged();
    void changelogTextChanged();
    void updateStatusChanged();
    void disableAutoCheckChanged();
    void logChanged();
    void keyViewerRequested();

private:
    KeyboardShortcutHandler::Shortcuts keys();

    AboutServices m_services;
    AboutTab m_selectedTab = WhatsNew;
    bool m_showUninstallConfirm = false;
    QString m_changelogText;
    KeyboardShortcutHandler m_keyMonitor;
};

} // namespace tamsel
