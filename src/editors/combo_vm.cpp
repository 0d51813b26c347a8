#include "editors/combo_vm.h"

#include "config/config_desk.h"
#include "config/default_config.h"
#include "editors/combo_title.h"
#include "editors/fresh_id.h"
#include "keys/key_codes.h"
#include "platform/workspace.h"

#include <algorithm>
#include <utility>

namespace tamsel {

namespace {

template <class List>
auto findById(List& shortcuts, const QString& id) {
    return std::find_if(
        shortcuts.begin(), shortcuts.end(),
        [wanted = id.toStdString()](const Shortcut& shortcut) { return shortcut.id == wanted; });
}

} // namespace

ComboVM::ComboVM(ConfigDesk& desk, Workspace& workspace, QObject* parent)
    : QObject(parent), m_desk(desk), m_workspace(workspace) {
    reload();
}

void ComboVM::reload() {
    show(m_desk.load());
}

void ComboVM::addCombo() {
    if (m_editor)
        return;
    m_isAddingNew = true;
    openEditor({.id = freshId(), .enabled = true});
}

void ComboVM::edit(const QString& id) {
    if (m_editor)
        return;
    if (const auto own = findById(m_userShortcuts, id); own != m_userShortcuts.end()) {
        openEditor(*own);
        return;
    }
    const auto builtIn = findById(m_builtInShortcuts, id);
    if (builtIn == m_builtInShortcuts.end())
        return;
    m_isPromotingDefault = true;
    openEditor(promoted(*builtIn, builtIn->id));
}

QString ComboVM::save() {
    if (!m_editor || !m_editor->canSave())
        return {};
    Shortcut edited = m_editor->editedShortcut();
    if (edited.keys.keyCode == KeyCodes::noKey)
        edited.enabled = false;
    const bool isNew = m_isAddingNew || m_isPromotingDefault;
    if (isNew)
        edited.id = freshId();
    closeEditor();
    change([&](std::vector<Shortcut>& shortcuts) {
        const auto place = findById(shortcuts, QString::fromStdString(edited.id));
        if (isNew)
            shortcuts.insert(shortcuts.begin(), edited);
        else if (place != shortcuts.end())
            *place = edited;
        return true;
    });
    return QString::fromStdString(edited.id);
}

void ComboVM::cancel() {
    if (m_editor)
        closeEditor();
}

void ComboVM::deleteCombo(const QString& id) {
    change([&id](std::vector<Shortcut>& shortcuts) {
        const auto place = findById(shortcuts, id);
        if (place == shortcuts.end())
            return false;
        shortcuts.erase(place);
        return true;
    });
}

void ComboVM::setEnabled(const QString& id, bool enabled) {
    change([&](std::vector<Shortcut>& shortcuts) {
        if (const auto own = findById(shortcuts, id); own != shortcuts.end()) {
            own->enabled = enabled;
            return true;
        }
        const auto builtIn = uncoveredDefaultShortcuts(shortcuts);
        const auto row = findById(builtIn, id);
        if (!enabled || row == builtIn.end())
            return false;
        shortcuts.insert(shortcuts.begin(), promoted(*row, freshId()));
        return true;
    });
}

void ComboVM::openLink(const QString& id) {
    const Shortcut* const shortcut = find(id);
    const QUrl link = shortcut ? ComboTitle::parse(shortcut->title).link : QUrl();
    if (!link.isEmpty())
        m_workspace.openURL(link, [](const Result<void>&) {});
}

void ComboVM::openEditor(const Shortcut& shortcut) {
    using enum ShortcutEditVM::Kind;
    m_editor = std::make_unique<ShortcutEditVM>(shortcut, m_isAddingNew ? added : existing);
    Q_EMIT editorChanged();
}

void ComboVM::closeEditor() {
    m_isAddingNew = false;
    m_isPromotingDefault = false;
    // Its screen lets go of it first; the editor may be what called.
    const auto gone = m_editor.release();
    Q_EMIT editorChanged();
    gone->deleteLater();
}

void ComboVM::change(const std::function<bool(std::vector<Shortcut>&)>& edit) {
    if (const auto cfg = m_desk.change([&edit](Cfg& stored) { return edit(stored.shortcuts); }))
        show(*cfg);
}

void ComboVM::show(const Cfg& cfg) {
    m_userShortcuts = cfg.shortcuts;
    m_builtInShortcuts = uncoveredDefaultShortcuts(cfg.shortcuts);
    m_rows = comboRows(m_userShortcuts, m_builtInShortcuts, cfg.mappings);
    Q_EMIT rowsChanged();
}

const Shortcut* ComboVM::find(const QString& id) const {
    for (const auto* list : {&m_userShortcuts, &m_builtInShortcuts}) {
        const auto found = findById(*list, id);
        if (found != list->end())
            return &*found;
    }
    return nullptr;
}

} // namespace tamsel
