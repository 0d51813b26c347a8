#pragma once

#include "engine/engine.h"

#include <cstdint>

namespace tamsel {

/// Whether a device can be seized by the daemon at all: a touchpad, say, never is.
enum class Reach : std::uint8_t { canBeSeized, outOfReach };

/// What is known of a device's keys when it is seized: all up, or as its events so far have said.
enum class KeysThen : std::uint8_t { allUp, asSeen };

/// Seizes and frees devices as the core wishes. What became of a wish it tells the core, at once or
/// later: seized(), freed() or refused(). A wish stays until the opposite one; a device that is
/// refused is tried again when something has changed.
class DeviceControl {
public:
    virtual ~DeviceControl() = default;

    virtual void want(engine::DeviceIndex device, engine::Seizure seizure) = 0;
    /// Somebody asks for it: those that were refused are tried again.
    virtual void tryAgain() = 0;
};

} // namespace tamsel
