#include "config/combo_conflicts.h"

#include "config/trigger_signatures.h"
#include "keys/key_codes.h"

namespace tamsel {

namespace {

/// The first two combos with one signature; `second` stays null while there is only one.
struct Holders {
    const Shortcut* first = nullptr;
    const Shortcut* second = nullptr;
};

template <class Value>
using BySignature = std::unordered_map<TriggerSignature, Value, TriggerSignature::Hash>;

BySignature<Holders> holdersOf(std::span<const Shortcut> shortcuts) {
    BySignature<Holders> holders;
    holders.reserve(shortcuts.size() * 2);
    for (const Shortcut& shortcut : shortcuts) {
        if (!shortcut.enabled)
            continue;
        forEachSignature(shortcut.keys, [&](const TriggerSignature& signature) {
            Holders& held = holders[signature];
            if (!held.first)
                held.first = &shortcut;
            else if (!held.second && held.first != &shortcut)
                held.second = &shortcut;
            return Walk::on;
        });
    }
    return holders;
}

const BySignature<std::string_view>& systemLabels() {
    static const BySignature<std::string_view> labels = [] {
        BySignature<std::string_view> all;
        for (const SystemShortcut& row : systemShortcuts()) {
            forEachSignature({row.keyCode, row.modifiers}, [&](const TriggerSignature& signature) {
                all.try_emplace(signature, row.label);
                return Walk::on;
            });
        }
        return all;
    }();
    return labels;
}

} // namespace

std::span<const SystemShortcut> systemShortcuts() {
    using Modifiers = std::vector<std::string>;
    static const std::vector<SystemShortcut> rows = [] {
        const auto row = [](Modifiers modifiers, std::string_view key, std::string_view label) {
            return SystemShortcut{std::move(modifiers), KeyCodes::find(key)->code, label};
        };
        return std::vector<SystemShortcut>{
            row({"command"}, "space", "Spotlight (⌘ Space)"),
            row({"command", "option"}, "space", "Spotlight File Search (⌥ ⌘ Space)"),
            row({"command"}, "tab", "App Switcher (⌘ Tab)"),
            row({"control"}, "up_arrow", "Mission Control (⌃ ↑)"),
            row({"control"}, "down_arrow", "Application Windows (⌃ ↓)"),
            row({"control"}, "left_arrow", "Move Space Left (⌃ ←)"),
            row({"control"}, "right_arrow", "Move Space Right (⌃ →)"),
            row({"command", "option"}, "escape", "Force Quit (⌘ ⌥ Esc)"),
            row({"command", "shift"}, "3", "Screenshot Full (⇧ ⌘ 3)"),
            row({"command", "shift"}, "4", "Screenshot Area (⇧ ⌘ 4)"),
            row({"command", "shift"}, "5", "Screenshot Tools (⇧ ⌘ 5)"),
            row({"command", "control"}, "q", "Lock Screen (⌃ ⌘ Q)"),
            row({"command"}, "h", "Hide App (⌘ H)"),
            row({"command", "option"}, "h", "Hide Others (⌘ ⌥ H)"),
            row({"command"}, "m", "Minimize Window (⌘ M)"),
            row({"command"}, "q", "Quit App (⌘ Q)"),
            row({"command"}, "w", "Close Window (⌘ W)"),
        };
    }();
    return rows;
}

KeyConflicts conflictingIds(std::span<const Shortcut> shortcuts,
                            std::span<const Shortcut> builtIn) {
    const BySignature<Holders> holders = holdersOf(shortcuts);
    KeyConflicts conflicts;
    for (const Shortcut& shortcut : shortcuts) {
        if (!shortcut.enabled)
            continue;
        forEachSignature(shortcut.keys, [&](const TriggerSignature& signature) {
            const Holders& held = holders.at(signature);
            if (!held.second)
                return Walk::on;
            conflicts.emplace(shortcut.id, held.first == &shortcut ? held.second : held.first);
            return Walk::stop;
        });
    }
    for (const Shortcut& shortcut : builtIn) {
        forEachSignature(shortcut.keys, [&](const TriggerSignature& signature) {
            const auto held = holders.find(signature);
            if (held == holders.end())
                return Walk::on;
            conflicts.emplace(shortcut.id, held->second.first);
            return Walk::stop;
        });
    }
    return conflicts;
}

std::unordered_map<std::string_view, std::string_view>
systemConflicts(std::span<const Shortcut> shortcuts, std::span<const Shortcut> builtIn) {
    const auto& labels = systemLabels();
    std::unordered_map<std::string_view, std::string_view> conflicts;
    for (const auto& list : {shortcuts, builtIn}) {
        for (const Shortcut& shortcut : list) {
            if (!shortcut.enabled)
                continue;
            forEachSignature(shortcut.keys, [&](const TriggerSignature& signature) {
                const auto found = labels.find(signature);
                if (found == labels.end())
                    return Walk::on;
                conflicts.emplace(shortcut.id, found->second);
                return Walk::stop;
            });
        }
    }
    return conflicts;
}

MappingFroms enabledMappingFroms(std::span<const KeyMapping> mappings) {
    MappingFroms froms;
    for (const KeyMapping& mapping : mappings) {
        if (mapping.enabled)
            froms.emplace(mapping.from.keyCode, &mapping);
    }
    return froms;
}

bool isMappingConflict(const Shortcut& shortcut, const MappingFroms& froms) {
    return shortcut.keys.keyCode != KeyCodes::noKey && froms.count(shortcut.keys.keyCode) != 0;
}

} // namespace tamsel
