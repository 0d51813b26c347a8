#include "bus/bus_server.h"

#include "bus/bus_driver_object.h"

#include <algorithm>
#include <cerrno>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <system_error>

namespace tamsel {

BusServer::BusServer(sd_event* loop, Listener& listener, Core& core, const Log& log, Access access)
    : m_loop(loop),
      m_listener(listener),
      m_log(log),
      m_access(std::move(access)),
      m_state{core, log, nullptr},
      m_agents(log),
      m_actions(m_state, m_agents, m_access) {
    core.setActionRunner(&m_actions);
}

BusServer::~BusServer() {
    m_state.core.setActionRunner(nullptr);
    m_clients.clear();
    ::sd_event_source_disable_unref(m_sessionSource);
    ::sd_event_source_disable_unref(m_reapSource);
    ::sd_event_source_disable_unref(m_acceptSource);
    ::sd_login_monitor_unref(m_sessions);
}

Result<void> BusServer::start() {
    int result = ::sd_event_add_defer(m_loop, &m_reapSource, onReap, this);
    if (result >= 0)
        result = ::sd_event_source_set_enabled(m_reapSource, SD_EVENT_OFF);
    if (result >= 0)
        result =
            ::sd_event_add_io(m_loop, &m_acceptSource, m_listener.fd(), EPOLLIN, onAccept, this);
    if (result < 0)
        return fail("the loop takes no more: " + std::generic_category().message(-result));
    watchSessions();
    return {};
}

void BusServer::watchSessions() {
    // Without logind nobody but the daemon's own user may talk to it, and that never changes.
    if (::sd_login_monitor_new("session", &m_sessions) < 0)
        return;
    const int result =
        ::sd_event_add_io(m_loop, &m_sessionSource, ::sd_login_monitor_get_fd(m_sessions),
                          static_cast<std::uint32_t>(::sd_login_monitor_get_events(m_sessions)),
                          onSessionChange, this);
    if (result < 0)
        m_log.error("changes of the active session go unseen: " +
                    std::generic_category().message(-result));
}

void BusServer::publish(const KeyEvent& event) {
    for (const Client& client : m_clients) {
        if (client.isPermitted && client.object->isSubscribed() && !client.peer->hasEnded())
            client.object->send(event);
    }
}

void BusServer::peerEnded() {
    ::sd_event_source_set_enabled(m_reapSource, SD_EVENT_ONESHOT);
}

int BusServer::onAccept(sd_event_source* /*source*/, int fd, std::uint32_t /*events*/, void* self) {
    auto* const server = static_cast<BusServer*>(self);
    UniqueFd socket(::accept4(fd, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!socket.isOpen())
        return 0;
    if (const auto added = server->add(std::move(socket)); !added)
        server->m_log.error("a client was turned away: " + added.error().description());
    return 0;
}

Result<void> BusServer::add(UniqueFd socket) {
    ucred peerIdentity{};
    socklen_t length = sizeof peerIdentity;
    if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peerIdentity, &length) != 0)
        return fail("its user is unknown");
    if (!hasRoomFor(peerIdentity.uid))
        return fail("its user has too many connections");
    auto peer = PeerConnection::open(m_loop, std::move(socket), peerIdentity.uid, *this);
    if (!peer)
        return tl::unexpected(peer.error());
    auto object = std::make_unique<DaemonObject>(m_state, **peer);
    if (auto added = object->add(); !added)
        return added;
    auto registry = std::make_unique<AgentRegistryObject>(m_agents, **peer);
    if (auto added = registry->add(); !added)
        return added;
    if (auto added = addBusDriverObject((*peer)->bus()); !added)
        return added;
    if (auto started = (*peer)->start(m_loop); !started)
        return started;
    m_clients.push_back(
        {std::move(object), std::move(registry), std::move(*peer), mayTalk(peerIdentity.uid)});
    return {};
}

bool BusServer::hasRoomFor(uid_t user) const {
    return std::count_if(m_clients.begin(), m_clients.end(), [user](const Client& client) {
               return client.peer->user() == user;
           }) < maxClientsPerUser;
}

int BusServer::onReap(sd_event_source* /*source*/, void* self) {
    auto* const server = static_cast<BusServer*>(self);
    std::erase_if(server->m_clients, [server](const Client& client) {
        if (!client.peer->hasEnded())
            return false;
        if (server->m_state.callbackPeer == client.peer.get())
            server->m_state.callbackPeer = nullptr;
        server->m_agents.forget(*client.peer);
        return true;
    });
    return 0;
}

int BusServer::onSessionChange(sd_event_source* /*source*/, int /*fd*/, std::uint32_t /*events*/,
                               void* self) {
    auto* const server = static_cast<BusServer*>(self);
    ::sd_login_monitor_flush(server->m_sessions);
    for (Client& client : server->m_clients)
        client.isPermitted = server->mayTalk(client.peer->user());
    return 0;
}

} // namespace tamsel
