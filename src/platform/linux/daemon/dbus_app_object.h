#pragma once

#include "protocol/daemon_protocol.h"

#include <QDBusVirtualObject>

namespace tamsel {

/// The application's object on the daemon connection: turns the daemon's messages into calls of
/// the callback interface and its answers into replies.
class DBusAppObject final : public QDBusVirtualObject {
    Q_OBJECT

public:
    explicit DBusAppObject(TamselAppCallbackProtocol& callbacks) : m_callbacks(callbacks) {}

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    TamselAppCallbackProtocol& m_callbacks;
};

} // namespace tamsel
