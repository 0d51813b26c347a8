#include "engine/mapping_table.h"

#include <algorithm>

namespace tamsel::engine {

MappingTable::MappingTable(std::span<const KeyMapping> mappings) {
    for (const KeyMapping& mapping : mappings) {
        const Slot from = slotOf(mapping.from.keyCode);
        const Slot to = slotOf(mapping.to.keyCode);
        const auto trigger = ModifierPattern::parse(mapping.from.modifiers);
        const auto produced = ModifierPattern::parse(mapping.to.modifiers);
        if (mapping.enabled && from != noSlot && to != noSlot && trigger && produced)
            m_entries.push_back(
                {from, *trigger, {to, produced->keysToHold(), !trigger->isEmpty()}});
    }
    std::stable_sort(m_entries.begin(), m_entries.end(),
                     [](const Entry& a, const Entry& b) { return a.from < b.from; });
    for (std::size_t slot = 0; slot <= slotCount; ++slot) {
        const auto begin =
            std::partition_point(m_entries.begin(), m_entries.end(),
                                 [slot](const Entry& entry) { return entry.from < slot; });
        m_begin[slot] = static_cast<std::uint32_t>(begin - m_entries.begin());
    }
}

const MappingTarget* MappingTable::find(Slot key, ModifierMask held) const {
    for (std::uint32_t i = m_begin[key]; i < m_begin[key + 1U]; ++i) {
        const Entry& entry = m_entries[i];
        if (entry.modifiers.isEmpty() || entry.modifiers.matches(held))
            return &entry.target;
    }
    return nullptr;
}

} // namespace tamsel::engine
