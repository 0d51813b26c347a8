// Shows the window over sample rows and a daemon in memory, to look at it and to drive it.
// usage: ui_preview [--dark] [--size WxH] [--page NAME] [--rows N] [--edit ID] [--viewer]
//                   [--trouble] [--quit] [--guide PANE] [--tab N] [--update STATE] [--uninstall]
//                   [--disconnected]

#include "app/about_vm.h"
#include "app/app_delegate.h"
#include "app/dashboard_vm.h"
#include "app/launch_at_login_mgr.h"
#include "app/permission_mgr.h"
#include "app/settings_guide_vm.h"
#include "coding/cfg_coding.h"
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
#include "platform/fake/fake_application.h"
#include "platform/fake/fake_bundle.h"
#include "platform/fake/fake_daemon.h"
#include "platform/fake/fake_http_client.h"
#include "platform/fake/fake_local_events.h"
#include "platform/fake/fake_main_queue.h"
#include "platform/fake/fake_processes.h"
#include "platform/fake/fake_service_management.h"
#include "platform/fake/fake_status_bar.h"
#include "platform/fake/fake_system.h"
#include "platform/fake/fake_system_extension.h"
#include "platform/fake/fake_updater.h"
#include "platform/notification_center.h"
#include "platform/power_off_announcer.h"
#include "ui/main_vm.h"
#include "ui/main_window.h"
#include "update/update_mgr.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QPalette>

namespace {

using namespace tamsel;

std::vector<Shortcut> sampleCombos(int rows) {
    using enum ActionType;
    const std::vector<Shortcut> samples{
        {"COMBO-1",
         true,
         "Open Chrome [Website](https://www.google.com/chrome/)",
         {5, {"right_option"}},
         {command, "open -a 'Google Chrome'"}},
        {"COMBO-2",
         true,
         "Open Brave [Website](https://brave.com)",
         {5, {"right_option"}},
         {command, "open -a 'Brave Browser'"}},
        {"COMBO-3",
         true,
         "Snapko Screenshot (Area)",
         {33, {"command", "shift"}},
         {command, "open -g 'snapko://capture?mode=area'"}},
        {"COMBO-4",
         true,
         "Push to talk",
         {109, {}},
         {openURL, "talk://start"},
         ShortcutAction{openURL, "talk://stop"}},
        {"COMBO-5",
         true,
         "Drop-down terminal",
         {53, {"left_control"}},
         {command, "dropterm --toggle"}},
        {"COMBO-6",
         false,
         "E-mail sign-off",
         {22, {"right_command"}},
         {typeText, "Grüße aus Zürich, Mira"},
         ShortcutAction{openURL, "file:///tmp"}},
        {"COMBO-7",
         true,
         "Back in browser",
         {13, {"right_option"}},
         {keyPress, "left_command+left_arrow"},
         ShortcutAction{openURL, "status://released"}},
    };
    std::vector<Shortcut> combos;
    for (int i = 0; i < rows; ++i) {
        combos.push_back(samples[std::size_t(i) % samples.size()]);
        combos.back().id = "COMBO-" + std::to_string(i + 1);
    }
    return combos;
}

Cfg sampleConfig(int rows) {
    Cfg cfg;
    const std::vector<KeyMapping> samples{
        {"SAMPLE-1", true, {53}, {41}},   // grave_accent_and_tilde to escape
        {"SAMPLE-2", true, {104}, {127}}, // f13 to mute
        {"SAMPLE-3", true, {4100}, {75}}, // button4 to page_up
        {"SAMPLE-4", false, {71}, {70}},  // scroll_lock to print_screen
    };
    for (int i = 0; i < rows; ++i) {
        KeyMapping mapping = samples[std::size_t(i) % samples.size()];
        mapping.id = "SAMPLE-" + std::to_string(i + 1);
        cfg.mappings.push_back(mapping);
    }
    cfg.shortcuts = sampleCombos(rows);
    return cfg;
}

Bytes sampleDevices() {
    const std::string json = encodeSeenDevices(
        {{-1, 641, "Internal Keyboard", "Maker", "SPI", true, true, false},
         {0x05AC, 0x024F, "Mechanical Keyboard 87", "Maker", "USB", true, true, false},
         {0x1A2C, 0x0027, "Numeric Keypad", "Maker", "USB", false, false, false},
         {0x046D, 0xB023, "Travel Mouse", "Maker", "Bluetooth", false, false, true},
         {0x046D, 0xC52B, "Trackball Receiver", "Maker", "USB", true, true, false},
         {0x046D, 0xC52B, "Trackball Receiver", "Maker", "USB", true, true, true}});
    return {json.begin(), json.end()};
}

void playUpdater(FakeUpdater& updater, const QString& state) {
    if (state == "none")
        updater.delegate->didNotFindUpdate();
    else if (state == "found")
        updater.delegate->didFindValidUpdate({"1.5.0", "150"});
    else if (state == "failed")
        updater.driver->showUpdaterError({{}, 1, "檢查超時，請稍後再試"}, [] {});
    else if (state == "ready")
        updater.driver->showReadyToInstallAndRelaunch([](SPUUserUpdateChoice) {});
    else if (state == "loading") {
        updater.driver->showDownloadInitiated();
        updater.driver->showDownloadDidReceiveExpectedContentLength(1000);
        updater.driver->showDownloadDidReceiveDataOfLength(429);
    }
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.addOptions({{"dark", "dark palette"},
                          {"size", "window size, WxH", "size"},
                          {"page", "screen to show", "page", "mapping"},
                          {"rows", "user mappings and combos", "rows", "4"},
                          {"edit", "combo to edit", "id"},
                          {"viewer", "open the key viewer"},
                          {"trouble", "driver and service are missing, an update is ready"},
                          {"takeover", "a mouse takeover waits for its confirmation"},
                          {"empty", "the daemon has seen no device"},
                          {"quit", "ask whether to quit"},
                          {"guide", "open a guide: extensions, input, items", "pane"},
                          {"tab", "tab of the About screen", "number", "0"},
                          {"update",
                           "what the updater is at: checking, none, found, loading, "
                           "ready, failed",
                           "state"},
                          {"uninstall", "ask whether to uninstall"},
                          {"disconnected", "no daemon"}});
    arguments.process(application);
    if (arguments.isSet("dark")) {
        QPalette palette = QGuiApplication::palette();
        palette.setColor(QPalette::Window, QColor(Qt::black));
        QGuiApplication::setPalette(palette);
    }

    FakeMainQueue queue;
    const FakeClock clock(queue);
    FakeSystemLog systemLog;
    FakePasteboard pasteboard;
    FakeWorkspace workspace;
    FakeUserDefaults defaults;
    FakeDaemon fakeDaemon(queue);
    Logger logger(systemLog, queue, clock, pasteboard);
    StorageMgr storage(defaults, logger);
    DaemonXPCClient daemon(fakeDaemon, storage, {queue, clock, pasteboard, workspace, logger});
    NotificationCenter notifications;
    FakeServiceManagement services;
    FakeBundle bundle;
    bundle.infoStrings["CFBundleShortVersionString"] = "1.4.2";
    bundle.infoStrings["CFBundleVersion"] = "142";
    bundle.resources["changelog/changelog.txt"] = TAMSEL_CHANGELOG;
    bundle.resources["changelog.txt"] = TAMSEL_CHANGELOG;
    FakeSystemExtensionService extensions;
    FakeProcessRunner processes;
    FakeBackgroundQueue background;
    FakeApplication terminator;
    FakeMachine machine;
    machine.report = {.daemonUser = "mira",
                      .kernelHasDriver = true,
                      .uinput = NodeAccess::noAccess,
                      .uinputMode = "root:root crw-------",
                      .input = NodeAccess::noAccess,
                      .inputMode = "root:input crw-rw----",
                      .inputGroup = "input",
                      .helper = "/usr/libexec/tamsel/tamsel-driver-helper"};
    DaemonMgr daemonMgr(services, bundle, logger);
    SystemExtensionMgr sysExtMgr({extensions, processes, background, queue, logger}, daemon);
    LaunchAtLoginMgr launchAtLogin(services, defaults, logger);
    FakeUpdater updater;
    Quorel quorel({updater, bundle, queue, clock, systemLog, systemLog});
    UpdateMgr updateMgr(quorel, defaults, queue, clock, logger);
    PermissionMgr permission(daemonMgr);
    SettingsGuideVM guide(machine, daemonMgr, sysExtMgr, pasteboard);
    FakeStatusBar statusBar;
    PowerOffAnnouncer powerOff;
    FakeLocalEvents localEvents;
    AppDelegate delegate({terminator, statusBar, powerOff, localEvents, notifications, defaults,
                          bundle, queue, logger, storage, daemon, daemonMgr, sysExtMgr,
                          launchAtLogin, updateMgr});
    DashboardVM dashboard({queue, defaults, notifications, bundle, guide, daemon, daemonMgr,
                           sysExtMgr, updateMgr, quorel, permission, launchAtLogin, delegate});
    storage.save(sampleConfig(arguments.value("rows").toInt()));
    MappingVM mapping(storage, daemon);
    ComboVM combo(storage, daemon, workspace);
    DaemonEventHub eventHub(daemon, localEvents, queue);
    KeyRecorderVM keyRecorder(eventHub, localEvents, queue, KeyRecorderVM::Modifiers::ignored);
    KeyRecorderVM comboRecorder(eventHub, localEvents, queue, KeyRecorderVM::Modifiers::captured);
    KeyViewerVM keyViewer(eventHub, clock);
    MainVM main(notifications);
    KeyboardShortcutHandler screenKeys(localEvents, main.screenKeys());
    AboutVM about({localEvents, bundle, workspace, logger, updateMgr, quorel, daemonMgr, sysExtMgr,
                   delegate});
    main.navigate(arguments.value("page"));
    if (!arguments.isSet("disconnected")) {
        daemon.sendConfig(storage.load());
        queue.runPending();
    }

    DeviceMgrVM devices(storage, daemon, queue, defaults);
    FakeHttpClient http;
    TicketAPI tickets(TicketOrigin::of(bundle), http, defaults, queue, logger);
    FeedbackVM feedback(tickets, clock, logger, {});
    if (!arguments.isSet("empty"))
        fakeDaemon.seenDevices = sampleDevices();
    if (arguments.isSet("trouble")) {
        updater.driver->showReadyToInstallAndRelaunch([](SPUUserUpdateChoice) {});
    } else {
        fakeDaemon.status = {true, true, "RUNNING"};
        daemonMgr.registerServices();
        permission.checkPermission();
        sysExtMgr.loadExtension();
        extensions.finish(0);
    }
    const MainWindow window({main, mapping, combo, dashboard, devices, feedback, guide, permission,
                             keyRecorder, comboRecorder, keyViewer, about, screenKeys});
    queue.runPending();
    if (arguments.isSet("takeover")) {
        devices.reload();
        queue.runPending();
        devices.setEnabled("1133:50475", true);
        queue.advance(std::chrono::seconds(3));
    }
    dashboard.setShowFullQuitConfirm(arguments.isSet("quit"));
    if (const QString pane = arguments.value("guide"); pane == "items")
        guide.openLoginItems();
    else if (!pane.isEmpty())
        guide.open(pane == "input" ? settingsPane::inputMonitoring : settingsPane::extensions);
    if (!window.window())
        return 1;
    about.selectTab(AboutVM::AboutTab(arguments.value("tab").toInt()));
    about.setShowUninstallConfirm(arguments.isSet("uninstall"));
    playUpdater(updater, arguments.value("update"));
    if (const QStringList size = arguments.value("size").split('x'); size.size() == 2)
        window.window()->resize(size[0].toInt(), size[1].toInt());
    window.window()->show();
    combo.edit(arguments.value("edit"));
    if (arguments.isSet("viewer")) {
        about.openKeyViewer();
        queue.runPending();
        const struct {
            quint32 in;
            KeyEventAction action;
            quint32 out;
            bool apple;
        } samples[] = {{57, keyRemap, 224, true},
                       {4, keyPassthrough, 4, true},
                       {230, keyPassthrough, 230, false},
                       {5, keySuppress, 5, false},
                       {128, keyMedia, 128, false}};
        for (const auto& sample : samples) {
            for (const bool down : {true, false})
                fakeDaemon.current->exported->onKeyEvent(
                    {sample.in, down, sample.action, sample.out, sample.apple});
        }
        queue.runPending();
    }
    return QGuiApplication::exec();
}
