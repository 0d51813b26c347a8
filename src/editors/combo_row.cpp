#include "editors/combo_row.h"

#include "config/combo_conflicts.h"
#include "config/text_rules.h"
#include "editors/action_titles.h"
#include "editors/combo_title.h"
#include "keys/key_codes.h"
#include "keys/modifier_names.h"

#include <algorithm>
#include <unordered_map>

namespace tamsel {

namespace {

/// A chord of no keys only swallows its trigger.
QString shownValue(const ShortcutAction& action) {
    if (action.type == ActionType::keyPress && action.value.empty())
        return QStringLiteral("—");
    return shownLine(action.value);
}

QString keyName(quint32 code) {
    return code == KeyCodes::noKey ? QString() : QString::fromStdString(KeyCodes::name(code));
}

/// Where a modifier stands among a trigger's caps.
std::size_t capRank(const std::string& name) {
    constexpr std::size_t ranksOfKind = 3; // generic, left, right
    const std::size_t kinds = modifierNames::generic.size();
    if (const auto generic = modifierNames::indexOfGeneric(name))
        return *generic * ranksOfKind;
    const auto key = modifierNames::indexOfKey(name);
    if (!key)
        return kinds * ranksOfKind + 1;
    const std::size_t side = *key / modifierNames::sideDistance;
    return side > 1 ? kinds * ranksOfKind
                    : *key % modifierNames::sideDistance * ranksOfKind + side + 1;
}

/// The marks of every row, looked up by id.
struct Marks {
    KeyConflicts keys;
    std::unordered_map<std::string_view, std::string_view> system;
    MappingFroms froms;
};

enum class Origin { user, builtIn };

ComboRow row(const Shortcut& shortcut, Origin origin, const Marks& marks) {
    const ComboTitle title = ComboTitle::parse(shortcut.title);
    ComboRow out{
        .id = QString::fromStdString(shortcut.id),
        .builtIn = origin == Origin::builtIn,
        .enabled = shortcut.enabled,
        .title = shownLine(title.text),
        .linkText = shownLine(title.linkText),
        .keys = capNames(shortcut.keys.modifiers, shortcut.keys.keyCode),
        .action = actionTitle(shortcut.action.type),
        .value = shownValue(shortcut.action),
        .holdMode = shortcut.actionUp.has_value(),
    };
    if (shortcut.actionUp) {
        out.upAction = actionTitle(shortcut.actionUp->type);
        out.upValue = shownValue(*shortcut.actionUp);
    }
    if (const auto conflict = marks.keys.find(shortcut.id); conflict != marks.keys.end()) {
        out.keyConflict = true;
        out.conflictsWith = shownLine(ComboTitle::parse(conflict->second->title).text);
    }
    if (isMappingConflict(shortcut, marks.froms)) {
        out.mappingConflict = true;
        out.remappedTo = keyName(marks.froms.at(shortcut.keys.keyCode)->to.keyCode);
    }
    if (const auto label = marks.system.find(shortcut.id); label != marks.system.end())
        out.systemShortcut =
            QString::fromUtf8(label->second.data(), qsizetype(label->second.size()));
    return out;
}

} // namespace

QStringList capNames(const std::vector<std::string>& modifiers, quint32 keyCode) {
    std::vector<std::string> sorted = modifiers;
    std::stable_sort(sorted.begin(), sorted.end(), [](const std::string& a, const std::string& b) {
        return capRank(a) < capRank(b);
    });
    QStringList names;
    for (const std::string& name : sorted)
        names.append(shownLine(name));
    if (keyCode != KeyCodes::noKey)
        names.append(keyName(keyCode));
    return names;
}

QList<ComboRow> comboRows(const std::vector<Shortcut>& shortcuts,
                          const std::vector<Shortcut>& builtIn,
                          const std::vector<KeyMapping>& mappings) {
    const Marks marks{conflictingIds(shortcuts, builtIn), systemConflicts(shortcuts, builtIn),
                      enabledMappingFroms(mappings)};
    QList<ComboRow> rows;
    rows.reserve(qsizetype(shortcuts.size()) + qsizetype(builtIn.size()));
    for (const Shortcut& shortcut : shortcuts)
        rows.append(row(shortcut, Origin::user, marks));
    for (const Shortcut& shortcut : builtIn)
        rows.append(row(shortcut, Origin::builtIn, marks));
    return rows;
}

} // namespace tamsel
