#pragma once

#include <QObject>
#include <QString>

namespace tamsel {

/// The application's named notifications, one typed signal each; whoever has news emits it, and
/// neither side knows the other. Main thread.
class NotificationCenter final : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    /// "NavigateToPage": show the screen with this page name.
    void navigateToPage(const QString& page);
    /// "KeyboardShortcut_A": add a row on the screen that is shown.
    void keyboardShortcutA();
    /// "MenuBarVisibilityChanged": whether the icon is to be shown was changed in the settings.
    void menuBarVisibilityChanged();
    /// "TamselMainWindowReopen": the main window, hidden until now, is shown again.
    void mainWindowReopen();
    /// The application's windows were hidden.
    void applicationDidHide();
    /// The application has become the one that the user works with.
    void applicationDidBecomeActive();
};

} // namespace tamsel
