#include "engine/modifier_set.h"

#include <algorithm>
#include <string_view>

namespace tamsel::engine {

namespace {

constexpr Slot firstModifier = 224;
constexpr Slot lastModifier = 231;
constexpr Slot fnSlot = 255;
constexpr unsigned fnBit = 8;
/// Left control, shift, option and command are bits 0..3, the right ones follow in that order.
constexpr unsigned sideDistance = 4;

struct Name {
    std::string_view text;
    ModifierMask bit;
};

constexpr std::array sidedNames{
    Name{"left_control", 1U << 0U}, Name{"left_shift", 1U << 1U},    Name{"left_option", 1U << 2U},
    Name{"left_command", 1U << 3U}, Name{"right_control", 1U << 4U}, Name{"right_shift", 1U << 5U},
    Name{"right_option", 1U << 6U}, Name{"right_command", 1U << 7U}, Name{"fn", 1U << fnBit},
};

constexpr std::array genericNames{
    Name{"control", 1U << 0U},
    Name{"shift", 1U << 1U},
    Name{"option", 1U << 2U},
    Name{"command", 1U << 3U},
};

template <std::size_t N>
ModifierMask find(const std::array<Name, N>& names, std::string_view text) {
    const auto* const found = std::find_if(names.begin(), names.end(),
                                           [text](const Name& name) { return name.text == text; });
    return found == names.end() ? ModifierMask{0} : found->bit;
}

} // namespace

ModifierMask modifierBit(Slot slot) {
    if (slot >= firstModifier && slot <= lastModifier)
        return static_cast<ModifierMask>(1U << (slot - firstModifier));
    return slot == fnSlot ? static_cast<ModifierMask>(1U << fnBit) : ModifierMask{0};
}

Slot modifierSlot(std::size_t bit) {
    return bit == fnBit ? fnSlot : static_cast<Slot>(firstModifier + bit);
}

std::optional<ModifierPattern> ModifierPattern::parse(std::span<const std::string> names) {
    ModifierPattern pattern;
    for (const std::string& name : names) {
        if (const ModifierMask sided = find(sidedNames, name); sided != 0)
            pattern.m_sided |= sided;
        else if (const ModifierMask generic = find(genericNames, name); generic != 0)
            pattern.m_generic |= generic;
        else
            return std::nullopt;
    }
    return pattern;
}

bool ModifierPattern::matches(ModifierMask held) const {
    const unsigned eitherSide = m_generic | (unsigned{m_generic} << sideDistance);
    const unsigned heldKinds = held | (unsigned{held} >> sideDistance);
    return (held & m_sided) == m_sided && (heldKinds & m_generic) == m_generic &&
           (held & ~(m_sided | eitherSide)) == 0;
}

ModifierMask ModifierPattern::keysToHold() const {
    return static_cast<ModifierMask>(m_sided | m_generic);
}

} // namespace tamsel::engine
