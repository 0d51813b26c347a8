#pragma once

#include "base/error.h"
#include "bus/agent_registry.h"
#include "bus/bus_actions.h"
#include "bus/daemon_object.h"
#include "bus/listener.h"
#include "bus/peer_connection.h"
#include "core/core.h"
#include "program/log.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <sys/types.h>
#include <systemd/sd-event.h>
#include <systemd/sd-login.h>
#include <vector>

namespace tamsel {

/// Accepts clients on the listening socket and serves each of them the daemon's object and the
/// agents' registry. Through them it runs the core's actions.
class BusServer final : private PeerConnection::Owner {
public:
    /// Connections of one user at a time, so that no user can crowd out another.
    static constexpr std::ptrdiff_t maxClientsPerUser = 32;

    using Access = BusActions::Access;

    /// Everything referred to outlives the server; the loop belongs to the caller.
    BusServer(sd_event* loop, Listener& listener, Core& core, const Log& log, Access access);
    ~BusServer() override;

    Result<void> start();

    /// Sends a key event to each client that subscribed and whose user may see it now.
    void publish(const KeyEvent& event);

    /// Hands a shell command to a user's agent; false when there is none. Never waits.
    bool runCommand(uid_t user, const std::string& command) {
        return m_agents.runCommand(user, command);
    }

private:
    struct Client {
        std::unique_ptr<DaemonObject> object;          ///< outlives the connection, which calls it
        std::unique_ptr<AgentRegistryObject> registry; ///< likewise
        std::unique_ptr<PeerConnection> peer;
        bool isPermitted = false; ///< as of the last change of sessions
    };

    bool mayTalk(uid_t user) override { return m_access(user); }
    void peerEnded() override;

    static int onAccept(sd_event_source* source, int fd, std::uint32_t events, void* self);
    static int onReap(sd_event_source* source, void* self);
    static int onSessionChange(sd_event_source* source, int fd, std::uint32_t events, void* self);
    Result<void> add(UniqueFd socket);
    bool hasRoomFor(uid_t user) const;
    void watchSessions();

    sd_event* m_loop;
    Listener& m_listener;
    const Log& m_log;
    Access m_access;
    DaemonState m_state;
    AgentRegistry m_agents;
    BusActions m_actions;
    sd_login_monitor* m_sessions = nullptr;
    sd_event_source* m_acceptSource = nullptr;
    sd_event_source* m_reapSource = nullptr;
    sd_event_source* m_sessionSource = nullptr;
    std::vector<Client> m_clients;
};

} // namespace tamsel
