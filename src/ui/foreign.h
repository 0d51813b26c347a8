#pragma once

// The logic's classes as QML types of this module. They come in here so that no room below knows
// QML; instances reach the screens as properties of the window, never as singletons.

#include "app/connection_vm.h"
#include "editors/mapping_vm.h"

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

} // namespace tamsel
