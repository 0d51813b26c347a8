#pragma once

#include "base/node_access.h"

#include <string>

namespace tamsel {

/// What keeps the daemon from working. `input` is about the machine's input devices together
/// (inputAccess()).
struct AccessReport {
    NodeAccess uinput = NodeAccess::noNode;
    NodeAccess input = NodeAccess::noNode;

    bool isInputDenied() const {
        return input == NodeAccess::noAccess || input == NodeAccess::notInGroupYet;
    }

    bool operator==(const AccessReport&) const = default;
};

/// One line for a log: which of the two is ready and what the other one lacks.
std::string describe(const AccessReport& report);

} // namespace tamsel
