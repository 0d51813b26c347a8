#pragma once

#include "records/records.h"
#include "records/seen_device.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>

// The stored names of the records' fields and enumerators, and what may be left out. Every coder
// walks these tables; no field name is written anywhere else.

namespace tamsel {

/// Whether a document without the key is an error. Members of type std::optional need no mark: they
/// are written only where they hold a value.
enum class Presence { required, defaulted };

template <class Record, class Value>
struct Field {
    using ValueType = Value;
    static constexpr bool isOptional = false;

    std::string_view key;
    Value Record::*member;
    Presence presence = Presence::required;
};

template <class Record, class Value>
struct Field<Record, std::optional<Value>> {
    using ValueType = Value;
    static constexpr bool isOptional = true;

    std::string_view key;
    std::optional<Value> Record::*member;
    Presence presence = Presence::defaulted;
};

template <class Record, class Value>
Field(std::string_view, Value Record::*) -> Field<Record, Value>;
template <class Record, class Value>
Field(std::string_view, Value Record::*, Presence) -> Field<Record, Value>;

template <class Record>
struct FieldsOf;

template <>
struct FieldsOf<KeyDefinition> {
    static constexpr auto list = std::tuple{Field{"keyCode", &KeyDefinition::keyCode},
                                            Field{"modifiers", &KeyDefinition::modifiers}};
};

template <>
struct FieldsOf<KeyMapping> {
    static constexpr auto list =
        std::tuple{Field{"id", &KeyMapping::id}, Field{"enabled", &KeyMapping::enabled},
                   Field{"from", &KeyMapping::from}, Field{"to", &KeyMapping::to}};
};

template <>
struct FieldsOf<ShortcutAction> {
    static constexpr auto list =
        std::tuple{Field{"type", &ShortcutAction::type}, Field{"value", &ShortcutAction::value}};
};

template <>
struct FieldsOf<Shortcut> {
    static constexpr auto list =
        std::tuple{Field{"id", &Shortcut::id},         Field{"enabled", &Shortcut::enabled},
                   Field{"title", &Shortcut::title},   Field{"keys", &Shortcut::keys},
                   Field{"action", &Shortcut::action}, Field{"actionUp", &Shortcut::actionUp}};
};

template <>
struct FieldsOf<GrabbedDevice> {
    static constexpr auto list = std::tuple{Field{"vendorID", &GrabbedDevice::vendorID},
                                            Field{"productID", &GrabbedDevice::productID},
                                            Field{"product", &GrabbedDevice::product}};
};

template <>
struct FieldsOf<Cfg> {
    static constexpr auto list =
        std::tuple{Field{"version", &Cfg::version},
                   Field{"mappings", &Cfg::mappings},
                   Field{"shortcuts", &Cfg::shortcuts},
                   Field{"excludedKeyboards", &Cfg::excludedKeyboards, Presence::defaulted},
                   Field{"mouseDevices", &Cfg::mouseDevices, Presence::defaulted},
                   Field{"grabScope", &Cfg::grabScope, Presence::defaulted},
                   Field{"allowedDevices", &Cfg::allowedDevices, Presence::defaulted}};
};

template <>
struct FieldsOf<SeenDeviceInfo> {
    static constexpr auto list = std::tuple{Field{"vendorID", &SeenDeviceInfo::vendorID},
                                            Field{"productID", &SeenDeviceInfo::productID},
                                            Field{"product", &SeenDeviceInfo::product},
                                            Field{"manufacturer", &SeenDeviceInfo::manufacturer},
                                            Field{"transport", &SeenDeviceInfo::transport},
                                            Field{"isSeized", &SeenDeviceInfo::isSeized},
                                            Field{"isAllowed", &SeenDeviceInfo::isAllowed},
                                            Field{"isMouse", &SeenDeviceInfo::isMouse}};
};

template <class T>
concept RecordType = requires {
    FieldsOf<T>::list;
};

template <RecordType Record>
inline constexpr std::size_t fieldCount =
    std::tuple_size_v<std::remove_const_t<decltype(FieldsOf<Record>::list)>>;

/// The names of an enumeration's cases, and what the enumeration is called in an error.
template <class Enum>
struct NamesOf;

template <class Enum>
struct EnumName {
    Enum value;
    std::string_view name;
};

template <>
struct NamesOf<ActionType> {
    static constexpr std::string_view what = "an action type";
    static constexpr auto list = std::to_array<EnumName<ActionType>>({
        {ActionType::command, "command"},
        {ActionType::keyPress, "keyPress"},
        {ActionType::typeText, "typeText"},
        {ActionType::pasteClipboard, "pasteClipboard"},
        {ActionType::openURL, "openURL"},
    });
};

template <>
struct NamesOf<GrabScope> {
    static constexpr std::string_view what = "a grab scope";
    static constexpr auto list = std::to_array<EnumName<GrabScope>>({
        {GrabScope::all, "all"},
        {GrabScope::selected, "selected"},
    });
};

template <class T>
concept NamedEnum = requires {
    NamesOf<T>::list;
};

/// The case's name; empty for a value that is no case.
template <NamedEnum Enum>
constexpr std::string_view nameOf(Enum value) {
    for (const auto& entry : NamesOf<Enum>::list) {
        if (entry.value == value)
            return entry.name;
    }
    return {};
}

} // namespace tamsel
