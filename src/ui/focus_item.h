#pragma once

#include <QQuickItem>

namespace tamsel {

/// An item that tells the keyboard's focus from the pointer's, as the toolkit's controls do. For
/// what is in the first frame, which would wait for the whole library of them.
class FocusItem : public QQuickItem {
    Q_OBJECT
    Q_PROPERTY(bool visualFocus READ visualFocus NOTIFY visualFocusChanged)
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

    /// It has the focus, and the keyboard has brought it.
    bool visualFocus() const { return m_visualFocus; }

signals:
    void visualFocusChanged();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void setVisualFocus(bool visualFocus);

    bool m_visualFocus = false;
};

} // namespace tamsel
