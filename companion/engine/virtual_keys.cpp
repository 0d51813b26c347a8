#include "engine/virtual_keys.h"

#include <utility>

namespace tamsel::engine {

VirtualKeys::VirtualKeys() {
    // The longest step is a release of everything after one event's own outputs.
    m_outputs.reserve(2 * slotCount);
}

void VirtualKeys::hold(Slot slot) {
    if (m_holders[slot]++ > 0)
        return;
    if (const ModifierMask bit = modifierBit(slot); bit != 0) {
        m_held |= bit;
        settleModifiers();
    } else {
        emit(slot, Edge::down);
    }
}

void VirtualKeys::release(Slot slot) {
    if (m_holders[slot] == 0 || --m_holders[slot] > 0)
        return;
    if (const unsigned bit = modifierBit(slot); bit != 0) {
        m_held = static_cast<ModifierMask>(m_held & ~bit);
        m_lifted = static_cast<ModifierMask>(m_lifted & ~bit);
        settleModifiers();
    } else {
        emit(slot, Edge::up);
    }
}

void VirtualKeys::beginChord(const KeyChord& chord) {
    takeChordKeysUp();
    m_chord = chord;
    m_lifted = m_held;
    settleModifiers();
    for (const Slot key : m_chord.keys) {
        if (key != noSlot)
            hold(key);
    }
}

void VirtualKeys::endChord() {
    takeChordKeysUp();
    m_chord = {};
    m_lifted = 0;
    settleModifiers();
}

void VirtualKeys::tap(Slot slot, ModifierMask modifiers) {
    beginChord({modifiers, {}});
    if (std::exchange(m_holders[slot], std::uint16_t{0}) > 0)
        emit(slot, Edge::up);
    emit(slot, Edge::down);
    emit(slot, Edge::up);
}

void VirtualKeys::releaseAll() {
    // A modifier that goes up last turns no still held key into another one.
    for (Slot slot = 1; slot < slotCount; ++slot) {
        if (std::exchange(m_holders[slot], std::uint16_t{0}) > 0 && modifierBit(slot) == 0)
            emit(slot, Edge::up);
    }
    m_chord = {};
    m_held = 0;
    m_lifted = 0;
    settleModifiers();
}

void VirtualKeys::takeChordKeysUp() {
    for (std::size_t i = m_chord.keys.size(); i-- > 0;) {
        if (m_chord.keys[i] != noSlot)
            release(m_chord.keys[i]);
    }
}

void VirtualKeys::settleModifiers() {
    const unsigned wanted = m_chord.modifiers | (m_held & ~unsigned{m_lifted});
    const unsigned changed = wanted ^ m_down;
    for (const Edge edge : {Edge::up, Edge::down}) {
        const unsigned moving = edge == Edge::up ? changed & m_down : changed & wanted;
        for (std::size_t bit = 0; bit < modifierCount; ++bit) {
            if ((moving >> bit & 1U) != 0)
                emit(modifierSlot(bit), edge);
        }
    }
    m_down = static_cast<ModifierMask>(wanted);
}

} // namespace tamsel::engine
