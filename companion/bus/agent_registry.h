#pragma once

#include "base/error.h"
#include "bus/peer_connection.h"
#include "program/log.h"

#include <map>
#include <string>
#include <sys/types.h>

namespace tamsel {

/// Which connection is the agent of which user. The one that announced itself last counts.
class AgentRegistry final {
public:
    /// `log` outlives every connection of the registry.
    explicit AgentRegistry(const Log& log) : m_log(log) {}

    void announce(PeerConnection& peer) { m_agents[peer.user()] = &peer; }
    /// To be called before a connection goes.
    void forget(const PeerConnection& peer);

    /// Hands a shell command to a user's agent without waiting for what becomes of it. False when
    /// the user has no agent or the command is nothing an agent takes.
    bool runCommand(uid_t user, const std::string& command);

private:
    static int onAnswer(sd_bus_message* answer, void* log, sd_bus_error* error);

    const Log& m_log;
    std::map<uid_t, PeerConnection*> m_agents;
};

/// The registry as one client sees it: the interface by which an agent announces itself.
class AgentRegistryObject final {
public:
    AgentRegistryObject(AgentRegistry& registry, PeerConnection& peer)
        : m_registry(registry), m_peer(peer) {}

    /// Serves the object on the peer's connection; this object outlives that connection's calls.
    Result<void> add();

private:
    friend struct AgentRegistryMethods;

    AgentRegistry& m_registry;
    PeerConnection& m_peer;
};

} // namespace tamsel
