#include "platform/linux/tray/status_notifier_host.h"

#include "platform/linux/tray/status_notifier_item.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>

#include <utility>

namespace tamsel {

StatusNotifierHost::StatusNotifierHost(QDBusConnection bus) : m_bus(std::move(bus)) {
    if (!m_bus.isConnected())
        return;
    auto* owner = new QDBusServiceWatcher(statusNotifierWatcher::service, m_bus,
                                          QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, [this] { askWatcher(); });
    for (const auto* signal : {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        m_bus.connect(statusNotifierWatcher::service, statusNotifierWatcher::path,
                      statusNotifierWatcher::service, QLatin1String(signal), this,
                      SLOT(askWatcher()));
    askWatcher();
}

void StatusNotifierHost::askWatcher() {
    QDBusMessage call = QDBusMessage::createMethodCall(
        statusNotifierWatcher::service, statusNotifierWatcher::path,
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setArguments({QString(statusNotifierWatcher::service),
                       QStringLiteral("IsStatusNotifierHostRegistered")});
    auto* answer = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this,
            [this, answer, question = ++m_question] {
                answer->deleteLater();
                if (question != m_question)
                    return;
                const QDBusPendingReply<QDBusVariant> reply = *answer;
                setThere(!reply.isError() && reply.value().variant().toBool());
            });
}

void StatusNotifierHost::setThere(bool isThere) {
    // A watcher that has replaced another one knows none of the items of before.
    if (!isThere && !m_isThere)
        return;
    m_isThere = isThere;
    Q_EMIT changed();
}

} // namespace tamsel
