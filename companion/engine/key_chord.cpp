#include "engine/key_chord.h"

#include "keys/key_codes.h"
#include "keys/key_press.h"

#include <algorithm>
#include <bit>

namespace tamsel::engine {

namespace {

Slot keyNamed(std::string_view name) {
    if (name == "left_bracket")
        return slotOf(KeyCodes::find("open_bracket")->code);
    if (name == "right_bracket")
        return slotOf(KeyCodes::find("close_bracket")->code);
    const KeyCodeDef* const key = KeyCodes::find(name);
    return key ? slotOf(key->code) : noSlot;
}

} // namespace

KeyChord KeyChord::parse(std::string_view value) {
    KeyChord chord;
    // All of these names are modifiers.
    if (const auto pattern = ModifierPattern::parse(keyPressModifiers(value)))
        chord.modifiers = pattern->keysToHold();
    auto* next = chord.keys.begin();
    for (const std::string_view piece : keyPressPieces(value)) {
        const Slot key = keyNamed(piece);
        if (key != noSlot && modifierBit(key) == 0 && next != chord.keys.end() &&
            std::find(chord.keys.begin(), next, key) == next)
            *next++ = key;
    }
    return chord;
}

Slot KeyChord::mainKey() const {
    if (keys[0] != noSlot || modifiers == 0)
        return keys[0];
    return modifierSlot(static_cast<std::size_t>(std::countr_zero(modifiers)));
}

} // namespace tamsel::engine
