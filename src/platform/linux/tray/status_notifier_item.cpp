#include "platform/linux/tray/status_notifier_item.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QtEndian>

#include <utility>

namespace tamsel {

namespace {

const QString itemPath = QStringLiteral("/StatusNotifierItem");

NotifierPixmap toPixmap(const QImage& image) {
    const QImage argb = image.convertToFormat(QImage::Format_ARGB32);
    NotifierPixmap pixmap{argb.width(), argb.height(), {}};
    pixmap.bytes.reserve(argb.sizeInBytes());
    for (int y = 0; y < argb.height(); ++y) {
        const auto* line = reinterpret_cast<const quint32*>(argb.constScanLine(y));
        for (int x = 0; x < argb.width(); ++x) {
            const quint32 pixel = qToBigEndian(line[x]);
            pixmap.bytes.append(reinterpret_cast<const char*>(&pixel), sizeof pixel);
        }
    }
    return pixmap;
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& out, const NotifierPixmap& pixmap) {
    out.beginStructure();
    out << pixmap.width << pixmap.height << pixmap.bytes;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierPixmap& pixmap) {
    in.beginStructure();
    in >> pixmap.width >> pixmap.height >> pixmap.bytes;
    in.endStructure();
    return in;
}
QDBusArgument& operator<<(QDBusArgument& out, const NotifierToolTip& toolTip) {
    out.beginStructure();
    out << toolTip.icon << toolTip.pixmaps << toolTip.title << toolTip.text;
    out.endStructure();
    return out;
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierToolTip& toolTip) {
    in.beginStructure();
    in >> toolTip.icon >> toolTip.pixmaps >> toolTip.title >> toolTip.text;
    in.endStructure();
    return in;
}

namespace {

QString nextConnectionName() {
    static int count = 0;
    return QStringLiteral("tamsel-status-item-%1").arg(++count);
}

} // namespace

StatusNotifierItem::StatusNotifierItem()
    : m_connectionName(nextConnectionName()),
      m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, m_connectionName)) {
    qDBusRegisterMetaType<NotifierPixmap>();
    qDBusRegisterMetaType<NotifierPixmaps>();
    qDBusRegisterMetaType<NotifierToolTip>();
    new StatusNotifierAdaptor(*this);
    m_bus.registerObject(itemPath, this);
    m_service = QStringLiteral("org.kde.StatusNotifierItem-%1-%2")
                    .arg(QCoreApplication::applicationPid())
                    .arg(m_connectionName.section(u'-', -1));
    m_bus.registerService(m_service);
}

StatusNotifierItem::~StatusNotifierItem() {
    QDBusConnection::disconnectFromBus(m_connectionName);
}

void StatusNotifierItem::setImage(const QImage& image) {
    m_pixmaps.clear();
    if (!image.isNull())
        // Small panels get pixels that were drawn for them, not just any that they scale.
        for (const int size : {22, 32, 44, 64})
            m_pixmaps.append(
                toPixmap(image.scaled(size, size, Qt::KeepAspectRatio, Qt::SmoothTransformation)));
    Q_EMIT imageChanged();
}

void StatusNotifierItem::setToolTip(const QString& text) {
    if (std::exchange(m_toolTip, text) != text)
        Q_EMIT toolTipChanged();
}

void StatusNotifierItem::announce() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        statusNotifierWatcher::service, statusNotifierWatcher::path, statusNotifierWatcher::service,
        QStringLiteral("RegisterStatusNotifierItem"));
    call.setArguments({m_service});
    m_bus.asyncCall(call);
}

StatusNotifierAdaptor::StatusNotifierAdaptor(StatusNotifierItem& item)
    : QDBusAbstractAdaptor(&item), m_item(item) {
    connect(&item, &StatusNotifierItem::imageChanged, this, &StatusNotifierAdaptor::NewIcon);
    connect(&item, &StatusNotifierItem::toolTipChanged, this, &StatusNotifierAdaptor::NewToolTip);
}

QString StatusNotifierAdaptor::iconName() const {
    // A panel prefers the name to the pixels.
    return m_item.pixmaps().isEmpty() ? QStringLiteral("app.tamsel") : QString();
}

void StatusNotifierAdaptor::Activate(int, int) {
    Q_EMIT m_item.activated();
}
void StatusNotifierAdaptor::SecondaryActivate(int, int) {}
void StatusNotifierAdaptor::ContextMenu(int, int) {}
void StatusNotifierAdaptor::Scroll(int, const QString&) {}
void StatusNotifierAdaptor::ProvideXdgActivationToken(const QString& token) {
    qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

} // namespace tamsel
