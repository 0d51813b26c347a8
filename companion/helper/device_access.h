#pragma once

#include "base/error.h"

#include <string>

namespace tamsel::driver {

/// Lets the group read and write the device node. Fails when there is no such group.
Result<void> giveNodeToGroup(const std::string& node, const char* group);

/// Leaves the device node to its owner alone, with no access list. A node that isn't there is no
/// failure.
Result<void> takeNodeBack(const std::string& node);

} // namespace tamsel::driver
