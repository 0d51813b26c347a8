#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace tamsel {

/// What stands between somebody and a device node.
enum class NodeAccess : std::uint8_t {
    ok,
    noNode,        ///< there is none, or no driver behind it
    noAccess,      ///< it may not be opened
    notInGroupYet, ///< not yet: the account has the group, but this session began before it did
};

/// The groups by which somebody may open nodes.
struct Groups {
    std::vector<gid_t> held;    ///< of the process
    std::vector<gid_t> granted; ///< of its user, as the group database says now

    /// Those of this process. Asks the group database; without an answer nothing is granted.
    static Groups current();
    /// Those of the next process that a user of this name starts: held as granted.
    static Groups ofUser(const std::string& name);
};

/// Why a node could not be opened for `wanted` (permission bits as of a group: 4 read, 2 write),
/// given its mode and group.
NodeAccess whyDenied(mode_t mode, gid_t group, mode_t wanted, const Groups& groups);

/// One of the machine's input devices.
struct InputNodeAccess {
    NodeAccess access = NodeAccess::noNode;
    bool isKeyboard = false;
};

/// What stands between somebody and the machine's input devices together. One keyboard that can be
/// read is enough, whatever else is closed; a single open node that is none is not: a game
/// controller is often all that a desktop opens to its user.
NodeAccess inputAccess(std::span<const InputNodeAccess> nodes);

} // namespace tamsel
