#include "config/combo_rules.h"

#include "config/text_rules.h"
#include "keys/modifier_names.h"
#include "keys/us_typing.h"

#include <QCoreApplication>
#include <QTextBoundaryFinder>
#include <QUrl>

#include <algorithm>

namespace tamsel {

namespace {

struct ComboRules {
    Q_DECLARE_TR_FUNCTIONS(ComboRules)
};

std::optional<QString> typeTextMessage(const QString& text) {
    const TypeTextCheck check = typeTextCheck(text);
    if (check.isEmpty)
        return ComboRules::tr("Type Text cannot be empty.");
    if (check.isTooLong)
        return ComboRules::tr("Type Text is limited to %1 characters.").arg(maxTypedCharacters);
    if (check.unsupportedCount > 0)
        return ComboRules::tr("Type Text contains %1 unsupported characters. Use US ASCII, space, "
                              "Return, and Tab.")
            .arg(check.unsupportedCount);
    return std::nullopt;
}

bool passes(const ShortcutAction& action, MainKeyPick lastPick) {
    switch (action.type) {
    case ActionType::command:
    case ActionType::pasteClipboard:
        return true;
    case ActionType::keyPress:
        return lastPick == MainKeyPick::accepted;
    case ActionType::typeText:
        return typeTextCheck(QString::fromStdString(action.value)).passes();
    case ActionType::openURL:
        return isValidURL(QString::fromStdString(action.value));
    }
    return false;
}

/// Whether two modifier names can't stand side by side: a generic one and one of its sides.
bool excludes(std::string_view one, std::string_view other) {
    const auto isSideOf = [](std::string_view side, std::string_view name) {
        const auto generic = modifierNames::indexOfGeneric(name);
        return generic && (side == modifierNames::keys[*generic] ||
                           side == modifierNames::keys[*generic + modifierNames::sideDistance]);
    };
    return isSideOf(one, other) || isSideOf(other, one);
}

} // namespace

TypeTextCheck typeTextCheck(const QString& text) {
    TypeTextCheck check{.isEmpty = text.isEmpty()};
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype count = 0;
    for (qsizetype begin = 0, end = 0; (end = finder.toNextBoundary()) != -1; begin = end) {
        ++count;
        if (end - begin != 1 || !usTyping(text[begin].unicode()))
            ++check.unsupportedCount;
    }
    check.isTooLong = count > maxTypedCharacters;
    return check;
}

bool isValidURL(const QString& text) {
    return openableURL(text).has_value();
}

std::optional<QString> valueMessage(const ShortcutAction& action) {
    const QString value = QString::fromStdString(action.value);
    if (action.type == ActionType::typeText)
        return typeTextMessage(value);
    if (action.type == ActionType::openURL && !value.isEmpty() && !isValidURL(value))
        return ComboRules::tr("Enter a valid URL with a scheme (file: is not allowed).");
    return std::nullopt;
}

bool canSave(const Shortcut& edited, MainKeyPick lastPick) {
    if (edited.actionUp && edited.actionUp->type == ActionType::openURL &&
        !isValidURL(QString::fromStdString(edited.actionUp->value)))
        return false;
    return passes(edited.action, lastPick);
}

std::vector<std::string> withModifierToggled(std::vector<std::string> modifiers,
                                             std::string_view name) {
    const auto count = modifiers.size();
    std::erase(modifiers, name);
    if (modifiers.size() != count)
        return modifiers;
    std::erase_if(modifiers, [name](const std::string& other) { return excludes(name, other); });
    modifiers.emplace_back(name);
    return modifiers;
}

} // namespace tamsel
