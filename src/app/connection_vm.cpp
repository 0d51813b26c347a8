#include "app/connection_vm.h"

#include "daemon/daemon_xpc_client.h"

namespace tamsel {

ConnectionVM::ConnectionVM(DaemonXPCClient& daemon, QObject* parent) : QObject(parent) {
    connect(&daemon, &DaemonXPCClient::configAnswered, this,
            [this](bool accepted) { setState(accepted ? State::connected : State::refused); });
    connect(&daemon, &DaemonXPCClient::connectionLost, this,
            [this] { setState(State::notConnected); });
}

QString ConnectionVM::statusText() const {
    switch (m_state) {
    case State::connected:
        return tr("Connected to the daemon.");
    case State::refused:
        return tr("The daemon did not accept the configuration.");
    case State::notConnected:
        break;
    }
    return tr("Daemon is not connected yet.");
}

void ConnectionVM::setState(State state) {
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT changed();
}

} // namespace tamsel
