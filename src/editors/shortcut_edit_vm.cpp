#include "editors/shortcut_edit_vm.h"

#include "editors/action_titles.h"
#include "editors/combo_row.h"
#include "keys/key_codes.h"
#include "keys/key_press.h"

#include <algorithm>
#include <utility>

namespace tamsel {

namespace {

ActionType typeOf(ShortcutEditVM::Action action) {
    return static_cast<ActionType>(action);
}

ShortcutEditVM::Action actionOf(ActionType type) {
    return static_cast<ShortcutEditVM::Action>(type);
}

QStringList toQt(const std::vector<std::string>& names) {
    QStringList list;
    for (const std::string& name : names)
        list.append(QString::fromStdString(name));
    return list;
}

QString nameOf(quint32 code) {
    return code == KeyCodes::noKey ? QString() : QString::fromStdString(KeyCodes::name(code));
}

/// Changes an action's type, keeping the value for a return to the old one.
void switchType(ShortcutAction& action, ShortcutEditVM::Action to,
                QMap<ShortcutEditVM::Action, std::string>& values) {
    values[actionOf(action.type)] = std::exchange(action.value, values.value(to));
    action.type = typeOf(to);
}

} // namespace

ShortcutEditVM::ShortcutEditVM(Shortcut shortcut, Kind kind, QObject* parent)
    : QObject(parent), m_editedShortcut(std::move(shortcut)), m_kind(kind) {}

bool ShortcutEditVM::canSave() const {
    return tamsel::canSave(m_editedShortcut, m_mainKeyPick);
}

void ShortcutEditVM::setTitle(const QString& title) {
    m_editedShortcut.title = title.toStdString();
    Q_EMIT changed();
}

QString ShortcutEditVM::keyName() const {
    return nameOf(keyCode());
}

QStringList ShortcutEditVM::modifiers() const {
    return toQt(m_editedShortcut.keys.modifiers);
}

QStringList ShortcutEditVM::triggerCaps() const {
    return capNames(m_editedShortcut.keys.modifiers, keyCode());
}

void ShortcutEditVM::pickKey(quint32 keyCode) {
    m_editedShortcut.keys.keyCode = keyCode;
    Q_EMIT changed();
}

void ShortcutEditVM::recordTrigger(quint32 keyCode, const QStringList& modifiers) {
    KeyDefinition keys{keyCode};
    for (const QString& name : modifiers)
        keys.modifiers.push_back(name.toStdString());
    m_editedShortcut.keys = std::move(keys);
    Q_EMIT changed();
}

void ShortcutEditVM::toggleModifier(const QString& name) {
    auto& modifiers = m_editedShortcut.keys.modifiers;
    modifiers = withModifierToggled(std::move(modifiers), name.toStdString());
    Q_EMIT changed();
}

ShortcutEditVM::Action ShortcutEditVM::action() const {
    return actionOf(m_editedShortcut.action.type);
}

void ShortcutEditVM::setAction(Action action) {
    if (action == this->action())
        return;
    switchType(m_editedShortcut.action, action, m_values);
    Q_EMIT changed();
}

void ShortcutEditVM::setValue(const QString& value) {
    m_editedShortcut.action.value = value.toStdString();
    Q_EMIT changed();
}

QString ShortcutEditVM::valueMessage() const {
    return tamsel::valueMessage(m_editedShortcut.action).value_or(QString());
}

int ShortcutEditVM::mainKey() const {
    return int(keyPressMainKey(m_editedShortcut.action.value));
}

QString ShortcutEditVM::mainKeyName() const {
    return nameOf(mainKey());
}

QStringList ShortcutEditVM::outputModifiers() const {
    return toQt(keyPressModifiers(m_editedShortcut.action.value));
}

QStringList ShortcutEditVM::outputCaps() const {
    return capNames(keyPressModifiers(m_editedShortcut.action.value), mainKey());
}

void ShortcutEditVM::pickMainKey(quint32 keyCode) {
    std::string& value = m_editedShortcut.action.value;
    m_mainKeyPick = canBeMainKey(keyCode) ? MainKeyPick::accepted : MainKeyPick::refused;
    if (m_mainKeyPick == MainKeyPick::accepted)
        value = composeKeyPress(keyPressModifiers(value), keyCode);
    Q_EMIT changed();
}

void ShortcutEditVM::toggleOutputModifier(const QString& name) {
    std::string& value = m_editedShortcut.action.value;
    value = composeKeyPress(withModifierToggled(keyPressModifiers(value), name.toStdString()),
                            keyPressMainKey(value));
    Q_EMIT changed();
}

void ShortcutEditVM::setHoldMode(bool on) {
    if (on == holdMode())
        return;
    auto& actionUp = m_editedShortcut.actionUp;
    actionUp = on ? std::optional(ShortcutAction{ActionType::openURL}) : std::nullopt;
    m_upValues.clear();
    Q_EMIT changed();
}

ShortcutEditVM::Action ShortcutEditVM::upAction() const {
    return holdMode() ? actionOf(m_editedShortcut.actionUp->type) : OpenURL;
}

void ShortcutEditVM::setUpAction(Action action) {
    if (!holdMode() || action == upAction())
        return;
    switchType(*m_editedShortcut.actionUp, action, m_upValues);
    Q_EMIT changed();
}

QString ShortcutEditVM::upValue() const {
    return holdMode() ? QString::fromStdString(m_editedShortcut.actionUp->value) : QString();
}

void ShortcutEditVM::setUpValue(const QString& value) {
    if (!holdMode())
        return;
    m_editedShortcut.actionUp->value = value.toStdString();
    Q_EMIT changed();
}

QString ShortcutEditVM::upMessage() const {
    return holdMode() ? tamsel::valueMessage(*m_editedShortcut.actionUp).value_or(QString())
                      : QString();
}

QString ShortcutEditVM::titleOf(Action action) {
    return actionTitle(typeOf(action));
}

} // namespace tamsel
