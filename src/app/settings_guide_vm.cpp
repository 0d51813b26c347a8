#include "app/settings_guide_vm.h"

#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"
#include "platform/machine_report.h"
#include "platform/pasteboard.h"

#include <QPointer>

#include <algorithm>

namespace tamsel {

SettingsGuideVM::SettingsGuideVM(MachineInspector& machine, DaemonMgr& daemonMgr,
                                 SystemExtensionMgr& sysExtMgr, Pasteboard& pasteboard,
                                 QObject* parent)
    : QObject(parent),
      m_machine(machine),
      m_daemonMgr(daemonMgr),
      m_sysExtMgr(sysExtMgr),
      m_pasteboard(pasteboard) {
    connect(&daemonMgr, &DaemonMgr::isRunningChanged, this, &SettingsGuideVM::lookAgain);
    connect(&sysExtMgr, &SystemExtensionMgr::statusChanged, this, &SettingsGuideVM::lookAgain);
}

void SettingsGuideVM::open(QStringView pane) {
    if (pane == settingsPane::inputMonitoring)
        show(GuidePane::inputMonitoring);
    else if (pane == settingsPane::extensions || pane == settingsPane::extensionsBefore15)
        show(GuidePane::extensions);
}

void SettingsGuideVM::show(GuidePane pane) {
    m_pane = pane;
    m_guide.reset();
    Q_EMIT isOpenChanged();
    Q_EMIT guideChanged();
    lookAgain();
}

void SettingsGuideVM::close() {
    if (!isOpen())
        return;
    m_pane.reset();
    m_guide.reset();
    Q_EMIT isOpenChanged();
    Q_EMIT guideChanged();
}

void SettingsGuideVM::lookAgain() {
    if (!isOpen())
        return;
    m_machine.inspect([weak = QPointer(this), pane = *m_pane](const MachineReport& report) {
        if (!weak || weak->m_pane != pane)
            return;
        const DaemonMgr& daemonMgr = weak->m_daemonMgr;
        weak->m_guide =
            settingsGuide(pane, report,
                          {daemonMgr.isInstalled() && daemonMgr.isRunning(),
                           daemonMgr.daemonStatus() == ServiceStatus::requiresApproval});
        Q_EMIT weak->guideChanged();
    });
}

QList<GuideFinding> SettingsGuideVM::findings() const {
    return m_guide ? m_guide->findings : QList<GuideFinding>();
}

QList<GuideStep> SettingsGuideVM::steps() const {
    return m_guide ? m_guide->steps : QList<GuideStep>();
}

QString SettingsGuideVM::actionTitle() const {
    switch (m_guide ? m_guide->action : GuideAction::none) {
    case GuideAction::none:
        break;
    case GuideAction::loadDriver:
        return tr("Load Extension");
    case GuideAction::registerServices:
        return tr("Install Service");
    }
    return {};
}

void SettingsGuideVM::act() {
    switch (m_guide ? m_guide->action : GuideAction::none) {
    case GuideAction::none:
        break;
    case GuideAction::loadDriver:
        m_sysExtMgr.loadExtension();
        break;
    case GuideAction::registerServices:
        m_daemonMgr.registerServices();
        break;
    }
}

void SettingsGuideVM::copy(const QString& stepId) {
    const QList<GuideStep> all = steps();
    const auto step = std::find_if(all.begin(), all.end(),
                                   [&](const GuideStep& each) { return each.id == stepId; });
    if (step == all.end() || step->command.isEmpty())
        return;
    m_pasteboard.clearContents();
    m_pasteboard.setString(step->command);
}

} // namespace tamsel
