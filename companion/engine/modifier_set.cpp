#include "engine/modifier_set.h"

#include "keys/modifier_names.h"

namespace tamsel::engine {

namespace {

constexpr Slot firstModifier = 224;
constexpr Slot lastModifier = 231;
constexpr Slot fnSlot = 255;
constexpr unsigned fnBit = 8;

// The names' order is that of the bits.
static_assert(modifierNames::keys.size() == modifierCount);

ModifierMask bitOf(std::size_t index) {
    return static_cast<ModifierMask>(1U << index);
}

} // namespace

ModifierMask modifierBit(Slot slot) {
    if (slot >= firstModifier && slot <= lastModifier)
        return bitOf(slot - firstModifier);
    return slot == fnSlot ? bitOf(fnBit) : ModifierMask{0};
}

Slot modifierSlot(std::size_t bit) {
    return bit == fnBit ? fnSlot : static_cast<Slot>(firstModifier + bit);
}

std::optional<ModifierPattern> ModifierPattern::parse(std::span<const std::string> names) {
    ModifierPattern pattern;
    for (const std::string& name : names) {
        if (const auto key = modifierNames::indexOfKey(name))
            pattern.m_sided |= bitOf(*key);
        else if (const auto kind = modifierNames::indexOfGeneric(name))
            pattern.m_generic |= bitOf(*kind);
        else
            return std::nullopt;
    }
    return pattern;
}

bool ModifierPattern::matches(ModifierMask held) const {
    const unsigned eitherSide = m_generic | (unsigned{m_generic} << modifierNames::sideDistance);
    const unsigned heldKinds = held | (unsigned{held} >> modifierNames::sideDistance);
    return (held & m_sided) == m_sided && (heldKinds & m_generic) == m_generic &&
           (held & ~(m_sided | eitherSide)) == 0;
}

ModifierMask ModifierPattern::keysToHold() const {
    return static_cast<ModifierMask>(m_sided | m_generic);
}

} // namespace tamsel::engine
