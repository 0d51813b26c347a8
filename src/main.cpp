#include "app/about_vm.h"
#include "app/app_delegate.h"
#include "app/dashboard_vm.h"
#include "app/launch_at_login_mgr.h"
#include "app/permission_mgr.h"
#include "app/settings_guide_vm.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_event_hub.h"
#include "daemon/daemon_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "devices/device_mgr_vm.h"
#include "driver/system_extension_mgr.h"
#include "editors/combo_vm.h"
#include "editors/mapping_vm.h"
#include "feedback/feedback_vm.h"
#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"
#include "log/logger.h"
#include "platform/linux/daemon/dbus_daemon_connection.h"
#include "platform/linux/desktop/desktop_workspace.h"
#include "platform/linux/desktop/qt_application.h"
#include "platform/linux/desktop/qt_pasteboard.h"
#include "platform/linux/desktop/session_end_announcer.h"
#include "platform/linux/desktop/single_instance.h"
#include "platform/linux/driver/linux_machine.h"
#include "platform/linux/driver/uinput_driver.h"
#include "platform/linux/driver/unmanaged_driver.h"
#include "platform/linux/keys/qt_local_events.h"
#include "platform/linux/net/https_client.h"
#include "platform/linux/net/secure_requests.h"
#include "platform/linux/process/child_process_runner.h"
#include "platform/linux/process/qt_main_queue.h"
#include "platform/linux/process/real_clock.h"
#include "platform/linux/process/termination_signals.h"
#include "platform/linux/process/thread_background_queue.h"
#include "platform/linux/services/linux_service_management.h"
#include "platform/linux/store/folder_bundle.h"
#include "platform/linux/store/journal_system_log.h"
#include "platform/linux/store/sqlite_user_defaults.h"
#include "platform/linux/tray/tray_status_bar.h"
#include "platform/linux/updater/feed_updater.h"
#include "platform/linux/updater/packaged_updater.h"
#include "platform/linux/updater/program_start.h"
#include "platform/notification_center.h"
#include "protocol/socket_path.h"
#include "ui/main_vm.h"
#include "ui/main_window.h"
#include "update/update_mgr.h"

#include <QGuiApplication>
#include <QScopeGuard>

#include <csignal>
#include <cstdio>

namespace {

/// On the main thread, whoever calls, and once.
constexpr auto once =
    static_cast<Qt::ConnectionType>(Qt::QueuedConnection | Qt::SingleShotConnection);

int cantStart(const std::string& reason) {
    std::fprintf(stderr, "tamsel: %s\n", reason.c_str());
    return 1;
}

using ServiceKind = tamsel::LinuxServiceManagement::Kind;

/// Where the driver of the daemon that the services run is: with a system daemon it is for the
/// daemon's user to open, with one of our own for this user.
tamsel::UinputPlaces driverPlaces(ServiceKind kind, const tamsel::Bundle& bundle) {
    tamsel::UinputPlaces places;
    places.helper =
        bundle.pathForResource(QStringLiteral("tamsel-driver-helper"), QStringLiteral("app"))
            .value_or(QString());
    if (kind == ServiceKind::systemd)
        places.daemonGroup = QStringLiteral("tamsel");
    return places;
}

/// The driver of a daemon elsewhere is not ours.
std::unique_ptr<tamsel::SystemExtensionService> makeDriver(ServiceKind kind,
                                                           const tamsel::UinputPlaces& places,
                                                           tamsel::MainQueue& queue,
                                                           tamsel::BackgroundQueue& background) {
    if (kind == ServiceKind::fixed)
        return std::make_unique<tamsel::UnmanagedDriver>(queue);
    return std::make_unique<tamsel::UinputDriver>(queue, background, places);
}

/// A copy with a feed replaces itself; the others are their package manager's.
std::unique_ptr<tamsel::UpdaterMaker> makeUpdaters(const tamsel::UpdateParts& parts,
                                                   const tamsel::RelaunchOrder& relaunch) {
    if (!parts.bundle.infoString(QStringLiteral("QLFeedURL")))
        return std::make_unique<tamsel::PackagedUpdaterMaker>();
    return std::make_unique<tamsel::FeedUpdaterMaker>(parts, relaunch);
}

} // namespace

// The composition root: the platform, the managers in the order of their dependencies, the window.
// Everything ends in reverse.
int main(int argc, char** argv) {
    // Before anything is opened.
    tamsel::ProgramStart start(argc, argv);
    std::signal(SIGPIPE, SIG_IGN);
    tamsel::TerminationSignals::block();

    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tamsel"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tamsel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.tamsel"));
    const QStringList arguments = QCoreApplication::arguments();
    const tamsel::TerminationSignals signalled([] { tamsel::QtApplication::terminateNow(); });

    const auto urls = tamsel::SingleInstance::urlsOf(arguments.mid(1));
    tamsel::SingleInstance instance(QDBusConnection::sessionBus());
    const auto role = instance.claim(urls);
    if (!role)
        return cantStart(role.error().description());
    if (*role == tamsel::SingleInstance::Role::handedOver)
        return 0;

    tamsel::QtMainQueue queue;
    const tamsel::RealClock clock;
    const auto bundle = tamsel::FolderBundle::standard(QCoreApplication::applicationDirPath());
    QGuiApplication::setApplicationVersion(
        bundle.infoString(QStringLiteral("CFBundleShortVersionString")).value_or(QString()));
    tamsel::JournalSystemLog systemLog("app.tamsel", "app");
    tamsel::QtPasteboard pasteboard(queue);
    tamsel::DesktopWorkspace workspace;
    tamsel::QtLocalEvents localEvents(application);
    tamsel::TrayStatusBar tray(bundle);
    tamsel::QtApplication qtApplication(application, tray);
    tamsel::SessionEndAnnouncer sessionEnd(application);
    tamsel::NotificationCenter notifications;
    const auto defaults =
        tamsel::SqliteUserDefaults::open(tamsel::SqliteUserDefaults::standardFile());
    if (!defaults)
        return cantStart("the settings can't be opened: " + defaults.error().description());
    const auto address = QString::fromStdString(tamsel::protocol::daemonAddress());
    tamsel::DBusDaemonConnector connector(address, queue);
    const auto serviceKind = tamsel::LinuxServiceManagement::kindHere();
    tamsel::LinuxServiceManagement services(serviceKind, bundle, queue,
                                            QCoreApplication::applicationFilePath());

    tamsel::Logger logger(systemLog, queue, clock, pasteboard);
    if (const QString& aside = (*defaults)->setAside(); !aside.isEmpty())
        logger.warning(QStringLiteral("[UserDefaults] 設定檔已損壞，另存為: ") + aside);
    // Background work may log to its very end, so its queue ends before the logger.
    tamsel::ChildProcessRunner processes;
    tamsel::ThreadBackgroundQueue background([&processes] { processes.stop(); });
    const auto places = driverPlaces(serviceKind, bundle);
    const auto driver = makeDriver(serviceKind, places, queue, background);
    tamsel::LinuxMachine machine(background, queue, places);
    tamsel::StorageMgr storage(**defaults, logger);
    tamsel::revertPendingTakeover(storage, **defaults);
    tamsel::DaemonXPCClient daemon(connector, storage,
                                   {queue, clock, pasteboard, workspace, logger});
    tamsel::DaemonMgr daemonMgr(services, bundle, logger);
    // A crash leaves the services running; an end in good order takes along what it has started.
    const auto endPrograms = qScopeGuard([&services] { services.endOwnPrograms(); });
    tamsel::SystemExtensionMgr sysExtMgr({*driver, processes, background, queue, logger}, daemon);
    tamsel::LaunchAtLoginMgr launchAtLogin(services, **defaults, logger);

    tamsel::DeviceMgrVM devices(storage, daemon, queue, **defaults);
    using LogTimes = tamsel::JournalSystemLog::Times;
    tamsel::JournalSystemLog updateLog("org.maren.quorel", "Quorel", LogTimes::added);
    tamsel::JournalSystemLog updateDriverLog("org.maren.quorel", "UserDriver", LogTimes::added);
    tamsel::SecureRequests requests(bundle, queue);
    const auto updaters = makeUpdaters({bundle, queue, clock, background, **defaults, qtApplication,
                                        requests, QCoreApplication::applicationDirPath()},
                                       start.order());
    tamsel::Quorel quorel({*updaters, bundle, queue, clock, updateLog, updateDriverLog});
    tamsel::UpdateMgr updateMgr(quorel, **defaults, queue, clock, logger);
    tamsel::PermissionMgr permission(daemonMgr);
    tamsel::SettingsGuideVM guide(machine, daemonMgr, sysExtMgr, pasteboard);
    tamsel::DaemonEventHub eventHub(daemon, localEvents, queue);
    tamsel::MappingVM mapping(storage, daemon);
    tamsel::ComboVM combo(storage, daemon, workspace);
    using Modifiers = tamsel::KeyRecorderVM::Modifiers;
    tamsel::KeyRecorderVM keyRecorder(eventHub, localEvents, queue, Modifiers::ignored);
    tamsel::KeyRecorderVM comboRecorder(eventHub, localEvents, queue, Modifiers::captured);
    tamsel::KeyViewerVM keyViewer(eventHub, clock);
    tamsel::HttpsClient http(requests, queue);
    tamsel::TicketAPI tickets(tamsel::TicketOrigin::of(bundle), http, **defaults, queue, logger);
    tamsel::FeedbackVM feedback(tickets, clock, logger, tamsel::TimeStyle::of(QLocale::system()));
    tamsel::MainVM main(notifications);
    tamsel::KeyboardShortcutHandler screenKeys(localEvents, main.screenKeys());
    tamsel::AppDelegate delegate({qtApplication, tray, sessionEnd, localEvents, notifications,
                                  **defaults, bundle, queue, logger, storage, daemon, daemonMgr,
                                  sysExtMgr, launchAtLogin, updateMgr});
    tamsel::DashboardVM dashboard({queue, **defaults, notifications, bundle, guide, daemon,
                                   daemonMgr, sysExtMgr, updateMgr, quorel, permission,
                                   launchAtLogin, delegate});
    tamsel::AboutVM about({localEvents, bundle, workspace, logger, updateMgr, quorel, daemonMgr,
                           sysExtMgr, delegate});
    QObject::connect(&application, &QGuiApplication::applicationStateChanged, &notifications,
                     [&notifications](Qt::ApplicationState state) {
                         if (state == Qt::ApplicationActive)
                             Q_EMIT notifications.applicationDidBecomeActive();
                     });

    const tamsel::MainWindow window({main, mapping, combo, dashboard, devices, feedback, guide,
                                     permission, keyRecorder, comboRecorder, keyViewer, about,
                                     screenKeys});
    if (!window.window())
        return cantStart("the window can't be loaded");
    qtApplication.setMainWindow(window.window());
    QObject::connect(&instance, &tamsel::SingleInstance::openedAgain, &qtApplication,
                     &tamsel::QtApplication::openedAgain);
    QObject::connect(&instance, &tamsel::SingleInstance::quitRequested, &qtApplication,
                     &tamsel::QtApplication::terminate);
    start.expect(background,
                 bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString()));
    QObject::connect(
        window.window(), &QQuickWindow::frameSwapped, &delegate, [&start] { start.frameShown(); },
        once);
    QObject::connect(
        &daemon, &tamsel::DaemonXPCClient::connectionMade, &delegate,
        [&start] { start.daemonCalled(); }, once);
    return qtApplication.run(delegate, urls);
}
