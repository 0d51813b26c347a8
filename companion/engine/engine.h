#pragma once

#include "base/error.h"
#include "engine/combo_table.h"
#include "engine/key_events.h"
#include "engine/mapping_table.h"
#include "engine/usage_slots.h"
#include "engine/virtual_keys.h"
#include "protocol/daemon_protocol.h"
#include "records/records.h"

#include <array>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
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

/// What goes to the virtual device, in this order.
using Outputs = std::span<const OutputEvent>;
/// The actions of combos that fired, in this order, before the outputs. The outputs of key presses
/// are among the outputs; every other action is the caller's to run.
using Actions = std::span<const ShortcutAction* const>;

/// All of it is valid until the engine's next call; the actions also after type().
struct Effects {
    Outputs outputs;
    Actions actions;
};

struct Outcome {
    Effects effects;
    std::optional<Report> report; ///< nothing for a watched device and for an event that is no news
    bool lockOut = false;         ///< the lock-out chord came together: all is released and watched
};

/// The remapping: a function of its state and the next event. It knows no clock, file or bus, and
/// an event allocates nothing.
///
/// Mappings come first: a mapped key acts as its target for everything after. Then a combo whose
/// trigger matches the held modifiers exactly swallows its key, fires its action and, when the key
/// goes up again, its release action. A key chord is held as long as its trigger, or until another
/// key that is no modifier goes down.
///
/// A physical key that is down keeps what its press produced until its release. When the outputs
/// are taken away from it (a new configuration, a device freed or lost), its release produces
/// nothing; a release action that is due is fired then and there, so that nothing stays begun.
class Engine final {
public:
    Engine();

    /// Takes the configuration's enabled mappings and combos; everything held is released first.
    Effects reload(const Cfg& cfg);

    /// Announces a device, watched. Indexes may come in any order.
    void addDevice(DeviceIndex device);
    /// The device is gone with all its keys; everything held is released.
    Effects removeDevice(DeviceIndex device);
    /// Freeing a seized device releases everything held.
    Effects setSeizure(DeviceIndex device, Seizure seizure);

    /// Events of unknown devices and codes, repeated presses and stray releases are no news.
    Outcome handle(const InputEvent& event);

    /// Types a text on a US layout, at most `limit` characters. Held modifiers are lifted meanwhile
    /// and a chord ends. A text with a character that no key types is refused as a whole; the error
    /// does not quote it.
    Result<Outputs> type(std::string_view text, std::size_t limit);

private:
    struct Press {
        bool isDown = false;
        KeyEventAction action = keyPassthrough;
        Slot output = noSlot; ///< for reports; noSlot when the press produced nothing
        bool isHeld = false;  ///< holds `output` and `modifiers` on the virtual device
        ModifierMask modifiers = 0;
        const Combo* combo = nullptr; ///< the combo that this press set off
    };
    struct Device {
        bool isPresent = false;
        Seizure seizure = Seizure::watched;
        std::array<Press, slotCount> presses{};
    };

    Device* find(DeviceIndex device);
    void begin();
    Effects effects() const { return {m_keys.outputs(), m_fired}; }
    Report press(Press& press, Slot slot);
    void pressCombo(Press& press, Slot slot, const Combo& combo);
    void pressKey(Press& press, const MappingTarget& target);
    void beginChord(Press& press, const KeyChord& chord);
    void endChord();
    Report release(Press& press, Slot slot);
    void releaseEverything();
    bool lockOutChordIsDown() const;

    MappingTable m_mappings;
    ComboTable m_combos;
    ComboTable m_lastCombos;      ///< what the actions fired by a reload point into
    std::deque<Device> m_devices; ///< keeps its elements where they are
    VirtualKeys m_keys;
    const Press* m_chordOwner = nullptr; ///< whose release ends the chord
    std::vector<const ShortcutAction*> m_fired;
};

} // namespace tamsel::engine
