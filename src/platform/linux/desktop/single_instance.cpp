#include "platform/linux/desktop/single_instance.h"

#include "platform/linux/desktop/application_adaptor.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QRegularExpression>
#include <QVariantMap>

namespace tamsel {

namespace {

const QString busName = QStringLiteral("app.tamsel"); // also the desktop entry's
const QString objectPath = QStringLiteral("/app/tamsel");
const QString interfaceName = QStringLiteral("org.freedesktop.Application");

/// Makes the desktop let the other instance come to the front.
QVariantMap platformData() {
    QVariantMap data;
    for (const auto& [variable, key] : {std::pair("XDG_ACTIVATION_TOKEN", "activation-token"),
                                        std::pair("DESKTOP_STARTUP_ID", "desktop-startup-id")})
        if (const QString value = qEnvironmentVariable(variable); !value.isEmpty())
            data.insert(QLatin1String(key), value);
    return data;
}

} // namespace

SingleInstance::SingleInstance(QDBusConnection bus) : m_bus(std::move(bus)) {
    new ApplicationAdaptor(*this);
}

SingleInstance::~SingleInstance() {
    if (m_bus.isConnected())
        m_bus.unregisterService(busName);
}

Result<SingleInstance::Role> SingleInstance::claim(const QStringList& urls) {
    if (!m_bus.isConnected())
        return Role::running;
    // Before the name: who finds the name finds the object, too.
    m_bus.registerObject(objectPath, this);
    QString error;
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (m_bus.registerService(busName))
            return Role::running;
        const QDBusMessage reply = handOver(urls);
        if (reply.type() != QDBusMessage::ErrorMessage)
            return Role::handedOver;
        error = reply.errorName();
        // The other one has just ended; the name is free again.
        if (error != u"org.freedesktop.DBus.Error.ServiceUnknown" &&
            error != u"org.freedesktop.DBus.Error.NameHasNoOwner")
            break;
    }
    return fail("Tamsel runs already and does not answer", error.toStdString());
}

QDBusMessage SingleInstance::handOver(const QStringList& urls) {
    // Answered beside the main loop, so that only a process that is stopped says nothing.
    QDBusMessage ping = QDBusMessage::createMethodCall(
        busName, objectPath, QStringLiteral("org.freedesktop.DBus.Peer"), QStringLiteral("Ping"));
    ping.setAutoStartService(false);
    const QDBusMessage pong = m_bus.call(ping, QDBus::Block, static_cast<int>(answerTime.count()));
    if (pong.type() == QDBusMessage::ErrorMessage)
        return pong;
    QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, interfaceName,
                                                       urls.isEmpty() ? QStringLiteral("Activate")
                                                                      : QStringLiteral("Open"));
    call.setAutoStartService(false);
    if (!urls.isEmpty())
        call << urls;
    call << platformData();
    return m_bus.call(call, QDBus::Block, static_cast<int>(busyTime.count()));
}

QStringList SingleInstance::urlsOf(const QStringList& arguments) {
    static const QRegularExpression scheme(QStringLiteral("^[A-Za-z][A-Za-z0-9+.-]*:"));
    return arguments.filter(scheme);
}

} // namespace tamsel
