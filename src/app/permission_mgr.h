#pragma once

#include <QObject>

namespace tamsel {

class DaemonMgr;

/// Whether keys can be read, as far as the application can tell at once: the daemon is there and
/// runs. What the daemon itself lacks shows in its status. Main thread.
class PermissionMgr final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool hasPermission READ hasPermission NOTIFY hasPermissionChanged)
    Q_PROPERTY(QString debugInfo READ debugInfo NOTIFY debugInfoChanged)

public:
    /// Checks once.
    explicit PermissionMgr(DaemonMgr& daemonMgr, QObject* parent = nullptr);

    /// As of the last check.
    bool hasPermission() const { return m_hasPermission; }
    /// One line for diagnosis, not translated.
    const QString& debugInfo() const { return m_debugInfo; }

    Q_INVOKABLE void checkPermission();
    /// Registers the daemon and the agent again, and looks what came of it.
    Q_INVOKABLE void requestPermission();

signals:
    /// Emitted at every check, also of an equal value.
    void hasPermissionChanged();
    void debugInfoChanged();

private:
    DaemonMgr& m_daemonMgr;
    bool m_hasPermission = false;
    QString m_debugInfo;
};

} // namespace tamsel
