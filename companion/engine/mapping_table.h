#pragma once

#include "engine/modifier_set.h"
#include "engine/usage_slots.h"
#include "records/records.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tamsel::engine {

/// What a mapped key is: a key, and the modifiers held together with it.
struct MappingTarget {
    Slot key = noSlot;
    ModifierMask modifiers = 0;
    bool isConditional = false; ///< the mapping asks for modifiers, which the target comes without
};

/// The enabled mappings of a configuration, ready for look-up. A mapping without a source or a
/// target key, with a code that the engine cannot hold or with an unknown modifier name does
/// nothing.
class MappingTable final {
public:
    MappingTable() = default;
    explicit MappingTable(std::span<const KeyMapping> mappings);

    /// The first mapping, in the user's order, whose source is `key` and whose modifiers are met;
    /// one without modifiers is met by any. Null when there is none. Allocates nothing.
    const MappingTarget* find(Slot key, ModifierMask held) const;

private:
    struct Entry {
        Slot from = noSlot;
        ModifierPattern modifiers;
        MappingTarget target;
    };

    std::vector<Entry> m_entries;                       ///< by source key, then in the user's order
    std::array<std::uint32_t, slotCount + 1> m_begin{}; ///< where each source key's entries begin
};

} // namespace tamsel::engine
