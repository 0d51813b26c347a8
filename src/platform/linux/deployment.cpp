#include "platform/linux/deployment.h"

#include "protocol/daemon_protocol.h"
#include "protocol/socket_path.h"

namespace tamsel {

namespace {

std::optional<QString> program(const Bundle& bundle, const QString& name) {
    return bundle.pathForResource(name, QStringLiteral("app"));
}

Deployment::Daemon daemonHere() {
    if (!qEnvironmentVariableIsEmpty("TAMSEL_DAEMON_ADDRESS"))
        return Deployment::Daemon::fixed;
    return protocol::systemUnitInstalled() ? Deployment::Daemon::systemd
                                           : Deployment::Daemon::embedded;
}

} // namespace

Deployment Deployment::here(const QString& programFolder) {
    const QString chosen = qEnvironmentVariable("TAMSEL_BUNDLE");
    return {daemonHere(), QString::fromStdString(protocol::daemonAddress()), programFolder,
            chosen.isEmpty() ? programFolder + QStringLiteral("/../share/tamsel") : chosen};
}

FolderBundle Deployment::bundle() const {
    return {bundleFolder, programFolder,
            daemon == Daemon::fixed ? FolderBundle::DaemonProgram::elsewhere
                                    : FolderBundle::DaemonProgram::here};
}

ServicePlaces Deployment::services(const Bundle& bundle, const QString& application) const {
    return {daemon,
            program(bundle, QStringLiteral("tamsel-daemon")),
            QString::fromStdString(protocol::socketFile(protocol::userDaemonAddress())),
            program(bundle, QStringLiteral("tamsel-agent")),
            QString::fromStdString(protocol::userRuntimeFolder()) +
                QStringLiteral("/tamsel/agent.lock"),
            application};
}

UinputPlaces Deployment::driver(const Bundle& bundle) const {
    UinputPlaces places;
    places.helper = program(bundle, QStringLiteral("tamsel-driver-helper")).value_or(QString());
    if (daemon == Daemon::systemd)
        places.daemonGroup = QLatin1String(protocol::systemUser);
    return places;
}

} // namespace tamsel
