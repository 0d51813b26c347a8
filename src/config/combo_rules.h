#pragma once

#include "records/records.h"

#include <QString>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tamsel {

// What the combo editor accepts. Characters are user-perceived ones.

inline constexpr qsizetype maxTypedCharacters = 2048;

/// What keeps a text from being typed.
struct TypeTextCheck {
    bool isEmpty = false;
    bool isTooLong = false;         ///< more than maxTypedCharacters
    qsizetype unsupportedCount = 0; ///< characters that a US layout has no key for

    bool passes() const { return !isEmpty && !isTooLong && unsupportedCount == 0; }
    bool operator==(const TypeTextCheck&) const = default;
};
TypeTextCheck typeTextCheck(const QString& text);

/// Whether openableURL() takes the text.
bool isValidURL(const QString& text);

/// What the editor says under the action's field, translated; nothing while there is nothing to
/// correct or the field is yet to be filled in.
std::optional<QString> valueMessage(const ShortcutAction& action);

/// Whether the last main key picked for a key press was refused.
enum class MainKeyPick { accepted, refused };

/// Whether the editor's combo may be saved.
bool canSave(const Shortcut& edited, MainKeyPick lastPick);

/// The list after the toggle of the modifier `name` was pressed: without the name, or with it at
/// the end and without those that it excludes, as "command" excludes its two sides.
std::vector<std::string> withModifierToggled(std::vector<std::string> modifiers,
                                             std::string_view name);

} // namespace tamsel
