#pragma once

#include "base/error.h"
#include "platform/linux/daemon/dbus_daemon_connection.h"
#include "platform/linux/deployment.h"
#include "platform/linux/desktop/desktop_workspace.h"
#include "platform/linux/desktop/qt_application.h"
#include "platform/linux/desktop/qt_pasteboard.h"
#include "platform/linux/desktop/session_end_announcer.h"
#include "platform/linux/desktop/single_instance.h"
#include "platform/linux/driver/linux_machine.h"
#include "platform/linux/keys/qt_local_events.h"
#include "platform/linux/net/https_client.h"
#include "platform/linux/net/secure_requests.h"
#include "platform/linux/process/child_process_runner.h"
#include "platform/linux/process/qt_main_queue.h"
#include "platform/linux/process/real_clock.h"
#include "platform/linux/process/thread_background_queue.h"
#include "platform/linux/store/journal_system_log.h"
#include "platform/linux/store/sqlite_user_defaults.h"
#include "platform/linux/tray/tray_status_bar.h"
#include "platform/linux/updater/relaunch.h"
#include "platform/notification_center.h"
#include "platform/platform.h"
#include "platform/software_updater.h"
#include "platform/system_extension.h"

#include <memory>

namespace tamsel {

/// The machine's side of the application, in the order in which its parts need each other. Main
/// thread; made after the application object and before the program, destroyed after the program.
class LinuxPlatform final {
public:
    /// Fails when the settings can't be opened.
    static Result<std::unique_ptr<LinuxPlatform>> open(QGuiApplication& application,
                                                       RelaunchOrder relaunch);

    Platform parts();
    /// Runs the application with this window, loaded and not shown, and hands `urls` to the
    /// delegate at the start, and those of later starts when they come. The program's exit status.
    int run(ApplicationDelegate& delegate, QWindow& window, SingleInstance& instance,
            const QStringList& urls);
    /// Ends the services that this process has started, and only them: a crash leaves them
    /// running, an end in good order takes them along. Blocks until they are gone; call it before
    /// the program ends.
    void endOwnServices() { m_services.endOwnPrograms(); }

private:
    LinuxPlatform(QGuiApplication& application, RelaunchOrder relaunch,
                  std::unique_ptr<SqliteUserDefaults> defaults);

    RelaunchOrder m_relaunch;
    const Deployment m_deployment;
    const FolderBundle m_bundle = m_deployment.bundle();
    QtMainQueue m_queue;
    const RealClock m_clock;
    JournalSystemLog m_log{"app.tamsel", "app"};
    JournalSystemLog m_updateLog{"org.maren.quorel", "Quorel", JournalSystemLog::Times::added};
    JournalSystemLog m_updateDriverLog{"org.maren.quorel", "UserDriver",
                                       JournalSystemLog::Times::added};
    std::unique_ptr<SqliteUserDefaults> m_defaults;
    QtPasteboard m_pasteboard{m_queue};
    DesktopWorkspace m_workspace;
    QtLocalEvents m_localEvents;
    NotificationCenter m_notifications;
    TrayStatusBar m_tray{m_bundle};
    QtApplication m_application;
    SessionEndAnnouncer m_sessionEnd;
    DBusDaemonConnector m_daemon{m_deployment.daemonAddress, m_queue};
    LinuxServiceManagement m_services;
    ChildProcessRunner m_processes;
    ThreadBackgroundQueue m_background{[this] { m_processes.stop(); }};
    std::unique_ptr<SystemExtensionService> m_driver;
    LinuxMachine m_machine{m_background, m_queue, m_deployment.driver(m_bundle)};
    SecureRequests m_requests{m_bundle, m_queue};
    std::unique_ptr<UpdaterMaker> m_updaters;
    HttpsClient m_http{m_requests, m_queue};
};

} // namespace tamsel
