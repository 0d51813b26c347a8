#pragma once

#include "base/error.h"

#include <QObject>
#include <QString>

namespace tamsel {

/// A daemon of this user's own, started from the application's bundle when none listens on
/// `socketFile`. Ends with this object (SIGTERM) when this object has started it.
class EmbeddedDaemon final : public QObject {
public:
    EmbeddedDaemon(QString program, QString socketFile);
    ~EmbeddedDaemon() override;

    /// Starts the daemon unless one answers already.
    Result<void> ensureRunning();
    /// Somebody accepts connections on the socket.
    bool answers() const;

private:
    QString m_program;
    QString m_socketFile;
    qint64 m_pid = 0;
};

} // namespace tamsel
