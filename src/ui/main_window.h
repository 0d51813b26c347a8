#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace tamsel {

class Screens;

/// The main window and the QML engine behind it. Main thread; make it after the application object
/// and destroy it before the screens' models.
class MainWindow final {
public:
    /// Loads the window, centred and not shown. window() is null when it could not be loaded; the
    /// engine has then said why on standard error.
    explicit MainWindow(Screens& screens);

    QQuickWindow* window() const;

private:
    QQmlApplicationEngine m_engine;
};

} // namespace tamsel
