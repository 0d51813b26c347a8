#pragma once

#include "keytools/keyboard_shortcut_handler.h"

#include <QObject>
#include <QString>

namespace tamsel {

class NotificationCenter;

/// The main window's own state: which screen the sidebar shows. Follows "NavigateToPage". Main
/// thread only.
class MainVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(MenuItem selected READ selected WRITE select NOTIFY selectedChanged)
    Q_PROPERTY(bool isHidden READ isHidden NOTIFY isHiddenChanged)

public:
    /// The sidebar's entries in its order; digit n of the keyboard chooses the n-th.
    enum MenuItem { Dashboard, Mapping, Combo, Devices, About };
    Q_ENUM(MenuItem)

    /// `notifications` must outlive this object.
    explicit MainVM(NotificationCenter& notifications, QObject* parent = nullptr);

    MenuItem selected() const { return m_selected; }
    void select(MenuItem item);
    /// The application is hidden; its window may still have an entry in the task bar.
    bool isHidden() const { return m_isHidden; }

    /// Chooses the screen that an application URL names, whatever the name's case; "" is the
    /// dashboard. A name that no screen has leaves the selection as it is.
    Q_INVOKABLE void navigate(const QString& pageName);
    /// The plain keys of the window: a digit for each entry, and "a", which posts
    /// "KeyboardShortcut_A".
    KeyboardShortcutHandler::Shortcuts screenKeys();

signals:
    void selectedChanged();
    void isHiddenChanged();
    /// "TamselMainWindowReopen": the window is shown again.
    void reopened();
    /// "KeyboardShortcut_A" was posted: the screen that is shown adds a row.
    void addRequested();

private:
    void setHidden(bool hidden);

    NotificationCenter& m_notifications;
    MenuItem m_selected = Dashboard;
    bool m_isHidden = false;
};

} // namespace tamsel
