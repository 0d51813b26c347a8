#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QImage>
#include <QList>

namespace tamsel {

namespace statusNotifierWatcher {
inline const QString service = QStringLiteral("org.kde.StatusNotifierWatcher"); ///< and interface
inline const QString path = QStringLiteral("/StatusNotifierWatcher");
} // namespace statusNotifierWatcher

/// One picture as it travels, (iiay): its pixels are ARGB, the most significant byte first.
struct NotifierPixmap {
    int width = 0;
    int height = 0;
    QByteArray bytes;
};
using NotifierPixmaps = QList<NotifierPixmap>;

/// (sa(iiay)ss).
struct NotifierToolTip {
    QString icon;
    NotifierPixmaps pixmaps;
    QString title;
    QString text;
};

/// An item in the session's panel, by the StatusNotifierItem protocol. It has a connection of its
/// own, with whose end the panel takes it away. Main thread.
class StatusNotifierItem final : public QObject {
    Q_OBJECT

public:
    StatusNotifierItem();
    ~StatusNotifierItem() override;

    /// A null image leaves the application's own icon.
    void setImage(const QImage& image);
    /// Plain text, under the application's name.
    void setToolTip(const QString& text);
    /// Tells the watcher of the item, as often as a watcher has come.
    void announce();

    const NotifierPixmaps& pixmaps() const { return m_pixmaps; }
    const QString& toolTip() const { return m_toolTip; }

signals:
    void activated();
    void imageChanged();
    void toolTipChanged();

private:
    QString m_connectionName;
    QDBusConnection m_bus;
    QString m_service;
    NotifierPixmaps m_pixmaps;
    QString m_toolTip;
};

/// The item as the panel sees it.
class StatusNotifierAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(int WindowId READ windowId)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(tamsel::NotifierPixmaps IconPixmap READ iconPixmap)
    Q_PROPERTY(tamsel::NotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)

public:
    explicit StatusNotifierAdaptor(StatusNotifierItem& item);

    QString category() const { return QStringLiteral("ApplicationStatus"); }
    QString id() const { return QStringLiteral("app.tamsel"); }
    QString title() const { return QStringLiteral("Tamsel"); }
    QString status() const { return QStringLiteral("Active"); }
    int windowId() const { return 0; }
    QString iconName() const;
    const NotifierPixmaps& iconPixmap() const { return m_item.pixmaps(); }
    /// Its text may hold a little markup, by the protocol.
    NotifierToolTip toolTip() const {
        return {iconName(), {}, title(), m_item.toolTip().toHtmlEscaped()};
    }
    bool itemIsMenu() const { return false; }
    /// What panels take for "there is none".
    QDBusObjectPath menu() const { return QDBusObjectPath(QStringLiteral("/NO_DBUSMENU")); }

public slots:
    Q_NOREPLY void Activate(int x, int y);
    Q_NOREPLY void SecondaryActivate(int x, int y);
    Q_NOREPLY void ContextMenu(int x, int y);
    Q_NOREPLY void Scroll(int delta, const QString& orientation);
    /// What a Wayland compositor wants to see before it raises a window.
    Q_NOREPLY void ProvideXdgActivationToken(const QString& token);

signals:
    void NewIcon();
    void NewToolTip();

private:
    StatusNotifierItem& m_item;
};

} // namespace tamsel

Q_DECLARE_METATYPE(tamsel::NotifierPixmap)
Q_DECLARE_METATYPE(tamsel::NotifierToolTip)
