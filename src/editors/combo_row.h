#pragma once

#include "records/records.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace tamsel {

/// One row of the combo screen. Texts are cut to what a line can show.
struct ComboRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(bool builtIn MEMBER builtIn)
    Q_PROPERTY(bool enabled MEMBER enabled)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString linkText MEMBER linkText)
    Q_PROPERTY(QStringList keys MEMBER keys)
    Q_PROPERTY(QString action MEMBER action)
    Q_PROPERTY(QString value MEMBER value)
    Q_PROPERTY(bool holdMode MEMBER holdMode)
    Q_PROPERTY(QString upAction MEMBER upAction)
    Q_PROPERTY(QString upValue MEMBER upValue)
    Q_PROPERTY(bool keyConflict MEMBER keyConflict)
    Q_PROPERTY(QString conflictsWith MEMBER conflictsWith)
    Q_PROPERTY(bool mappingConflict MEMBER mappingConflict)
    Q_PROPERTY(QString remappedTo MEMBER remappedTo)
    Q_PROPERTY(QString systemShortcut MEMBER systemShortcut)

public:
    QString id;
    bool builtIn = false;
    bool enabled = false;
    QString title = {};    ///< without the link that it may end in
    QString linkText = {}; ///< empty where there is no link
    QStringList keys =
        {}; ///< the trigger: modifiers in the order of their kinds, then the key's name
    QString action = {}; ///< the action's type, translated
    QString value = {};
    bool holdMode = false;
    QString upAction = {};
    QString upValue = {};
    bool keyConflict = false;
    QString conflictsWith = {}; ///< the title of a combo on the same keys
    bool mappingConflict = false;
    QString remappedTo = {}; ///< what a mapping makes of the trigger's key; empty when of no key
    QString systemShortcut = {}; ///< the label of the system shortcut that is taken over, or empty

    bool operator==(const ComboRow&) const = default;
};

/// The names of a trigger's or chord's key caps: control, shift, option, command and fn, each kind
/// generic, left, right; other names; last the key, unless it is 0.
QStringList capNames(const std::vector<std::string>& modifiers, quint32 keyCode);

/// The user's combos and, after them, the built-in ones, with their conflict marks. `mappings` are
/// the user's.
QList<ComboRow> comboRows(const std::vector<Shortcut>& shortcuts,
                          const std::vector<Shortcut>& builtIn,
                          const std::vector<KeyMapping>& mappings);

} // namespace tamsel
