#include "config/default_config.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace tamsel {

std::string actionSignature(const Shortcut& shortcut) {
    const auto part = [](const ShortcutAction& action) {
        return std::string(name(action.type)) + "|" + action.value;
    };
    return part(shortcut.action) + "|" + (shortcut.actionUp ? part(*shortcut.actionUp) : "|");
}

std::vector<KeyMapping> uncoveredDefaultMappings(const std::vector<KeyMapping>& mappings) {
    std::unordered_set<std::uint32_t> caught;
    for (const KeyMapping& mapping : mappings)
        caught.insert(mapping.from.keyCode);
    std::vector<KeyMapping> uncovered;
    for (const KeyMapping& builtIn : defaultMappings()) {
        if (caught.count(builtIn.from.keyCode) == 0)
            uncovered.push_back(builtIn);
    }
    return uncovered;
}

std::vector<Shortcut> uncoveredDefaultShortcuts(const std::vector<Shortcut>& shortcuts) {
    std::unordered_set<std::string> signatures;
    for (const Shortcut& shortcut : shortcuts)
        signatures.insert(actionSignature(shortcut));
    std::vector<Shortcut> uncovered;
    for (const Shortcut& builtIn : defaultShortcuts()) {
        if (signatures.count(actionSignature(builtIn)) == 0)
            uncovered.push_back(builtIn);
    }
    return uncovered;
}

Cfg withDefaults(const Cfg& cfg) {
    Cfg merged = cfg;
    const auto append = [](auto& list, auto uncovered) {
        std::move(uncovered.begin(), uncovered.end(), std::back_inserter(list));
    };
    append(merged.mappings, uncoveredDefaultMappings(cfg.mappings));
    append(merged.shortcuts, uncoveredDefaultShortcuts(cfg.shortcuts));
    return merged;
}

KeyMapping promoted(const KeyMapping& builtIn, std::string freshId) {
    KeyMapping own = builtIn;
    own.id = std::move(freshId);
    own.enabled = true;
    return own;
}

Shortcut promoted(const Shortcut& builtIn, std::string freshId) {
    Shortcut own = builtIn;
    own.id = std::move(freshId);
    own.enabled = true;
    return own;
}

} // namespace tamsel
