#include "engine/combo_table.h"

#include <algorithm>

namespace tamsel::engine {

ComboTable::ComboTable(std::span<const Shortcut> shortcuts) {
    for (const Shortcut& shortcut : shortcuts) {
        const Slot key = slotOf(shortcut.keys.keyCode);
        const auto modifiers = ModifierPattern::parse(shortcut.keys.modifiers);
        if (!shortcut.enabled || key == noSlot || !modifiers)
            continue;
        m_entries.push_back({key, *modifiers, static_cast<std::uint32_t>(m_combos.size())});
        const auto& action = shortcut.action;
        m_combos.push_back(
            {action,
             action.type == ActionType::keyPress ? KeyChord::parse(action.value) : KeyChord{},
             shortcut.actionUp});
    }
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const Entry& a, const Entry& b) { return a.key < b.key; });
    for (std::size_t slot = 0; slot <= slotCount; ++slot) {
        const auto begin =
            std::partition_point(m_entries.begin(), m_entries.end(),
                                 [slot](const Entry& entry) { return entry.key < slot; });
        m_begin[slot] = static_cast<std::uint32_t>(begin - m_entries.begin());
    }
}

const Combo* ComboTable::find(Slot key, ModifierMask held) const {
    for (std::uint32_t i = m_begin[key]; i < m_begin[key + 1U]; ++i) {
        if (m_entries[i].modifiers.matches(held))
            return &m_combos[m_entries[i].combo];
    }
    return nullptr;
}

} // namespace tamsel::engine
