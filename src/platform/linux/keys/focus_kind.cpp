#include "platform/linux/keys/focus_kind.h"

#include <QCoreApplication>
#include <QInputMethodQueryEvent>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>

namespace tamsel {

namespace {

// The classes behind popups and texts are private to Qt Quick: known here by name.
constexpr const char* overlayClass = "QQuickOverlay";
constexpr const char* popupClass = "QQuickPopup";

bool isTextInput(QObject& object) {
    if (object.property("capturesText").toBool() || object.inherits("QQuickTextInput") ||
        object.inherits("QQuickTextEdit"))
        return true;
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(&object, &query);
    return query.value(Qt::ImEnabled).toBool();
}

bool isOnOverlay(const QQuickItem* item) {
    while (item && !item->inherits(overlayClass))
        item = item->parentItem();
    return item != nullptr;
}

bool isOpenModalPopup(const QQuickItem* popupItem) {
    const QObject* const popup = popupItem->parent();
    return popup && popup->inherits(popupClass) && popup->property("modal").toBool() &&
           popup->property("visible").toBool();
}

/// An open modal popup keeps the keys even when it has not taken the focus.
bool hasModalPopup(const QQuickWindow& window) {
    for (const QQuickItem* const item : window.contentItem()->childItems()) {
        const auto children =
            item->inherits(overlayClass) ? item->childItems() : QList<QQuickItem*>();
        if (std::any_of(children.begin(), children.end(), isOpenModalPopup))
            return true;
    }
    return false;
}

} // namespace

FocusKind focusKindIn(const QWindow& window) {
    QObject* const focus = window.focusObject();
    if (!focus)
        return FocusKind::none;
    if (isTextInput(*focus))
        return FocusKind::textInput;
    const auto* const quickWindow = qobject_cast<const QQuickWindow*>(&window);
    if (isOnOverlay(qobject_cast<const QQuickItem*>(focus)) ||
        (quickWindow && hasModalPopup(*quickWindow)))
        return FocusKind::popup;
    return FocusKind::other;
}

} // namespace tamsel
