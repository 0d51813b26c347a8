#include "engine/virtual_keys.h"

namespace tamsel::engine {

VirtualKeys::VirtualKeys() {
    // The longest step is a release of everything after one event's own outputs.
    m_outputs.reserve(2 * slotCount);
}

void VirtualKeys::hold(Slot slot) {
    if (m_holders[slot]++ == 0)
        emit(slot, Edge::down);
}

void VirtualKeys::release(Slot slot) {
    if (m_holders[slot] > 0 && --m_holders[slot] == 0)
        emit(slot, Edge::up);
}

void VirtualKeys::releaseAll() {
    // A modifier that goes up last turns no still held key into another one.
    for (Slot slot = 1; slot < slotCount; ++slot) {
        if (m_holders[slot] > 0 && modifierBit(slot) == 0) {
            m_holders[slot] = 0;
            emit(slot, Edge::up);
        }
    }
    for (std::size_t bit = 0; bit < modifierCount; ++bit) {
        const Slot slot = modifierSlot(bit);
        if (m_holders[slot] > 0) {
            m_holders[slot] = 0;
            emit(slot, Edge::up);
        }
    }
}

void VirtualKeys::emit(Slot slot, Edge edge) {
    const ModifierMask bit = modifierBit(slot);
    m_modifiers = static_cast<ModifierMask>(edge == Edge::down ? m_modifiers | bit
                                                               : m_modifiers & ~unsigned{bit});
    m_outputs.push_back({usageOf(slot), edge});
}

} // namespace tamsel::engine
