#include "app/settings_guide.h"

#include "platform/machine_report.h"

#include <QCoreApplication>
#include <QRegularExpression>

namespace tamsel {

namespace {

struct GuideTexts {
    Q_DECLARE_TR_FUNCTIONS(SettingsGuide)
};
QString tr(const char* text) {
    return GuideTexts::tr(text);
}

constexpr const char* daemonUnit = "app.tamsel.daemon.service";

/// The sentence that the access makes of a node, with who may open it and what stands in the way.
QString accessText(NodeAccess access, const QString& node, const QString& user,
                   const QString& mode) {
    switch (access) {
    case NodeAccess::ok:
        return tr("%1 may open %2.").arg(user, node);
    case NodeAccess::noNode:
        return tr("%1 does not exist.").arg(node);
    case NodeAccess::noAccess:
        return tr("%1 may not open %2 (%3).").arg(user, node, mode);
    case NodeAccess::notInGroupYet:
        return tr("%1 may open %2 from the next login on: the group was granted after this session "
                  "began.")
            .arg(user, node);
    }
    return {};
}

GuideStep loginAgain() {
    return {QStringLiteral("login"), tr("Log out and in again, or restart the computer."), {}};
}

void addUnitFinding(SettingsGuide& guide, const MachineReport& machine) {
    guide.findings.append(
        {QStringLiteral("unit"), true,
         machine.hasUnit
             ? tr("The service %1 is installed.").arg(QLatin1String(daemonUnit))
             : tr("No service is installed on this computer: Tamsel starts the daemon itself, as "
                  "%1.")
                   .arg(machine.daemonUser)});
}

SettingsGuide extensionsGuide(const MachineReport& machine) {
    const QString node = QStringLiteral("/dev/uinput");
    SettingsGuide guide{.title = tr("Virtual input driver")};
    guide.findings.append({QStringLiteral("kernel"), machine.kernelHasDriver,
                           machine.kernelHasDriver ? tr("The kernel has the driver uinput.")
                                                   : tr("The kernel has no driver uinput.")});
    guide.findings.append(
        {QStringLiteral("node"), machine.uinput == NodeAccess::ok,
         accessText(machine.uinput, node, machine.daemonUser, machine.uinputMode)});
    addUnitFinding(guide, machine);
    if (!machine.kernelHasDriver) {
        guide.steps.append({QStringLiteral("kernel"),
                            tr("Start a kernel that has it, such as the distribution's own, then "
                               "load it:"),
                            QStringLiteral("sudo modprobe uinput")});
        return guide;
    }
    if (machine.uinput == NodeAccess::ok)
        return guide;
    if (machine.uinput == NodeAccess::notInGroupYet) {
        guide.steps.append(loginAgain());
        return guide;
    }
    if (machine.uinput == NodeAccess::noNode)
        guide.steps.append({QStringLiteral("load"), tr("Load the driver:"),
                            QStringLiteral("sudo modprobe uinput")});
    if (machine.helper.isEmpty()) {
        guide.steps.append({QStringLiteral("helper"),
                            tr("The program that grants access is missing: install Tamsel again."),
                            {}});
        return guide;
    }
    guide.steps.append({QStringLiteral("grant"),
                        tr("Give the daemon access to it, now and from now on:"),
                        QStringLiteral("sudo %1 grant").arg(shellQuoted(machine.helper))});
    guide.action = GuideAction::loadDriver;
    return guide;
}

SettingsGuide inputMonitoringGuide(const MachineReport& machine) {
    const QString nodes = QStringLiteral("/dev/input");
    SettingsGuide guide{.title = tr("Input Monitoring")};
    guide.findings.append(
        {QStringLiteral("input"), machine.input == NodeAccess::ok,
         accessText(machine.input, nodes, machine.daemonUser, machine.inputMode)});
    addUnitFinding(guide, machine);
    switch (machine.input) {
    case NodeAccess::ok:
        break;
    case NodeAccess::noNode:
        guide.steps.append({QStringLiteral("devices"),
                            tr("Connect a keyboard: the kernel shows none. Inside a container or "
                               "a remote session there may be none to show."),
                            {}});
        break;
    case NodeAccess::noAccess:
        guide.steps.append(
            {QStringLiteral("group"),
             tr("Add %1 to the group that may read the devices:").arg(machine.daemonUser),
             QStringLiteral("sudo usermod -aG %1 %2")
                 .arg(shellQuoted(machine.inputGroup), shellQuoted(machine.daemonUser))});
        if (machine.hasUnit)
            guide.steps.append(
                {QStringLiteral("restart"), tr("Start the daemon again:"),
                 QStringLiteral("sudo systemctl restart %1").arg(QLatin1String(daemonUnit))});
        else
            guide.steps.append(loginAgain());
        break;
    case NodeAccess::notInGroupYet:
        guide.steps.append(loginAgain());
        break;
    }
    return guide;
}

SettingsGuide loginItemsGuide(const MachineReport& machine, const ServiceFacts& service) {
    SettingsGuide guide{.title = tr("Background service")};
    addUnitFinding(guide, machine);
    guide.findings.append({QStringLiteral("running"), service.isRunning,
                           service.isRunning       ? tr("The daemon runs.")
                           : service.needsApproval ? tr("The daemon waits for your approval.")
                                                   : tr("The daemon does not run.")});
    if (service.isRunning)
        return guide;
    if (service.needsApproval)
        guide.steps.append({QStringLiteral("approve"),
                            tr("Answer the prompt that asks for your password, or use a terminal:"),
                            {}});
    if (machine.hasUnit) {
        guide.steps.append(
            {QStringLiteral("daemon"), tr("Enable and start the daemon:"),
             QStringLiteral("sudo systemctl enable --now %1").arg(QLatin1String(daemonUnit))});
        guide.steps.append(
            {QStringLiteral("agent"), tr("Enable and start your agent:"),
             QStringLiteral("systemctl --user enable --now app.tamsel.agent.service")});
    }
    guide.action = GuideAction::registerServices;
    return guide;
}

} // namespace

SettingsGuide settingsGuide(GuidePane pane, const MachineReport& machine,
                            const ServiceFacts& service) {
    switch (pane) {
    case GuidePane::extensions:
        return extensionsGuide(machine);
    case GuidePane::inputMonitoring:
        return inputMonitoringGuide(machine);
    case GuidePane::loginItems:
        return loginItemsGuide(machine, service);
    }
    return {};
}

QString shellQuoted(const QString& word) {
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9_@%+=:,./-]+\\z"));
    if (plain.match(word).hasMatch())
        return word;
    QString quoted = word;
    return u'\'' + quoted.replace(u'\'', QStringLiteral("'\\''")) + u'\'';
}

} // namespace tamsel
