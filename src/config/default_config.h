#pragma once

#include "records/records.h"

#include <span>
#include <string>
#include <vector>

namespace tamsel {

/// The built-in records, all disabled, under fixed ids ("default_..."). They are never stored:
/// wherever the configuration is shown or sent, those that the user's own records do not cover
/// follow them.
std::span<const KeyMapping> defaultMappings();
std::span<const Shortcut> defaultShortcuts();

/// What a combo does, whatever its trigger: "type|value|upType|upValue", or "type|value||" where
/// there is no release action.
std::string actionSignature(const Shortcut& shortcut);

/// The built-in mappings whose physical key no mapping of the user starts from, enabled or not.
std::vector<KeyMapping> uncoveredDefaultMappings(const std::vector<KeyMapping>& mappings);
/// The built-in combos whose action signature no combo of the user has, enabled or not.
std::vector<Shortcut> uncoveredDefaultShortcuts(const std::vector<Shortcut>& shortcuts);

/// The configuration with the uncovered built-in records after the user's.
Cfg withDefaults(const Cfg& cfg);

/// A built-in record as one of the user's own: enabled, under the given fresh id.
KeyMapping promoted(const KeyMapping& builtIn, std::string freshId);
Shortcut promoted(const Shortcut& builtIn, std::string freshId);

} // namespace tamsel
