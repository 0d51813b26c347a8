#include "keys/key_codes.h"

#include "keys/key_table.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <vector>

namespace tamsel {

namespace KeyCodes {

namespace {

using keyTable::Group;

constexpr auto categoryList = std::to_array<KeyCat>(
    {KeyCat::modifierKeys, KeyCat::controlsAndSymbols, KeyCat::arrowKeys, KeyCat::letterKeys,
     KeyCat::numberKeys, KeyCat::functionKeys, KeyCat::specialKeys});

constexpr std::uint32_t firstControl = 40;
constexpr std::uint32_t firstArrow = 79;
constexpr std::uint32_t lastArrow = 82;

bool isArrow(const KeyCodeDef& key) {
    return key.code >= firstArrow && key.code <= lastArrow;
}

template <class Predicate>
std::vector<KeyCodeDef> select(std::span<const KeyCodeDef> keys, Predicate predicate) {
    std::vector<KeyCodeDef> chosen;
    std::copy_if(keys.begin(), keys.end(), std::back_inserter(chosen), predicate);
    return chosen;
}

std::span<const KeyCodeDef> controlsWithCapsLock() {
    static const std::vector<KeyCodeDef> keys = select(all(), [](const KeyCodeDef& key) {
        return key.code >= firstControl && key.code <= capsLock;
    });
    return keys;
}

std::span<const KeyCodeDef> arrows() {
    static const std::vector<KeyCodeDef> keys = select(all(), isArrow);
    return keys;
}

std::span<const KeyCodeDef> controlsAndNavigation() {
    static const std::vector<KeyCodeDef> keys = [] {
        std::vector<KeyCodeDef> joined = select(keyTable::group(Group::controlsAndSymbols),
                                                [](const KeyCodeDef&) { return true; });
        for (const KeyCodeDef& key : keyTable::group(Group::arrowsAndNavigation)) {
            if (!isArrow(key))
                joined.push_back(key);
        }
        return joined;
    }();
    return keys;
}

} // namespace

std::span<const KeyCodeDef> all() {
    return keyTable::all();
}

const KeyCodeDef* find(std::uint32_t code) {
    const auto entry = std::find_if(all().begin(), all().end(),
                                    [&](const KeyCodeDef& key) { return key.code == code; });
    return entry != all().end() ? &*entry : nullptr;
}

const KeyCodeDef* find(std::string_view name) {
    const auto entry = std::find_if(all().begin(), all().end(),
                                    [&](const KeyCodeDef& key) { return key.name == name; });
    return entry != all().end() ? &*entry : nullptr;
}

std::string name(std::uint32_t code) {
    if (const KeyCodeDef* key = find(code))
        return std::string(key->name);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "unknown (0x%02X)", code);
    return text.data();
}

std::span<const KeyGroup> selectorGroups() {
    static const std::array groups = {
        KeyGroup{"Letters", keyTable::group(Group::letters)},
        KeyGroup{"Numbers", keyTable::group(Group::numbers)},
        KeyGroup{"Function Keys", keyTable::group(Group::functionKeys)},
        KeyGroup{"Modifiers", keyTable::group(Group::modifiers)},
        KeyGroup{"Controls & Symbols", keyTable::group(Group::controlsAndSymbols)},
        KeyGroup{"Arrow & Navigation", keyTable::group(Group::arrowsAndNavigation)},
        KeyGroup{"Keypad", keyTable::group(Group::keypad)},
        KeyGroup{"PC Keys", keyTable::group(Group::pcKeys)},
        KeyGroup{"Media Keys", keyTable::group(Group::mediaKeys)},
        KeyGroup{"International", keyTable::group(Group::international)},
        KeyGroup{"Mouse Buttons", keyTable::group(Group::mouseButtons)},
        KeyGroup{"Other", keyTable::group(Group::other)},
    };
    return groups;
}

std::span<const KeyCat> categories() {
    return categoryList;
}

std::string_view title(KeyCat category) {
    switch (category) {
    case KeyCat::modifierKeys:
        return "Modifier keys";
    case KeyCat::controlsAndSymbols:
        return "Controls and symbols";
    case KeyCat::arrowKeys:
        return "Arrow keys";
    case KeyCat::letterKeys:
        return "Letter keys";
    case KeyCat::numberKeys:
        return "Number keys";
    case KeyCat::functionKeys:
        return "Function keys";
    case KeyCat::specialKeys:
        return "Special keys";
    }
    return {};
}

std::span<const KeyCodeDef> keys(KeyCat category) {
    switch (category) {
    case KeyCat::modifierKeys:
        return keyTable::group(Group::modifiers);
    case KeyCat::controlsAndSymbols:
        return controlsWithCapsLock();
    case KeyCat::arrowKeys:
        return arrows();
    case KeyCat::letterKeys:
        return keyTable::group(Group::letters);
    case KeyCat::numberKeys:
        return keyTable::group(Group::numbers);
    case KeyCat::functionKeys:
        return keyTable::group(Group::functionKeys);
    case KeyCat::specialKeys:
        return controlsAndNavigation();
    }
    return {};
}

std::optional<std::uint16_t> hidToMac(std::uint32_t usage) {
    for (const keyTable::VirtualKey& key : keyTable::virtualKeys()) {
        if (key.usage == usage)
            return key.virtualKeyCode;
    }
    return std::nullopt;
}

std::optional<std::uint32_t> macToHid(std::uint16_t virtualKeyCode) {
    for (const keyTable::VirtualKey& key : keyTable::virtualKeys()) {
        if (key.virtualKeyCode == virtualKeyCode)
            return key.usage;
    }
    return std::nullopt;
}

} // namespace KeyCodes

} // namespace tamsel
