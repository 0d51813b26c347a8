#include "platform/linux/tray/tray_tool_tip.h"

#include <QCursor>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QScreen>

#include <algorithm>

namespace tamsel {

namespace {

constexpr QSize padding{10, 6}; // at each side
constexpr int pointerDistance = 16;

} // namespace

TrayToolTip::TrayToolTip() {
    setTitle(QStringLiteral("Tamsel tool tip"));
    setFlags(Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus |
             Qt::WindowTransparentForInput);
}

void TrayToolTip::setText(const QString& text) {
    m_text = QGuiApplication::applicationDisplayName();
    if (!text.isEmpty())
        m_text += u'\n' + text;
    const QFontMetrics metrics(QGuiApplication::font());
    resize(metrics.size(0, m_text) + 2 * padding);
    update();
}

void TrayToolTip::showAtPointer() {
    const QPoint pointer = QCursor::pos();
    if (QScreen* const pointed = QGuiApplication::screenAt(pointer))
        setScreen(pointed);
    const QRect room = screen()->geometry();
    QRect place({pointer.x() - width() / 2, pointer.y() + pointerDistance}, size());
    // Trays are at the screen's edges, mostly its lower one.
    if (place.bottom() > room.bottom())
        place.moveBottom(pointer.y() - pointerDistance);
    place.moveLeft(std::clamp(place.left(), room.left(),
                              std::max(room.left(), room.right() + 1 - place.width())));
    setPosition(place.topLeft());
    show();
}

void TrayToolTip::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QPalette palette = QGuiApplication::palette();
    const QRect all(QPoint(), size());
    painter.fillRect(all, palette.color(QPalette::ToolTipBase));
    painter.setPen(palette.color(QPalette::ToolTipText));
    painter.drawRect(all.adjusted(0, 0, -1, -1));
    painter.drawText(
        all.marginsRemoved({padding.width(), padding.height(), padding.width(), padding.height()}),
        Qt::AlignLeft | Qt::AlignVCenter, m_text);
}

} // namespace tamsel
