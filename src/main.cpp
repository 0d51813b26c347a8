#include "platform/linux/desktop/single_instance.h"
#include "platform/linux/linux_platform.h"
#include "platform/linux/process/termination_signals.h"
#include "platform/linux/updater/program_start.h"
#include "program/program.h"
#include "ui/main_window.h"

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

} // namespace

// The machine, the program on it, its window. Everything ends in reverse.
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

    const auto platform = tamsel::LinuxPlatform::open(application, start.order());
    if (!platform)
        return cantStart(platform.error().description());
    tamsel::LinuxPlatform& machine = **platform;
    tamsel::Program program(machine.parts());
    const auto endServices = qScopeGuard([&machine] { machine.endOwnServices(); });
    const tamsel::MainWindow window(program.screens);
    if (!window.window())
        return cantStart("the window can't be loaded");
    start.expect(
        program.platform.background,
        program.platform.bundle.infoString(QStringLiteral("CFBundleVersion")).value_or(QString()));
    QObject::connect(
        window.window(), &QQuickWindow::frameSwapped, &program.delegate,
        [&start] { start.frameShown(); }, once);
    QObject::connect(
        &program.daemon, &tamsel::DaemonXPCClient::connectionMade, &program.delegate,
        [&start] { start.daemonCalled(); }, once);
    return machine.run(program.delegate, *window.window(), instance, urls);
}
