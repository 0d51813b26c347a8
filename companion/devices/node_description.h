#pragma once

#include "devices/uinput_device.h"
#include "records/seen_device.h"

#include <optional>
#include <string>
#include <vector>

namespace tamsel {

/// What there is to know of a node before it is opened for good.
struct NodeDescription {
    std::string name;    ///< "event3"
    std::string sysPath; ///< of its input device; never the same again after a replug
    /// One for each interface, the keyboard first; `isAllowed` where it can be seized at all.
    std::vector<SeenDeviceInfo> entries;
    KeyboardPlace place = KeyboardPlace::external;
    std::string family;        ///< the same for the nodes of one physical device; may be empty
    bool hasMediaKeys = false; ///< without being a keyboard: it goes with that of its family
    std::optional<VirtualRecipe> standIn; ///< of the pointing half, if there is one

    bool isOfInterest() const { return !entries.empty() || hasMediaKeys; }
};

} // namespace tamsel
