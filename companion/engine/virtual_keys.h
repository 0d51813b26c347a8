#pragma once

#include "engine/key_chord.h"
#include "engine/key_events.h"
#include "engine/modifier_set.h"
#include "engine/usage_slots.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tamsel::engine {

/// The keys of the virtual device. Several holders may hold one key: it goes down with the first
/// and up with the last. A chord lifts the modifiers that are held when it begins, so that it comes
/// out as itself; they are down again, as far as they are still held, when it ends. What happened
/// is collected until the next clearOutputs().
class VirtualKeys final {
public:
    VirtualKeys();

    /// Each hold() is answered by one release() of the same key, or by a releaseAll().
    void hold(Slot slot);
    void release(Slot slot);

    /// One chord at a time: a new one takes the place of the last.
    void beginChord(const KeyChord& chord);
    /// Nothing when there is none.
    void endChord();

    /// Presses and releases a key, with Shift or alone. A holder of the key loses it.
    void tap(Slot slot, ModifierMask modifiers);

    /// Everything up, whoever holds it: first the other keys, then the modifiers.
    void releaseAll();

    /// The modifiers that have a holder, lifted or not; not those of a chord.
    ModifierMask heldModifiers() const { return m_held; }

    std::span<const OutputEvent> outputs() const { return m_outputs; }
    void clearOutputs() { m_outputs.clear(); }

private:
    void takeChordKeysUp();
    /// Brings the modifiers' outputs in line with who holds them; those that go up go first.
    void settleModifiers();
    void emit(Slot slot, Edge edge) { m_outputs.push_back({usageOf(slot), edge}); }

    std::array<std::uint16_t, slotCount> m_holders{};
    ModifierMask m_held = 0;            ///< modifiers with a holder
    ModifierMask m_lifted = 0;          ///< held ones that a chord keeps up
    ModifierMask m_down = 0;            ///< modifiers that are down on the device
    KeyChord m_chord;                   ///< empty when there is none
    std::vector<OutputEvent> m_outputs; ///< roomy from the start: a key event allocates nothing
};

} // namespace tamsel::engine
