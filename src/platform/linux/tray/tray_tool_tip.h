#pragma once

#include <QRasterWindow>
#include <QString>

namespace tamsel {

/// What a tray of the X server's leaves to its icons: the words beside the pointer. Main thread.
class TrayToolTip final : public QRasterWindow {
    Q_OBJECT

public:
    TrayToolTip();

    /// The application's name, and under it the text, if any.
    void setText(const QString& text);
    /// Beside the pointer, until it is hidden.
    void showAtPointer();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_text;
};

} // namespace tamsel
