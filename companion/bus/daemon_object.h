#pragma once

#include "base/error.h"
#include "bus/peer_connection.h"
#include "core/core.h"
#include "program/log.h"
#include "protocol/daemon_protocol.h"

namespace tamsel {

/// What the clients of one daemon share.
struct DaemonState {
    Core& core;
    const Log& log;
    /// The connection whose configuration was accepted last: the one to ask for the clipboard and
    /// to open addresses. Null when there is none or it has ended.
    PeerConnection* callbackPeer = nullptr;
};

/// The daemon's interface as one client sees it. A subscription to key events is this client's own.
class DaemonObject final {
public:
    DaemonObject(DaemonState& state, PeerConnection& peer) : m_state(state), m_peer(peer) {}

    /// Serves the object on the peer's connection; this object outlives that connection's calls.
    Result<void> add();

    bool isSubscribed() const { return m_isSubscribed; }
    /// One-way: calls onKeyEvent of the peer's application.
    void send(const KeyEvent& event);

private:
    friend struct DaemonMethods;

    int replyBool(sd_bus_message* call, bool answer);

    DaemonState& m_state;
    PeerConnection& m_peer;
    bool m_isSubscribed = false;
};

} // namespace tamsel
