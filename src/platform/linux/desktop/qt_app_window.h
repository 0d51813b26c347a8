#pragma once

#include "platform/app_window.h"

#include <QObject>

#include <functional>

class QWindow;

namespace tamsel {

/// The main window as the application handles it. Main thread; the QWindow outlives it.
class QtAppWindow final : public QObject, public AppWindow {
    Q_OBJECT

public:
    /// What becomes of an ordered-out window: gone altogether, or kept in the task bar.
    enum class Out { hidden, minimised };

    /// `mayClose` decides when the user closes the window.
    QtAppWindow(QWindow& window, std::function<bool()> mayClose);

    bool isVisible() const override;
    void makeKeyAndOrderFront() override;

    void orderOut(Out out);
    bool isOrderedOut() const { return m_isOrderedOut; }

    bool eventFilter(QObject* receiver, QEvent* event) override;

signals:
    /// The user has called up the window, which was ordered out, from the task bar.
    void calledUp();

private:
    void seeWhetherCalledUp();
    /// On Wayland no client brings its window up, out of a task bar or from behind others, unless
    /// the desktop has given it a token for that; but what is mapped anew comes up.
    bool comesUpOnlyAnew() const;

    QWindow& m_window;
    std::function<bool()> m_mayClose;
    bool m_isOrderedOut = false;
    bool m_gotFocus = false; ///< since it was ordered out
};

} // namespace tamsel
