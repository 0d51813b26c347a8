#include "program/screens.h"

#include "program/program.h"

namespace tamsel {

Screens::Screens(Program& p)
    : m_main(p.platform.notifications),
      m_keys(p.platform.localEvents, m_main.screenKeys()),
      m_permission(p.daemonMgr),
      m_guide(p.platform.machine, p.daemonMgr, p.sysExtMgr, p.platform.pasteboard),
      m_dashboard({p.platform.queue, p.platform.defaults, p.platform.notifications,
                   p.platform.bundle, m_guide, p.daemon, p.daemonMgr, p.sysExtMgr, p.updateMgr,
                   p.quorel, m_permission, p.launchAtLogin, p.delegate}),
      m_mapping(p.desk),
      m_keyRecorder(p.eventHub, p.platform.localEvents, p.platform.queue,
                    KeyRecorderVM::Modifiers::ignored),
      m_combo(p.desk, p.platform.workspace),
      m_comboRecorder(p.eventHub, p.platform.localEvents, p.platform.queue,
                      KeyRecorderVM::Modifiers::captured),
      m_devices(p.desk, p.daemon, p.platform.queue, p.platform.defaults),
      m_about({p.platform.localEvents, p.platform.bundle, p.platform.workspace, p.logger,
               p.updateMgr, p.quorel, p.daemonMgr, p.sysExtMgr, p.delegate}),
      m_feedback(p.tickets, p.platform.clock, p.logger, TimeStyle::of(QLocale::system())),
      m_keyViewer(p.eventHub, p.platform.clock) {}

} // namespace tamsel
