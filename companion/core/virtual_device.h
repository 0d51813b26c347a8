#pragma once

#include "base/error.h"
#include "engine/key_events.h"
#include "records/records.h"

#include <span>

namespace tamsel {

/// Where rewritten events go. Implementations keep no reference to what they are given.
class VirtualDevice {
public:
    virtual ~VirtualDevice() = default;

    /// Writes the events in order, at once and without blocking on anybody's reading. An empty
    /// list writes nothing.
    virtual Result<void> write(std::span<const engine::OutputEvent> events) = 0;

    /// A combo fired this action; told before the outputs that come of it. A device that keeps a
    /// record of what happens writes it down.
    virtual Result<void> record(const ShortcutAction& /*action*/) { return {}; }
};

} // namespace tamsel
