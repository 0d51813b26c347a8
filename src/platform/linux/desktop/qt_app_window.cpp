#include "platform/linux/desktop/qt_app_window.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace tamsel {

QtAppWindow::QtAppWindow(QWindow& window, std::function<bool()> mayClose)
    : m_window(window), m_mayClose(std::move(mayClose)) {
    m_window.installEventFilter(this);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](const QWindow* focus) {
        m_gotFocus |= focus == &m_window;
        seeWhetherCalledUp();
    });
    connect(&m_window, &QWindow::windowStateChanged, this, &QtAppWindow::seeWhetherCalledUp);
}

void QtAppWindow::seeWhetherCalledUp() {
    // Both, in either order: not every desktop tells that a window is minimised no more, and some
    // tell it at once.
    if (m_isOrderedOut && m_gotFocus && !(m_window.windowStates() & Qt::WindowMinimized))
        Q_EMIT calledUp();
}

bool QtAppWindow::isVisible() const {
    return m_window.isVisible() && !m_isOrderedOut &&
           !(m_window.windowStates() & Qt::WindowMinimized);
}

bool QtAppWindow::comesUpOnlyAnew() const {
    if (!QGuiApplication::platformName().startsWith(u"wayland") || m_window.isActive())
        return false;
    return m_isOrderedOut || !qEnvironmentVariableIsSet("XDG_ACTIVATION_TOKEN");
}

void QtAppWindow::makeKeyAndOrderFront() {
    if (comesUpOnlyAnew())
        m_window.setVisible(false);
    m_isOrderedOut = false;
    m_window.setWindowStates(m_window.windowStates() & ~Qt::WindowMinimized);
    m_window.setVisible(true);
    m_window.raise();
    m_window.requestActivate();
}

void QtAppWindow::orderOut(Out out) {
    m_isOrderedOut = true;
    m_gotFocus = false;
    if (out == Out::hidden) {
        m_window.setVisible(false);
    } else {
        m_window.setWindowStates(m_window.windowStates() | Qt::WindowMinimized);
        m_window.setVisible(true);
    }
}

bool QtAppWindow::eventFilter(QObject*, QEvent* event) {
    if (event->type() != QEvent::Close || m_mayClose())
        return false;
    event->ignore();
    return true;
}

} // namespace tamsel
