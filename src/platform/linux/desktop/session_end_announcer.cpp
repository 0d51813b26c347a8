#include "platform/linux/desktop/session_end_announcer.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <QSessionManager>

namespace tamsel {

SessionEndAnnouncer::SessionEndAnnouncer(QGuiApplication& application) {
    QDBusConnection::systemBus().connect(
        QStringLiteral("org.freedesktop.login1"), QStringLiteral("/org/freedesktop/login1"),
        QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForShutdown"),
        this, SLOT(prepareForShutdown(bool)));
    connect(&application, &QGuiApplication::commitDataRequest, this,
            [this](QSessionManager& session) {
                // The login item starts it, when the user wants that.
                session.setRestartHint(QSessionManager::RestartNever);
                Q_EMIT willPowerOff();
            });
}

void SessionEndAnnouncer::prepareForShutdown(bool begins) {
    if (begins)
        Q_EMIT willPowerOff();
}

} // namespace tamsel
