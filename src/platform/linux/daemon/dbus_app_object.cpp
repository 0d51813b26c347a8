#include "platform/linux/daemon/dbus_app_object.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QVariant>

namespace tamsel {

namespace {

void send(const QDBusConnection& connection, const QDBusMessage& call,
          const QVariantList& results) {
    if (call.isReplyRequired())
        connection.send(call.createReply(results));
}

/// The interface of a call may be left out; a named one must be ours.
bool isFor(const QDBusMessage& message, const protocol::Method& method) {
    return message.member() == QLatin1String(method.name);
}

QString argumentTags(const char* signature, const char* direction) {
    QString out;
    for (const char* type = signature; *type; ++type)
        out += QStringLiteral("<arg type=\"%1\" direction=\"%2\"/>")
                   .arg(QLatin1Char(*type))
                   .arg(QLatin1String(direction));
    return out;
}

} // namespace

QString DBusAppObject::introspect(const QString&) const {
    QString out =
        QStringLiteral("<interface name=\"%1\">").arg(QLatin1String(protocol::appInterface));
    for (const auto& method :
         {protocol::onKeyEvent, protocol::requestClipboardText, protocol::openURL})
        out += QStringLiteral("<method name=\"%1\">").arg(QLatin1String(method.name)) +
               argumentTags(method.arguments, "in") + argumentTags(method.reply, "out") +
               QStringLiteral("</method>");
    return out + QStringLiteral("</interface>");
}

bool DBusAppObject::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.type() != QDBusMessage::MethodCallMessage ||
        (!message.interface().isEmpty() &&
         message.interface() != QLatin1String(protocol::appInterface)))
        return false;

    const auto* method = isFor(message, protocol::onKeyEvent) ? &protocol::onKeyEvent
                         : isFor(message, protocol::requestClipboardText)
                             ? &protocol::requestClipboardText
                         : isFor(message, protocol::openURL) ? &protocol::openURL
                                                             : nullptr;
    if (!method)
        return false;
    if (message.signature() != QLatin1String(method->arguments)) {
        if (message.isReplyRequired())
            connection.send(message.createErrorReply(
                QDBusError::InvalidArgs,
                QStringLiteral("%1 takes arguments of signature \"%2\"")
                    .arg(QLatin1String(method->name), QLatin1String(method->arguments))));
        return true;
    }

    const QVariantList arguments = message.arguments();
    if (method == &protocol::onKeyEvent) {
        m_callbacks.onKeyEvent({arguments[0].toUInt(), arguments[1].toBool(),
                                arguments[2].value<uchar>(), arguments[3].toUInt(),
                                arguments[4].toBool()});
        send(connection, message, {});
    } else if (method == &protocol::requestClipboardText) {
        m_callbacks.requestClipboardText(
            [connection, message](const std::optional<std::string>& text) {
                send(connection, message,
                     {text.has_value(), QString::fromStdString(text.value_or(std::string()))});
            });
    } else {
        m_callbacks.openURL(
            arguments[0].toString().toStdString(), arguments[1].toDouble(),
            [connection, message](bool opened) { send(connection, message, {opened}); });
    }
    return true;
}

} // namespace tamsel
