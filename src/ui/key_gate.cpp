#include "ui/key_gate.h"

#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QQuickItem>

#include <algorithm>
#include <utility>

namespace tamsel {

namespace {

constexpr auto commandModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

bool movesOrScrolls(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return true;
    default:
        return false;
    }
}

/// Does something to the control that has the focus.
bool actsOnFocus(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Space:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Delete:
        return true;
    default:
        return false;
    }
}

bool takesText(QObject* focus) {
    if (!focus)
        return false;
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(focus, &query);
    return query.value(Qt::ImEnabled).toBool();
}

/// Puts in or takes away characters of the text that has the focus.
bool types(const QKeyEvent& event, const QObject& text) {
    const bool isCommand = event.modifiers() & commandModifiers;
    switch (event.key()) {
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter: // ends a field; only a text of several lines takes it as a character
        return !isCommand && text.inherits("QQuickTextEdit");
    case Qt::Key_Escape:
        return false;
    default:
        return !isCommand && !event.text().isEmpty();
    }
}

/// The part of the item's area that its ancestors leave to see, in the window's coordinates.
QRectF visiblePart(const QQuickItem& item) {
    const QRectF area(0, 0, item.width(), item.height());
    QRectF seen = item.mapRectToScene(area);
    for (const QQuickItem* outer = item.parentItem(); outer; outer = outer->parentItem()) {
        if (outer->clip() || !outer->parentItem())
            seen &= outer->mapRectToScene(outer->boundingRect());
    }
    return seen;
}

/// Scrolls a flickable so that the item lies within, with some air above and below.
void scrollTo(const QQuickItem& item, QQuickItem& flickable) {
    constexpr qreal air = 16;
    const qreal height = flickable.height();
    const QRectF place = item.mapRectToItem(&flickable, item.boundingRect());
    const qreal below = std::max(0.0, place.bottom() + air - height);
    const qreal above = std::min(0.0, place.top() - air);
    const qreal by = above < 0 ? above : below;
    if (by != 0)
        flickable.setProperty("contentY", flickable.property("contentY").toReal() + by);
}

} // namespace

void KeyGate::setWindow(QQuickWindow* window) {
    if (m_window == window)
        return;
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (m_window)
        m_window->installEventFilter(this);
    Q_EMIT windowChanged();
}

bool KeyGate::eventFilter(QObject* /*receiver*/, QEvent* event) {
    const auto type = event->type();
    const bool isPress = type == QEvent::KeyPress;
    if (!isPress && type != QEvent::KeyRelease && type != QEvent::ShortcutOverride)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(*event);
    if (key.isAutoRepeat()) {
        if (mayRepeat(key))
            return false;
        // An offer to the shortcuts that is accepted is nothing for them.
        event->accept();
        return true;
    }
    if (!isPress)
        return false;
    m_pressedIn = m_window->activeFocusItem();
    if (!isOutOfSight(key))
        return false;
    revealFocus();
    return true;
}

bool KeyGate::mayRepeat(const QKeyEvent& event) const {
    QObject* const focus = m_window->activeFocusItem();
    if (takesText(focus)) {
        // Held since before the text got the focus, the key meant something else.
        return movesOrScrolls(event) || (focus == m_pressedIn && types(event, *focus));
    }
    return movesOrScrolls(event) && !(event.modifiers() & commandModifiers);
}

bool KeyGate::isOutOfSight(const QKeyEvent& event) const {
    const QQuickItem* const focus = m_window->activeFocusItem();
    if (!focus || !actsOnFocus(event) || takesText(m_window->activeFocusItem()))
        return false;
    return visiblePart(*focus).height() < focus->height() / 2;
}

void KeyGate::revealFocus() const {
    const QQuickItem* const focus = m_window->activeFocusItem();
    for (QQuickItem* outer = focus->parentItem(); outer; outer = outer->parentItem()) {
        if (outer->inherits("QQuickFlickable"))
            scrollTo(*focus, *outer);
    }
}

} // namespace tamsel
