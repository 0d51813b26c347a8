#include "keys/key_press.h"

#include "keys/key_codes.h"
#include "keys/modifier_names.h"

#include <algorithm>

namespace tamsel {

namespace {

/// The key that a modifier's name stands for in a chord; empty when it is no modifier's name.
std::string_view chordModifier(std::string_view name) {
    if (const auto generic = modifierNames::indexOfGeneric(name))
        return modifierNames::keys[*generic];
    return modifierNames::indexOfKey(name) ? name : std::string_view();
}

} // namespace

std::vector<std::string_view> keyPressPieces(std::string_view value) {
    std::vector<std::string_view> pieces;
    while (!value.empty()) {
        const std::size_t plus = std::min(value.find('+'), value.size());
        if (plus > 0)
            pieces.push_back(value.substr(0, plus));
        value.remove_prefix(std::min(plus + 1, value.size()));
    }
    return pieces;
}

std::vector<std::string> keyPressModifiers(std::string_view value) {
    std::vector<std::string> modifiers;
    for (const std::string_view piece : keyPressPieces(value)) {
        const std::string_view name = chordModifier(piece);
        if (!name.empty() && std::find(modifiers.begin(), modifiers.end(), name) == modifiers.end())
            modifiers.emplace_back(name);
    }
    return modifiers;
}

std::uint32_t keyPressMainKey(std::string_view value) {
    for (const std::string_view piece : keyPressPieces(value)) {
        const KeyCodeDef* const key =
            chordModifier(piece).empty() ? KeyCodes::find(piece) : nullptr;
        if (key && canBeMainKey(key->code))
            return key->code;
    }
    return KeyCodes::noKey;
}

std::string composeKeyPress(std::span<const std::string> modifiers, std::uint32_t mainKey) {
    std::string value;
    const auto append = [&value](std::string_view name) {
        if (!value.empty())
            value += '+';
        value += name;
    };
    for (const std::string& modifier : modifiers)
        append(modifier);
    if (mainKey != KeyCodes::noKey)
        append(KeyCodes::name(mainKey));
    return value;
}

bool canBeMainKey(std::uint32_t keyCode) {
    return keyCode < KeyCodes::mouseButtonBase && keyCode != KeyCodes::capsLock &&
           !isModifierUsage(keyCode);
}

} // namespace tamsel
