// Shows the window over sample rows and a daemon in memory, to look at it and to drive it.
// usage: ui_preview [--dark] [--size WxH] [--page NAME] [--rows N] [--edit ID] [--viewer]
//                   [--trouble] [--quit] [--guide PANE] [--tab N] [--update STATE] [--uninstall]
//                   [--disconnected]

#include "coding/seen_devices_coding.h"
#include "platform/fake/fake_platform.h"
#include "program/program.h"
#include "ui/main_window.h"

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

void addOptions(QCommandLineParser& arguments) {
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
}

/// The copy of the application, and what is wrong with the machine.
void describe(FakePlatform& platform) {
    platform.bundle.infoStrings["CFBundleShortVersionString"] = "1.4.2";
    platform.bundle.infoStrings["CFBundleVersion"] = "142";
    platform.bundle.resources["changelog/changelog.txt"] = TAMSEL_CHANGELOG;
    platform.bundle.resources["changelog.txt"] = TAMSEL_CHANGELOG;
    platform.machine.report = {.daemonUser = "mira",
                               .kernelHasDriver = true,
                               .uinput = NodeAccess::noAccess,
                               .uinputMode = "root:root crw-------",
                               .input = NodeAccess::noAccess,
                               .inputMode = "root:input crw-rw----",
                               .inputGroup = "input",
                               .helper = "/usr/libexec/tamsel/tamsel-driver-helper"};
}

/// Everything runs.
void setUp(FakePlatform& platform, Program& program) {
    platform.daemon.status = {true, true, "RUNNING"};
    program.daemonMgr.registerServices();
    program.screens.permission()->checkPermission();
    program.sysExtMgr.loadExtension();
    platform.extensions.finish(0);
}

/// One of each kind for the key viewer.
void reportKeys(FakePlatform& platform) {
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
            platform.daemon.current->exported->onKeyEvent(
                {sample.in, down, sample.action, sample.out, sample.apple});
    }
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QCommandLineParser arguments;
    addOptions(arguments);
    arguments.process(application);
    if (arguments.isSet("dark")) {
        QPalette palette = QGuiApplication::palette();
        palette.setColor(QPalette::Window, QColor(Qt::black));
        QGuiApplication::setPalette(palette);
    }

    FakePlatform platform;
    FakeMainQueue& queue = platform.queue;
    describe(platform);
    Program program(platform.parts());
    Screens& screens = program.screens;
    program.storage.save(sampleConfig(arguments.value("rows").toInt()));
    screens.main()->navigate(arguments.value("page"));
    if (!arguments.isSet("disconnected")) {
        program.daemon.sendConfig(program.storage.load());
        queue.runPending();
    }
    if (!arguments.isSet("empty"))
        platform.daemon.seenDevices = sampleDevices();
    if (arguments.isSet("trouble"))
        platform.updater.driver->showReadyToInstallAndRelaunch([](SPUUserUpdateChoice) {});
    else
        setUp(platform, program);
    screens.mapping()->reload();
    screens.combo()->reload();
    const MainWindow window(screens);
    queue.runPending();
    if (arguments.isSet("takeover")) {
        screens.devices()->reload();
        queue.runPending();
        screens.devices()->setEnabled("1133:50475", true);
        queue.advance(std::chrono::seconds(3));
    }
    screens.dashboard()->setShowFullQuitConfirm(arguments.isSet("quit"));
    if (const QString pane = arguments.value("guide"); pane == "items")
        screens.guide()->openLoginItems();
    else if (!pane.isEmpty())
        screens.guide()->open(pane == "input" ? settingsPane::inputMonitoring
                                              : settingsPane::extensions);
    if (!window.window())
        return 1;
    screens.about()->selectTab(AboutVM::AboutTab(arguments.value("tab").toInt()));
    screens.about()->setShowUninstallConfirm(arguments.isSet("uninstall"));
    playUpdater(platform.updater, arguments.value("update"));
    if (const QStringList size = arguments.value("size").split('x'); size.size() == 2)
        window.window()->resize(size[0].toInt(), size[1].toInt());
    window.window()->show();
    screens.combo()->edit(arguments.value("edit"));
    if (arguments.isSet("viewer")) {
        screens.about()->openKeyViewer();
        queue.runPending();
        reportKeys(platform);
        queue.runPending();
    }
    return QGuiApplication::exec();
}
