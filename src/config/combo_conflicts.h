#pragma once

#include "records/records.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tamsel {

// Which combos get in the way of each other, of the desktop's own shortcuts and of mappings. The
// marks are advice: nothing here keeps a combo from being stored or sent. Everything is linear in
// the number of combos.

/// A shortcut of the original desktop; `label` names it with its keys.
struct SystemShortcut {
    std::vector<std::string> modifiers;
    std::uint32_t keyCode = 0;
    std::string_view label;
};

/// The seventeen of the desktop, in the order in which they claim a trigger.
std::span<const SystemShortcut> systemShortcuts();

/// By the id of each marked combo, another one with which it shares a trigger. Keys and values
/// point into the lists that were asked about.
using KeyConflicts = std::unordered_map<std::string_view, const Shortcut*>;

/// The enabled combos of the user that share a trigger with another enabled one, and the built-in
/// ones, enabled or not, that share one with an enabled combo of the user. `builtIn` are those that
/// the user's combos do not cover.
KeyConflicts conflictingIds(std::span<const Shortcut> shortcuts, std::span<const Shortcut> builtIn);

/// By id, the label of the system shortcut that each enabled combo takes over.
std::unordered_map<std::string_view, std::string_view>
systemConflicts(std::span<const Shortcut> shortcuts, std::span<const Shortcut> builtIn);

/// The enabled mappings by their source key; the first of several on one key. The values point into
/// the list that was asked about.
using MappingFroms = std::unordered_map<std::uint32_t, const KeyMapping*>;
MappingFroms enabledMappingFroms(std::span<const KeyMapping> mappings);

/// Whether a mapping takes the trigger's key away, whatever the modifiers and the combo's state. No
/// key is nobody's.
bool isMappingConflict(const Shortcut& shortcut, const MappingFroms& froms);

} // namespace tamsel
