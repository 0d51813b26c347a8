// Shows the window over sample rows and a daemon in memory, to look at it and to drive it.
// usage: ui_preview [--dark] [--size WxH] [--page NAME] [--rows N] [--disconnected]

#include "app/connection_vm.h"
#include "config/storage_mgr.h"
#include "daemon/daemon_xpc_client.h"
#include "editors/mapping_vm.h"
#include "log/logger.h"
#include "platform/fake/fake_daemon.h"
#include "platform/fake/fake_main_queue.h"
#include "platform/fake/fake_system.h"
#include "platform/notification_center.h"
#include "ui/main_vm.h"
#include "ui/main_window.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QPalette>

namespace {

using namespace tamsel;

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
    return cfg;
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    QCommandLineParser arguments;
    arguments.addOptions({{"dark", "dark palette"},
                          {"size", "window size, WxH", "size"},
                          {"page", "screen to show", "page", "mapping"},
                          {"rows", "user mappings", "rows", "4"},
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
    ConnectionVM connection(daemon);
    storage.save(sampleConfig(arguments.value("rows").toInt()));
    MappingVM mapping(storage, daemon);
    MainVM main(notifications);
    main.navigate(arguments.value("page"));
    if (!arguments.isSet("disconnected")) {
        daemon.sendConfig(storage.load());
        queue.runPending();
    }

    const MainWindow window({main, mapping, connection});
    if (!window.window())
        return 1;
    if (const QStringList size = arguments.value("size").split('x'); size.size() == 2)
        window.window()->resize(size[0].toInt(), size[1].toInt());
    return QGuiApplication::exec();
}
