#pragma once

#include <cstdint>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tamsel {

/// What stands between this process and a device node.
enum class NodeAccess : std::uint8_t {
    ok,
    noNode,        ///< there is none, or no driver behind it
    noAccess,      ///< this process may not open it
    notInGroupYet, ///< nor may it, but its user may since the last login: a new one is needed
};

/// What keeps the daemon from working. `input` is about the machine's input devices together:
/// denied when some may not be opened and no keyboard can be read.
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

/// The groups by which a process may open nodes.
struct Groups {
    std::vector<gid_t> held;    ///< of this process
    std::vector<gid_t> granted; ///< of its user, as the group database says now

    /// Asks the group database; without an answer nothing is granted.
    static Groups current();
};

/// Why a node could not be opened for `wanted` (permission bits as of a group: 4 read, 2 write),
/// given its mode and group.
NodeAccess whyDenied(mode_t mode, gid_t group, mode_t wanted, const Groups& groups);

} // namespace tamsel
