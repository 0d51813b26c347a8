#pragma once

#include "engine/key_events.h"
#include "engine/modifier_set.h"
#include "engine/usage_slots.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tamsel::engine {

/// The keys of the virtual device. Several holders may hold one key: it goes down with the first
/// and up with the last. What happened is collected until the next clearOutputs().
class VirtualKeys final {
public:
    VirtualKeys();

    /// Each hold() is answered by one release() of the same key, or by a releaseAll().
    void hold(Slot slot);
    void release(Slot slot);

    /// Everything up, whoever holds it: first the other keys, then the modifiers.
    void releaseAll();

    ModifierMask heldModifiers() const { return m_modifiers; }

    std::span<const OutputEvent> outputs() const { return m_outputs; }
    void clearOutputs() { m_outputs.clear(); }

private:
    void emit(Slot slot, Edge edge);

    std::array<std::uint16_t, slotCount> m_holders{};
    ModifierMask m_modifiers = 0;
    std::vector<OutputEvent> m_outputs; ///< roomy from the start: a key event allocates nothing
};

} // namespace tamsel::engine
