#pragma once

// The logic's classes as QML types of this module. They come in here so that no room below knows
// QML; instances reach the screens as properties of the window, never as singletons.

#include "app/connection_vm.h"
#include "editors/combo_row.h"
#include "editors/combo_vm.h"
#include "editors/mapping_vm.h"
#include "editors/shortcut_edit_vm.h"
#include "keytools/key_recorder_vm.h"
#include "keytools/key_viewer_vm.h"
#include "keytools/keyboard_shortcut_handler.h"

#include <QtQml/qqml.h>

namespace tamsel {

struct ConnectionVMForeign {
    Q_GADGET
    QML_FOREIGN(tamsel::ConnectionVM)
    QML_NAMED_ELEMENT(ConnectionVM)
    QML_UNCREATABLE("made by the application")
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
