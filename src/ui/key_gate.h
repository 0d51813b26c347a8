#pragma once

#include <QPointer>
#include <QQuickWindow>

class QKeyEvent;

namespace tamsel {

/// What the keys of a window may do, whatever control has the focus. A key that is held down moves
/// the focus, scrolls and types; it does nothing else again and again. And the keys that do
/// something to the control with the focus do it only where it can be seen: out of sight, it is
/// scrolled back first.
///
/// Local event monitors, which watch the application, are asked before.
class KeyGate : public QObject {
    Q_OBJECT
    Q_PROPERTY(QQuickWindow* window READ window WRITE setWindow NOTIFY windowChanged REQUIRED)
    QML_ELEMENT

public:
    using QObject::QObject;

    QQuickWindow* window() const { return m_window; }
    void setWindow(QQuickWindow* window);

    bool eventFilter(QObject* receiver, QEvent* event) override;

signals:
    void windowChanged();

private:
    bool mayRepeat(const QKeyEvent& event) const;
    bool isOutOfSight(const QKeyEvent& event) const;
    void revealFocus() const;

    QPointer<QQuickWindow> m_window;
    QPointer<QObject> m_pressedIn; ///< had the focus when the last key went down
};

} // namespace tamsel
