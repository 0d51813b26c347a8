#pragma once

#include "base/node_access.h"

#include <QString>

#include <functional>

namespace tamsel {

/// What the machine says of the things that remapping needs. Access is that of whom the daemon runs
/// as: its own account where its unit is installed, else the user.
struct MachineReport {
    QString daemonUser = {};
    bool hasUnit = false; ///< the daemon's system unit is installed

    bool kernelHasDriver = false; ///< uinput is loaded, or can be
    NodeAccess uinput = NodeAccess::noNode;
    QString uinputMode =
        {}; ///< who may open its node, as "root:root crw-------"; empty without one

    /// Of the machine's input devices together, by the daemon's rule (inputAccess()).
    NodeAccess input = NodeAccess::noNode;
    QString inputMode = {};  ///< of one in the way, else of the first that can be read
    QString inputGroup = {}; ///< the group of that node

    QString helper = {}; ///< the program that grants access to the driver; empty when it is missing

    bool operator==(const MachineReport&) const = default;
};

/// Looks at the machine. Main thread.
class MachineInspector {
public:
    virtual ~MachineInspector() = default;

    /// Looks in the background; `done` gets the report later on the main thread, unless this object
    /// is gone by then.
    virtual void inspect(std::function<void(const MachineReport&)> done) = 0;
};

} // namespace tamsel
