#include "ui/focus_item.h"

#include <QFocusEvent>

#include <utility>

namespace tamsel {

void FocusItem::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    setVisualFocus(event->reason() == Qt::TabFocusReason ||
                   event->reason() == Qt::BacktabFocusReason ||
                   event->reason() == Qt::ShortcutFocusReason);
}

void FocusItem::focusOutEvent(QFocusEvent* event) {
    QQuickItem::focusOutEvent(event);
    setVisualFocus(false);
}

void FocusItem::setVisualFocus(bool visualFocus) {
    if (std::exchange(m_visualFocus, visualFocus) != visualFocus)
        Q_EMIT visualFocusChanged();
}

} // namespace tamsel
