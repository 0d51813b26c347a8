#pragma once

#include "app/about_vm.h"
#include "app/dashboard_vm.h"
#include "app/main_vm.h"
#include "app/permission_mgr.h"
#include "app/settings_guide_vm.h"
#include "devices/device_mgr_vm.h"
#include "editors/combo_vm.h"
#include "editors/mapping_vm.h"
#include "feedback/feedback_vm.h"
#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"

#include <QObject>

namespace tamsel {

struct Program;

/// The models of the window and its screens, as the one object that QML gets. They live as long as
/// the program, whichever screen is shown. Main thread.
class Screens final : public QObject {
    Q_OBJECT
    Q_PROPERTY(tamsel::MainVM* main READ main CONSTANT)
    Q_PROPERTY(tamsel::KeyboardShortcutHandler* keys READ keys CONSTANT)
    Q_PROPERTY(tamsel::PermissionMgr* permission READ permission CONSTANT)
    Q_PROPERTY(tamsel::DashboardVM* dashboard READ dashboard CONSTANT)
    Q_PROPERTY(tamsel::SettingsGuideVM* guide READ guide CONSTANT)
    Q_PROPERTY(tamsel::MappingVM* mapping READ mapping CONSTANT)
    Q_PROPERTY(tamsel::KeyRecorderVM* keyRecorder READ keyRecorder CONSTANT)
    Q_PROPERTY(tamsel::ComboVM* combo READ combo CONSTANT)
    Q_PROPERTY(tamsel::KeyRecorderVM* comboRecorder READ comboRecorder CONSTANT)
    Q_PROPERTY(tamsel::DeviceMgrVM* devices READ devices CONSTANT)
    Q_PROPERTY(tamsel::AboutVM* about READ about CONSTANT)
    Q_PROPERTY(tamsel::FeedbackVM* feedback READ feedback CONSTANT)
    Q_PROPERTY(tamsel::KeyViewerVM* keyViewer READ keyViewer CONSTANT)

public:
    /// `program` owns this object.
    explicit Screens(Program& program);

    MainVM* main() { return &m_main; }
    /// The main window's plain keys.
    KeyboardShortcutHandler* keys() { return &m_keys; }
    PermissionMgr* permission() { return &m_permission; }
    DashboardVM* dashboard() { return &m_dashboard; }
    SettingsGuideVM* guide() { return &m_guide; }
    MappingVM* mapping() { return &m_mapping; }
    /// Single keys, for mappings.
    KeyRecorderVM* keyRecorder() { return &m_keyRecorder; }
    ComboVM* combo() { return &m_combo; }
    /// Keys with the modifiers held with them, for triggers.
    KeyRecorderVM* comboRecorder() { return &m_comboRecorder; }
    DeviceMgrVM* devices() { return &m_devices; }
    AboutVM* about() { return &m_about; }
    FeedbackVM* feedback() { return &m_feedback; }
    KeyViewerVM* keyViewer() { return &m_keyViewer; }

private:
    MainVM m_main;
    KeyboardShortcutHandler m_keys;
    PermissionMgr m_permission;
    SettingsGuideVM m_guide;
    DashboardVM m_dashboard;
    MappingVM m_mapping;
    KeyRecorderVM m_keyRecorder;
    ComboVM m_combo;
    KeyRecorderVM m_comboRecorder;
    DeviceMgrVM m_devices;
    AboutVM m_about;
    FeedbackVM m_feedback;
    KeyViewerVM m_keyViewer;
};

} // namespace tamsel
