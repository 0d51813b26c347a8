#include "bus/agent_registry.h"

#include "protocol/daemon_protocol.h"

#include <array>
#include <system_error>

namespace tamsel {

void AgentRegistry::forget(const PeerConnection& peer) {
    const auto found = m_agents.find(peer.user());
    if (found != m_agents.end() && found->second == &peer)
        m_agents.erase(found);
}

bool AgentRegistry::runCommand(uid_t user, const std::string& command) {
    const auto found = m_agents.find(user);
    if (found == m_agents.end() || found->second->hasEnded())
        return false;
    // A text with a NUL in it would arrive cut short, as another command.
    if (command.empty() || command.size() > protocol::maxCommandSize ||
        command.find('\0') != std::string::npos)
        return false;
    PeerConnection& agent = *found->second;
    const int result = ::sd_bus_call_method_async(
        agent.bus(), nullptr, nullptr, protocol::agentPath, protocol::agentInterface,
        protocol::runCommand.name, onAnswer, const_cast<Log*>(&m_log),
        protocol::runCommand.arguments, command.c_str());
    agent.countSent(command.size());
    return result >= 0 && !agent.hasEnded();
}

int AgentRegistry::onAnswer(sd_bus_message* answer, void* log, sd_bus_error* /*error*/) {
    int isStarted = 0;
    if (::sd_bus_message_is_method_error(answer, nullptr) > 0 ||
        ::sd_bus_message_read(answer, protocol::runCommand.reply, &isStarted) < 0 || isStarted == 0)
        static_cast<const Log*>(log)->error("the agent did not start a command");
    return 0;
}

struct AgentRegistryMethods {
    static int announce(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        auto* const object = static_cast<AgentRegistryObject*>(self);
        object->m_registry.announce(object->m_peer);
        return ::sd_bus_reply_method_return(call, protocol::registerAgent.reply, 1);
    }
};

namespace {

const std::array registryVtable{
    sd_bus_vtable(SD_BUS_VTABLE_START(0)),
    // Access is checked for each call by the connection, on the peer's identity.
    sd_bus_vtable(SD_BUS_METHOD(protocol::registerAgent.name, protocol::registerAgent.arguments,
                                protocol::registerAgent.reply, AgentRegistryMethods::announce,
                                SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_VTABLE_END),
};

} // namespace

Result<void> AgentRegistryObject::add() {
    const int result =
        ::sd_bus_add_object_vtable(m_peer.bus(), nullptr, protocol::daemonPath,
                                   protocol::registryInterface, registryVtable.data(), this);
    if (result < 0)
        return fail("the agents' registry cannot be served: " +
                    std::generic_category().message(-result));
    return {};
}

} // namespace tamsel
