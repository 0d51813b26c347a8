#pragma once

#include "bus/agent_registry.h"
#include "bus/daemon_object.h"
#include "core/action_runner.h"
#include "program/log.h"

#include <functional>
#include <sys/types.h>

namespace tamsel {

/// Has actions run by the user's programs: commands by the agent, addresses and the clipboard by
/// the application whose configuration is in force, as long as its user may talk to the daemon.
class BusActions final : public ActionRunner {
public:
    using Access = std::function<bool(uid_t)>;

    /// Clipboard requests that wait for their answer at a time.
    static constexpr int maxPendingRequests = 8;

    /// Everything referred to outlives the connections of `state` and `agents`, and so does this.
    BusActions(const DaemonState& state, AgentRegistry& agents, const Access& access)
        : m_state(state), m_agents(agents), m_access(access) {}

    void runCommand(const std::string& command) override;
    void openURL(const std::string& url) override;
    void requestClipboardText(ClipboardText done) override;

private:
    struct Request;

    PeerConnection* application() const;

    static int onOpened(sd_bus_message* answer, void* log, sd_bus_error* error);
    static int onClipboardText(sd_bus_message* answer, void* request, sd_bus_error* error);

    const DaemonState& m_state;
    AgentRegistry& m_agents;
    const Access& m_access;
    int m_pendingRequests = 0;
};

} // namespace tamsel
