#pragma once

#include "editors/combo_row.h"
#include "editors/shortcut_edit_vm.h"
#include "records/records.h"

#include <QObject>

#include <functional>
#include <memory>
#include <vector>

namespace tamsel {

class ConfigDesk;
class Workspace;

/// The combo screen's model: the user's combos, then the built-in ones that they do not cover, and
/// the editor while one is open. Main thread only.
class ComboVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::ComboRow> rows READ rows NOTIFY rowsChanged)
    Q_PROPERTY(int ownCount READ ownCount NOTIFY rowsChanged)
    Q_PROPERTY(tamsel::ShortcutEditVM* editor READ editor NOTIFY editorChanged)

public:
    ComboVM(ConfigDesk& desk, Workspace& workspace, QObject* parent = nullptr);

    const QList<ComboRow>& rows() const { return m_rows; }
    /// How many of the rows are the user's; they come first.
    int ownCount() const { return int(m_userShortcuts.size()); }
    /// The open editor's model, owned here; null while none is open.
    ShortcutEditVM* editor() const { return m_editor.get(); }

    /// Reads the store again, the mappings for their marks included; the screen calls it each time
    /// it is shown.
    Q_INVOKABLE void reload();
    /// Opens the editor on a new, empty combo.
    Q_INVOKABLE void addCombo();
    /// Opens the editor on a row's combo; on a built-in one, to promote it.
    Q_INVOKABLE void edit(const QString& id);
    /// Stores the edited combo and closes the editor, returning the combo's id; an empty text, and
    /// nothing done, while the editor says that it can't be saved.
    Q_INVOKABLE QString save();
    Q_INVOKABLE void cancel();

    Q_INVOKABLE void deleteCombo(const QString& id);
    /// On a built-in row, true promotes it to the top of the user's rows and false does nothing.
    Q_INVOKABLE void setEnabled(const QString& id, bool enabled);
    /// Opens the link of a row's title.
    Q_INVOKABLE void openLink(const QString& id);

signals:
    void rowsChanged();
    void editorChanged();

private:
    void openEditor(const Shortcut& shortcut);
    void closeEditor();
    void change(const std::function<bool(std::vector<Shortcut>&)>& edit);
    void show(const Cfg& cfg);
    const Shortcut* find(const QString& id) const;

    ConfigDesk& m_desk;
    Workspace& m_workspace;
    std::vector<Shortcut> m_userShortcuts;
    std::vector<Shortcut> m_builtInShortcuts;
    QList<ComboRow> m_rows;
    std::unique_ptr<ShortcutEditVM> m_editor;
    bool m_isAddingNew = false;
    bool m_isPromotingDefault = false;
};

} // namespace tamsel
