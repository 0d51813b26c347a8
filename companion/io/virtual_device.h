#pragma once

#include "base/error.h"
#include "engine/key_events.h"

#include <span>

namespace tamsel {

/// Where rewritten events go. Implementations keep no reference to what they are given.
class VirtualDevice {
public:
    virtual ~VirtualDevice() = default;

    /// Writes the events in order, at once and without blocking on anybody's reading. An empty
    /// list writes nothing.
    virtual Result<void> write(std::span<const engine::OutputEvent> events) = 0;
};

} // namespace tamsel
