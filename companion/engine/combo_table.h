#pragma once

#include "engine/key_chord.h"
#include "engine/modifier_set.h"
#include "engine/usage_slots.h"
#include "records/records.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tamsel::engine {

/// What a combo does. `chord` is that of a key press action, empty for every other one and for one
/// that only swallows its trigger.
struct Combo {
    ShortcutAction action;
    KeyChord chord;
    std::optional<ShortcutAction> actionUp;
};

/// The enabled combos of a configuration, ready for look-up. One without a trigger key, with a key
/// that the engine cannot hold or with an unknown modifier name never fires.
class ComboTable final {
public:
    ComboTable() = default;
    explicit ComboTable(std::span<const Shortcut> shortcuts);

    /// The first combo, in the user's order, on this key with exactly these modifiers. Null when
    /// there is none. Allocates nothing; valid as long as the table.
    const Combo* find(Slot key, ModifierMask held) const;

private:
    struct Entry {
        Slot key = noSlot;
        ModifierPattern modifiers;
        std::uint32_t combo = 0;
    };

    std::vector<Combo> m_combos;
    std::vector<Entry> m_entries;                       ///< by key, then in the user's order
    std::array<std::uint32_t, slotCount + 1> m_begin{}; ///< where each key's entries begin
};

} // namespace tamsel::engine
