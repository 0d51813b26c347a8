#pragma once

#include "config/combo_rules.h"
#include "records/records.h"

#include <QMap>
#include <QObject>
#include <QStringList>

namespace tamsel {

/// The combo editor's model: one combo while it is being edited. Nothing is stored here. Main
/// thread only.
class ShortcutEditVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isNew READ isNew CONSTANT)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY changed)
    Q_PROPERTY(int keyCode READ keyCode NOTIFY changed)
    Q_PROPERTY(QString keyName READ keyName NOTIFY changed)
    Q_PROPERTY(QStringList modifiers READ modifiers NOTIFY changed)
    Q_PROPERTY(QStringList triggerCaps READ triggerCaps NOTIFY changed)
    Q_PROPERTY(Action action READ action WRITE setAction NOTIFY changed)
    Q_PROPERTY(QString value READ value WRITE setValue NOTIFY changed)
    Q_PROPERTY(QString valueMessage READ valueMessage NOTIFY changed)
    Q_PROPERTY(int mainKey READ mainKey NOTIFY changed)
    Q_PROPERTY(QString mainKeyName READ mainKeyName NOTIFY changed)
    Q_PROPERTY(QStringList outputModifiers READ outputModifiers NOTIFY changed)
    Q_PROPERTY(QStringList outputCaps READ outputCaps NOTIFY changed)
    Q_PROPERTY(bool keyPressMainInvalid READ keyPressMainInvalid NOTIFY changed)
    Q_PROPERTY(bool holdMode READ holdMode WRITE setHoldMode NOTIFY changed)
    Q_PROPERTY(Action upAction READ upAction WRITE setUpAction NOTIFY changed)
    Q_PROPERTY(QString upValue READ upValue WRITE setUpValue NOTIFY changed)
    Q_PROPERTY(QString upMessage READ upMessage NOTIFY changed)
    Q_PROPERTY(bool canSave READ canSave NOTIFY changed)

public:
    /// ActionType, in its order.
    enum Action { Command, KeyPress, TypeText, PasteClipboard, OpenURL };
    Q_ENUM(Action)

    /// Whether the combo is one that did not exist before.
    enum class Kind { added, existing };

    ShortcutEditVM(Shortcut shortcut, Kind kind, QObject* parent = nullptr);

    const Shortcut& editedShortcut() const { return m_editedShortcut; }
    bool canSave() const;
    bool isNew() const { return m_kind == Kind::added; }

    QString title() const { return QString::fromStdString(m_editedShortcut.title); }
    void setTitle(const QString& title);

    int keyCode() const { return int(m_editedShortcut.keys.keyCode); }
    QString keyName() const;
    QStringList modifiers() const;
    QStringList triggerCaps() const;
    /// A key from the selector; the modifiers stay.
    Q_INVOKABLE void pickKey(quint32 keyCode);
    /// A recorded key with the modifiers that were held; it replaces the whole trigger.
    Q_INVOKABLE void recordTrigger(quint32 keyCode, const QStringList& modifiers);
    Q_INVOKABLE void toggleModifier(const QString& name);

    Action action() const;
    /// Each type keeps the value that it had in this editor.
    void setAction(Action action);
    QString value() const { return QString::fromStdString(m_editedShortcut.action.value); }
    void setValue(const QString& value);
    QString valueMessage() const;

    int mainKey() const;
    QString mainKeyName() const;
    QStringList outputModifiers() const;
    QStringList outputCaps() const;
    bool keyPressMainInvalid() const { return m_mainKeyPick == MainKeyPick::refused; }
    Q_INVOKABLE void pickMainKey(quint32 keyCode);
    Q_INVOKABLE void toggleOutputModifier(const QString& name);

    bool holdMode() const { return m_editedShortcut.actionUp.has_value(); }
    void setHoldMode(bool on);
    /// Of no meaning while hold mode is off.
    Action upAction() const;
    void setUpAction(Action action);
    QString upValue() const;
    void setUpValue(const QString& value);
    QString upMessage() const;

    /// What the window calls an action type, translated.
    Q_INVOKABLE static QString titleOf(Action action);

signals:
    void changed();

private:
    Shortcut m_editedShortcut;
    Kind m_kind;
    MainKeyPick m_mainKeyPick = MainKeyPick::accepted;
    QMap<Action, std::string> m_values;   ///< of the types that are not chosen
    QMap<Action, std::string> m_upValues; ///< the same for the release action
};

} // namespace tamsel
