#pragma once

#include "platform/application.h"
#include "platform/linux/desktop/qt_app_window.h"

#include <QPointer>
#include <QWindow>

#include <memory>

class QGuiApplication;

namespace tamsel {

class TrayStatusBar;

/// The running QGuiApplication.
class QtApplication final : public QObject, public Application {
    Q_OBJECT

public:
    /// Both outlive this object.
    QtApplication(QGuiApplication& application, TrayStatusBar& tray);

    /// The window that makeMainWindow() hands out; loaded, not shown. Not owned.
    void setMainWindow(QWindow* window) { m_window = window; }
    /// Runs the main loop between the delegate's first call and its last, and hands it `urls` at
    /// the start. The program's exit status.
    int run(ApplicationDelegate& delegate, const QStringList& urls);

    /// Ends the main loop without asking.
    static void terminateNow();
    /// Somebody has started the application again, with URLs or without.
    void openedAgain(const QStringList& urls);

    void terminate() override;
    ActivationPolicy activationPolicy() const override { return m_policy; }
    void setActivationPolicy(ActivationPolicy policy) override { m_policy = policy; }
    void activate() override {} // the window asks for it when it comes to the front
    AppWindow* makeMainWindow() override;
    bool hasVisibleWindows() const override;
    void orderOutWindows() override;

    bool eventFilter(QObject* receiver, QEvent* event) override;

private:
    QtAppWindow::Out placeOfHidden() const;
    void placeHiddenWindow();

    TrayStatusBar& m_tray;
    ApplicationDelegate* m_delegate = nullptr;
    QPointer<QWindow> m_window;
    std::unique_ptr<QtAppWindow> m_mainWindow;
    ActivationPolicy m_policy = ActivationPolicy::regular;
};

} // namespace tamsel
