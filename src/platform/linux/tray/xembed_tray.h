#pragma once

#include <QImage>
#include <QObject>
#include <QTimer>

#include <memory>
#include <xcb/xcb.h>

class QSocketNotifier;

namespace tamsel {

class TrayToolTip;

/// The X server's tray (freedesktop.org's system tray protocol), with room for one icon. Watched
/// over a connection of its own, by events alone. Never there without an X server of the
/// application's. Main thread.
class XembedTray final : public QObject {
    Q_OBJECT

public:
    XembedTray();
    ~XembedTray() override;

    bool isThere() const { return m_manager != 0; }
    /// Shows the icon, now or as soon as there is a tray.
    void show(const QImage& icon);
    void hide();
    /// What the icon says beyond the application's name; plain text.
    void setToolTip(const QString& text);

signals:
    /// A tray has come or gone.
    void changed();
    void clicked();

private:
    struct Atoms;

    void readEvents();
    void readEventsSoon();
    void handle(const xcb_generic_event_t& event);
    void findManager();
    void dock();
    void makeWindow();
    void destroyWindow();
    void draw();
    void nameWindow();
    void hideToolTip();
    QImage background(const QSize& size) const;

    xcb_connection_t* m_connection = nullptr;
    std::unique_ptr<Atoms> m_atoms;
    std::unique_ptr<QSocketNotifier> m_notifier;
    int m_screenNumber = 0;
    quint32 m_root = 0;
    quint32 m_manager = 0; ///< the tray's window
    quint32 m_window = 0;  ///< ours, while an icon is shown
    quint8 m_depth = 0;
    QSize m_size;
    QImage m_icon;
    QString m_text;
    QTimer m_hovered;
    std::unique_ptr<TrayToolTip> m_toolTip; ///< while the pointer rests on the icon
    bool m_isWanted = false;
};

} // namespace tamsel
