#pragma once

#include <chrono>
#include <cstdint>

namespace tamsel::engine {

/// Time as the engine knows it: since an arbitrary start, never decreasing from event to event.
using EngineTime = std::chrono::milliseconds;

/// A zero-based number that the caller gives to a device; it is not reused for another device.
using DeviceIndex = std::uint32_t;

enum class Edge : std::uint8_t { down, up };

/// A key or button of a physical device. `usage` is a code of KeyCodes.
struct InputEvent {
    EngineTime time{0};
    DeviceIndex device = 0;
    std::uint32_t usage = 0;
    Edge edge = Edge::down;

    bool operator==(const InputEvent&) const = default;
};

/// What the virtual device is to do; `usage` is a code of KeyCodes.
struct OutputEvent {
    std::uint32_t usage = 0;
    Edge edge = Edge::down;

    bool operator==(const OutputEvent&) const = default;
};

} // namespace tamsel::engine
