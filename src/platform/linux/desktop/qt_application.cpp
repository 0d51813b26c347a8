#include "platform/linux/desktop/qt_application.h"

#include "platform/linux/tray/tray_status_bar.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace tamsel {

namespace {

bool isPanel(const QWindow& window) {
    return window.type() != Qt::Window && window.type() != Qt::Dialog;
}

} // namespace

QtApplication::QtApplication(QGuiApplication& application, TrayStatusBar& tray) : m_tray(tray) {
    application.installEventFilter(this);
    // Queued: what comes and goes within one turn (an icon made anew) changes nothing.
    connect(&m_tray, &TrayStatusBar::trayChanged, this, &QtApplication::placeHiddenWindow,
            Qt::QueuedConnection);
}

int QtApplication::run(ApplicationDelegate& delegate, const QStringList& urls) {
    m_delegate = &delegate;
    QGuiApplication::setQuitOnLastWindowClosed(
        delegate.applicationShouldTerminateAfterLastWindowClosed());
    delegate.applicationDidFinishLaunching();
    if (!urls.isEmpty())
        delegate.applicationOpenURLs(urls);
    const int status = QGuiApplication::exec();
    delegate.applicationWillTerminate();
    m_delegate = nullptr;
    return status;
}

void QtApplication::terminateNow() {
    QCoreApplication::exit(0);
}

void QtApplication::terminate() {
    if (!m_delegate || m_delegate->applicationShouldTerminate() == TerminateReply::cancel)
        return;
    QMetaObject::invokeMethod(
        this, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

void QtApplication::openedAgain(const QStringList& urls) {
    if (!m_delegate)
        return;
    if (urls.isEmpty())
        m_delegate->applicationShouldHandleReopen(hasVisibleWindows());
    else
        m_delegate->applicationOpenURLs(urls);
}

AppWindow* QtApplication::makeMainWindow() {
    if (!m_window)
        return nullptr;
    m_mainWindow = std::make_unique<QtAppWindow>(
        *m_window, [this] { return !m_delegate || m_delegate->windowShouldClose(*m_mainWindow); });
    connect(m_mainWindow.get(), &QtAppWindow::calledUp, this, [this] { openedAgain({}); });
    return m_mainWindow.get();
}

bool QtApplication::hasVisibleWindows() const {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [this](const QWindow* window) {
        if (window == m_window)
            return m_mainWindow && m_mainWindow->isVisible();
        return window->isVisible() && !isPanel(*window);
    });
}

void QtApplication::orderOutWindows() {
    // The main window first, so that the keyboard does not go to it when the others are gone.
    if (m_mainWindow && m_window->isVisible())
        m_mainWindow->orderOut(placeOfHidden());
    QList<QPointer<QWindow>> others;
    for (QWindow* window : QGuiApplication::topLevelWindows())
        if (window != m_window && window->isVisible() && !isPanel(*window))
            others.append(window);
    for (const auto& window : others)
        if (window)
            window->setVisible(false);
}

QtAppWindow::Out QtApplication::placeOfHidden() const {
    // Without an icon to bring it back, the window stays in the task bar.
    return m_tray.showsItem() ? QtAppWindow::Out::hidden : QtAppWindow::Out::minimised;
}

void QtApplication::placeHiddenWindow() {
    if (m_mainWindow && m_mainWindow->isOrderedOut())
        m_mainWindow->orderOut(placeOfHidden());
}

bool QtApplication::eventFilter(QObject* receiver, QEvent* event) {
    // The session manager's end of the session, or a menu's quit; closing all windows is not it.
    if (event->type() != QEvent::Quit || receiver != QGuiApplication::instance())
        return false;
    terminate();
    return true;
}

} // namespace tamsel
