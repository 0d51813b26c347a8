#pragma once

#include "config/records/records.h"
#include "daemon/protocol/daemon_protocol.h"
#include "engine/key_events.h"
#include "engine/mapping_table.h"
#include "engine/usage_slots.h"
#include "engine/virtual_keys.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tamsel::engine {

/// Whether the engine rewrites a device's events or only watches them.
enum class Seizure : std::uint8_t { watched, seized };

/// What became of one event of a seized device; `outputUsage` is the usage itself unless remapped.
struct Report {
    KeyEventAction action = keyPassthrough;
    std::uint32_t outputUsage = 0;

    bool operator==(const Report&) const = default;
};

/// What goes to the virtual device, in this order; valid until the engine's next call.
using Outputs = std::span<const OutputEvent>;

struct Outcome {
    Outputs outputs;
    std::optional<Report> report; ///< nothing for a watched device and for an event that is no news
    bool lockOut = false;         ///< the lock-out chord came together: all is released and watched
};

/// The remapping: a function of its state and the next event. It knows no clock, file or bus, and
/// an event allocates nothing. A physical key that is down keeps what its press produced until its
/// release; whenever the outputs are taken away from it (a new configuration, a device freed or
/// lost), its release produces nothing.
class Engine final {
public:
    /// Takes the configuration's enabled mappings; everything held is released first.
    Outputs reload(const Cfg& cfg);

    /// Announces a device, watched. Indexes may come in any order.
    void addDevice(DeviceIndex device);
    /// The device is gone with all its keys; everything held is released.
    Outputs removeDevice(DeviceIndex device);
    /// Freeing a seized device releases everything held.
    Outputs setSeizure(DeviceIndex device, Seizure seizure);

    /// Events of unknown devices and codes, repeated presses and stray releases are no news.
    Outcome handle(const InputEvent& event);

private:
    struct Press {
        bool isDown = false;
        KeyEventAction action = keyPassthrough;
        MappingTarget held; ///< what this press holds on the virtual device; noSlot for nothing
    };
    struct Device {
        bool isPresent = false;
        Seizure seizure = Seizure::watched;
        std::array<Press, slotCount> presses{};
    };

    Device* find(DeviceIndex device);
    Report press(Press& press, Slot slot);
    Report release(Press& press, Slot slot);
    void releaseEverything();
    bool lockOutChordIsDown() const;

    MappingTable m_mappings;
    std::vector<Device> m_devices;
    VirtualKeys m_keys;
};

} // namespace tamsel::engine
