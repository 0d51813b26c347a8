#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

/// A key with modifiers. `keyCode` is a code of KeyCodes: a HID keyboard usage, 255 for Fn,
/// 0x1001..0x1020 for mouse buttons 1..32, 0 for no key. `modifiers` are names such as "command",
/// "left_shift" or "fn", in the order entered; the order carries no meaning.
struct KeyDefinition {
    std::uint32_t keyCode = 0;
    std::vector<std::string> modifiers = {};

    bool operator==(const KeyDefinition&) const = default;
};

/// One key replaced by another. `id` is a random UUID in upper-case canonical text, or a fixed
/// "default_..." name for a built-in record.
struct KeyMapping {
    std::string id;
    bool enabled = false;
    KeyDefinition from = {};
    KeyDefinition to = {};

    bool operator==(const KeyMapping&) const = default;
};

enum class ActionType { command, keyPress, typeText, pasteClipboard, openURL };

/// The action type's stored name, such as "keyPress".
std::string_view name(ActionType type);

/// What a combo runs. `value` is a shell command line, a key chord ("left_command+a", empty to
/// swallow the trigger), a text typed on a US layout, unused, or a URL, in the order of ActionType.
struct ShortcutAction {
    ActionType type = ActionType::command;
    std::string value = {};

    bool operator==(const ShortcutAction&) const = default;
};

/// A combo: `action` runs when the trigger goes down, `actionUp` (hold mode) when it is released.
struct Shortcut {
    std::string id;
    bool enabled = false;
    std::string title = {};
    KeyDefinition keys = {};
    ShortcutAction action = {};
    std::optional<ShortcutAction> actionUp = std::nullopt;

    bool operator==(const Shortcut&) const = default;
};

enum class GrabScope { all, selected };

/// A device as the configuration names it: USB/HID vendor and product id, and the product name.
struct GrabbedDevice {
    std::int64_t vendorID = 0;
    std::int64_t productID = 0;
    std::string product = {};

    /// "vendor:product", both decimal.
    std::string identifier() const;

    bool operator==(const GrabbedDevice&) const = default;
};

/// The whole configuration of a user. `grabScope` and `allowedDevices` are the older device
/// selection, kept for migration.
struct Cfg {
    std::string version = "1.0";
    std::vector<KeyMapping> mappings = {};
    std::vector<Shortcut> shortcuts = {};
    std::vector<GrabbedDevice> excludedKeyboards = {};
    std::vector<GrabbedDevice> mouseDevices = {};
    GrabScope grabScope = GrabScope::all;
    std::vector<GrabbedDevice> allowedDevices = {};

    bool operator==(const Cfg&) const = default;
};

} // namespace tamsel

template <>
struct std::hash<tamsel::GrabbedDevice> {
    std::size_t operator()(const tamsel::GrabbedDevice& device) const noexcept;
};
