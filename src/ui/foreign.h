#pragma once

// The logic's classes as QML types of this module. They come in here so that no room below knows
// QML; instances reach the screens through Screens, never as singletons.

#include "app/about_vm.h"
#include "app/dashboard_vm.h"
#include "app/main_vm.h"
#include "app/permission_mgr.h"
#include "app/settings_guide.h"
#include "app/settings_guide_vm.h"
#include "app/status_card.h"
#include "devices/device_group.h"
#include "devices/device_mgr_vm.h"
#include "editors/combo_row.h"
#include "editors/combo_vm.h"
#include "editors/mapping_vm.h"
#include "editors/shortcut_edit_vm.h"
#include "feedback/feedback_rows.h"
#include "feedback/feedback_vm.h"
#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"
#include "program/screens.h"
#include "update/update_status.h"

#include <QtQml/qqml.h>

namespace tamsel {

struct ScreensForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::Screens)
    QML_NAMED_ELEMENT(Screens)
    QML_UNCREATABLE("made by the application")
};

struct MainVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::MainVM)
    QML_NAMED_ELEMENT(MainVM)
    QML_UNCREATABLE("made by the application")
};

struct AboutVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::AboutVM)
    QML_NAMED_ELEMENT(AboutVM)
    QML_UNCREATABLE("made by the application")
};

struct UpdateStatusForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::UpdateStatus)
    QML_VALUE_TYPE(updateStatus)
};

struct DashboardVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::DashboardVM)
    QML_NAMED_ELEMENT(DashboardVM)
    QML_UNCREATABLE("made by the application")
};

struct StatusCardForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::StatusCard)
    QML_VALUE_TYPE(statusCard)
};

struct SettingsGuideVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::SettingsGuideVM)
    QML_NAMED_ELEMENT(SettingsGuideVM)
    QML_UNCREATABLE("made by the application")
};

struct GuideFindingForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::GuideFinding)
    QML_VALUE_TYPE(guideFinding)
};

struct GuideStepForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::GuideStep)
    QML_VALUE_TYPE(guideStep)
};

struct PermissionMgrForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::PermissionMgr)
    QML_NAMED_ELEMENT(PermissionMgr)
    QML_UNCREATABLE("made by the application")
};

struct DeviceMgrVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::DeviceMgrVM)
    QML_NAMED_ELEMENT(DeviceMgrVM)
    QML_UNCREATABLE("made by the application")
};

struct DeviceRowForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::DeviceRow)
    QML_VALUE_TYPE(deviceRow)
};

struct FeedbackVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::FeedbackVM)
    QML_NAMED_ELEMENT(FeedbackVM)
    QML_UNCREATABLE("made by the application")
};

struct TicketCategoryForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::TicketCategory)
    QML_VALUE_TYPE(ticketCategory)
};

struct TicketRowForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::TicketRow)
    QML_VALUE_TYPE(ticketRow)
};

struct TicketPageForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::TicketPage)
    QML_VALUE_TYPE(ticketPage)
};

struct CommentRowForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::CommentRow)
    QML_VALUE_TYPE(commentRow)
};

struct MappingVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::MappingVM)
    QML_NAMED_ELEMENT(MappingVM)
    QML_UNCREATABLE("made by the application")
};

struct MappingRowForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::MappingRow)
    QML_VALUE_TYPE(mappingRow)
};

struct ComboVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::ComboVM)
    QML_NAMED_ELEMENT(ComboVM)
    QML_UNCREATABLE("made by the application")
};

struct ShortcutEditVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::ShortcutEditVM)
    QML_NAMED_ELEMENT(ShortcutEditVM)
    QML_UNCREATABLE("made by the application")
};

struct KeyRecorderVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::KeyRecorderVM)
    QML_NAMED_ELEMENT(KeyRecorderVM)
    QML_UNCREATABLE("made by the application")
};

struct KeyViewerVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::KeyViewerVM)
    QML_NAMED_ELEMENT(KeyViewerVM)
    QML_UNCREATABLE("made by the application")
};

struct KeyboardShortcutHandlerForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::KeyboardShortcutHandler)
    QML_NAMED_ELEMENT(KeyboardShortcutHandler)
    QML_UNCREATABLE("made by the application")
};

struct ComboRowForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::ComboRow)
    QML_VALUE_TYPE(comboRow)
};

struct KeyViewerEventForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::KeyViewerEvent)
    QML_VALUE_TYPE(keyViewerEvent)
};

} // namespace tamsel
