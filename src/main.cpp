#include "platform/linux/desktop/single_instance.h"
#include "platform/linux/linux_platform.h"
#include "platform/linux/process/termination_signals.h"
#include "program/program.h"
#include "ui/main_window.h"

#include <QGuiApplication>
#include <QScopeGuard>

#include <csignal>
#include <cstdio>

namespace {

int cantStart(const std::string& reason) {
    std::fprintf(stderr, "tamsel: %s\n", reason.c_str());
    return 1;
}

} // namespace

// The machine, the program on it, its window. Everything ends in reverse.
int main(int argc, char** argv) {
    std::signal(SIGPIPE, SIG_IGN);
    tamsel::TerminationSignals::block();

    QGuiApplication application(argc, argv);
    QGuiApplication::setApplicationName(QStringLiteral("tamsel"));
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Tamsel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("app.tamsel"));
    QStringList arguments = QCoreApplication::arguments();
    const auto relaunch = tamsel::RelaunchOrder::takeFrom(arguments);
    const tamsel::TerminationSignals signalled([] { tamsel::QtApplication::terminateNow(); });

    const auto urls = tamsel::SingleInstance::urlsOf(arguments.mid(1));
    tamsel::SingleInstance instance(QDBusConnection::sessionBus());
    const auto role = instance.claim(urls);
    if (!role)
        return cantStart(role.error().description());
    if (*role == tamsel::SingleInstance::Role::handedOver)
        return 0;

    const auto platform = tamsel::LinuxPlatform::open(application, relaunch);
    if (!platform)
        return cantStart(platform.error().description());
    tamsel::LinuxPlatform& machine = **platform;
    tamsel::Program program(machine.parts());
    const auto endServices = qScopeGuard([&machine] { machine.endOwnServices(); });
    const tamsel::MainWindow window(program.screens);
    if (!window.window())
        return cantStart("the window can't be loaded");
    return machine.run(program.delegate, *window.window(), instance, urls);
}
