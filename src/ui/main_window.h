#pragma once

#include <QQmlApplicationEngine>
#include <QQuickWindow>

namespace tamsel {

class AboutVM;
class ComboVM;
class DashboardVM;
class DeviceMgrVM;
class FeedbackVM;
class KeyRecorderVM;
class KeyViewerVM;
class KeyboardShortcutHandler;
class MainVM;
class MappingVM;
class PermissionMgr;
class SettingsGuideVM;

/// What the window shows and acts on. Nothing is owned; all must outlive the MainWindow.
struct WindowModels {
    MainVM& main;
    MappingVM& mapping;
    ComboVM& combo;
    DashboardVM& dashboard;
    DeviceMgrVM& devices;
    FeedbackVM& feedback;
    SettingsGuideVM& guide;
    PermissionMgr& permission;
    KeyRecorderVM& keyRecorder;   ///< single keys, for mappings
    KeyRecorderVM& comboRecorder; ///< keys with the modifiers held with them, for triggers
    KeyViewerVM& keyViewer;
    AboutVM& about;
    KeyboardShortcutHandler& screenKeys; ///< the main window's plain keys
};

/// The main window and the QML engine behind it. Main thread; make it after the application object
/// and destroy it before the models.
class MainWindow final {
public:
    /// Loads the window, centred and not shown. window() is null when it could not be loaded; the
    /// engine has then said why on standard error.
    explicit MainWindow(const WindowModels& models);

    QQuickWindow* window() const;

private:
    QQmlApplicationEngine m_engine;
};

} // namespace tamsel
