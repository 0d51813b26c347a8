#pragma once

#include <QObject>
#include <QString>

namespace tamsel {

class DaemonXPCClient;

/// Whether the daemon holds the user's configuration, as one line for the window: connected once
/// it has accepted a configuration, until the connection is lost.
class ConnectionVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool connected READ connected NOTIFY changed)
    Q_PROPERTY(QString statusText READ statusText NOTIFY changed)

public:
    explicit ConnectionVM(DaemonXPCClient& daemon, QObject* parent = nullptr);

    bool connected() const { return m_state == State::connected; }
    /// Translated.
    QString statusText() const;

signals:
    void changed();

private:
    enum class State { notConnected, connected, refused };
    void setState(State state);

    State m_state = State::notConnected;
};

} // namespace tamsel
