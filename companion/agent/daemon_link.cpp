#include "agent/daemon_link.h"

#include "program/event_loop.h"
#include "program/socket_name.h"
#include "program/system_account.h"
#include "protocol/daemon_protocol.h"
#include "protocol/socket_path.h"

#include <array>
#include <cerrno>
#include <system_error>
#include <unistd.h>

namespace tamsel {

namespace {

/// Accuracy of the retry, so that its wake-ups can be joined with others.
constexpr std::chrono::microseconds retryAccuracy{100'000};

std::string reason(int error) {
    return std::generic_category().message(error);
}

std::uint64_t microseconds(std::chrono::microseconds duration) {
    return static_cast<std::uint64_t>(duration.count());
}

/// Whose commands this agent runs: the user's own, the administrator's, the daemon's account's.
bool isTrusted(uid_t user) {
    return user == ::geteuid() || user == 0 || user == systemAccount();
}

Result<UniqueFd> connectedSocket(const std::string& address) {
    const auto name = socketName(address);
    if (!name)
        return tl::unexpected(name.error());
    const auto kernel = kernelAddress(*name);
    if (!kernel)
        return tl::unexpected(kernel.error());
    UniqueFd socket = newSocket();
    if (!socket.isOpen() || ::connect(socket.get(), kernel->get(), kernel->length) != 0)
        return fail("cannot be reached: " + reason(errno), name->text);
    ucred peer{};
    socklen_t length = sizeof peer;
    if (::getsockopt(socket.get(), SOL_SOCKET, SO_PEERCRED, &peer, &length) != 0)
        return fail("its user is unknown", name->text);
    if (!isTrusted(peer.uid))
        return fail("is served by another user", name->text);
    return socket;
}

} // namespace

/// The methods as the bus calls them; `self` is the DaemonLink.
struct AgentMethods {
    static int runCommand(sd_bus_message* call, void* self, sd_bus_error* /*error*/) {
        const char* command = nullptr;
        if (const int result =
                ::sd_bus_message_read(call, protocol::runCommand.arguments, &command);
            result < 0)
            return result;
        const bool isStarted = static_cast<DaemonLink*>(self)->m_runCommand(command);
        return ::sd_bus_reply_method_return(call, protocol::runCommand.reply, int{isStarted});
    }
};

namespace {

const std::array agentVtable{
    sd_bus_vtable(SD_BUS_VTABLE_START(0)),
    // Only the daemon is at the other end, and who that is was checked when it was connected to.
    sd_bus_vtable(SD_BUS_METHOD(protocol::runCommand.name, protocol::runCommand.arguments,
                                protocol::runCommand.reply, AgentMethods::runCommand,
                                SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_VTABLE_END),
};

} // namespace

DaemonLink::DaemonLink(sd_event* loop, const Log& log, RunCommand runCommand)
    : m_loop(loop), m_log(log), m_runCommand(std::move(runCommand)) {}

DaemonLink::~DaemonLink() {
    disconnect();
    ::sd_event_source_disable_unref(m_retry);
}

Result<void> DaemonLink::start() {
    int result = ::sd_event_add_time_relative(m_loop, &m_retry, CLOCK_MONOTONIC, 0,
                                              microseconds(retryAccuracy), onRetry, this);
    if (result >= 0)
        result = ::sd_event_source_set_enabled(m_retry, SD_EVENT_OFF);
    if (result < 0)
        return loopError(result);
    attempt();
    return {};
}

int DaemonLink::onRetry(sd_event_source* /*source*/, std::uint64_t /*time*/, void* self) {
    static_cast<DaemonLink*>(self)->attempt();
    return 0;
}

void DaemonLink::attempt() {
    disconnect();
    if (const auto connected = connect(); !connected)
        fallBack(connected.error().description());
}

Result<void> DaemonLink::connect() {
    // Asked for each time: the daemon's place changes when it becomes a service of the system.
    auto socket = connectedSocket(protocol::daemonAddress());
    if (!socket)
        return tl::unexpected(socket.error());
    int result = ::sd_bus_new(&m_bus);
    if (result >= 0)
        result = ::sd_bus_set_fd(m_bus, socket->get(), socket->get());
    if (result >= 0) {
        (void)socket->release();
        result = ::sd_bus_negotiate_fds(m_bus, 0);
    }
    if (result >= 0)
        result = ::sd_bus_add_filter(m_bus, nullptr, onMessage, this);
    if (result >= 0)
        result = ::sd_bus_add_object_vtable(m_bus, nullptr, protocol::agentPath,
                                            protocol::agentInterface, agentVtable.data(), this);
    if (result >= 0)
        result = ::sd_bus_start(m_bus);
    if (result >= 0)
        result = ::sd_bus_attach_event(m_bus, m_loop, SD_EVENT_PRIORITY_NORMAL);
    if (result >= 0)
        result = ::sd_bus_call_method_async(
            m_bus, nullptr, nullptr, protocol::daemonPath, protocol::registryInterface,
            protocol::registerAgent.name, onRegistered, this, protocol::registerAgent.arguments);
    if (result < 0)
        return fail("no connection to the daemon: " + reason(-result));
    return {};
}

void DaemonLink::disconnect() {
    if (!m_bus)
        return;
    ::sd_bus_detach_event(m_bus);
    // Closed without flushing: a flush waits for the daemon to read.
    m_bus = ::sd_bus_close_unref(m_bus);
}

int DaemonLink::onMessage(sd_bus_message* message, void* self, sd_bus_error* /*error*/) {
    if (::sd_bus_message_is_signal(message, "org.freedesktop.DBus.Local", "Disconnected") > 0)
        static_cast<DaemonLink*>(self)->fallBack("the connection to the daemon is lost");
    return 0;
}

int DaemonLink::onRegistered(sd_bus_message* answer, void* self, sd_bus_error* /*error*/) {
    auto* const link = static_cast<DaemonLink*>(self);
    int isTaken = 0;
    if (const sd_bus_error* const error = ::sd_bus_message_get_error(answer)) {
        link->fallBack(std::string("the daemon did not take this agent: ") + error->name);
    } else if (::sd_bus_message_read(answer, protocol::registerAgent.reply, &isTaken) < 0 ||
               isTaken == 0) {
        link->fallBack("the daemon did not take this agent");
    } else {
        link->m_lastTrouble.clear();
        link->m_log.info("commands of combos are run for the daemon");
    }
    return 0;
}

void DaemonLink::fallBack(const std::string& trouble) {
    int isWaiting = SD_EVENT_OFF;
    ::sd_event_source_get_enabled(m_retry, &isWaiting);
    if (isWaiting != SD_EVENT_OFF)
        return; // one end of a connection shows in several ways; the first counts
    if (trouble != m_lastTrouble)
        m_log.error(trouble);
    m_lastTrouble = trouble;
    // The connection goes with the next attempt: this may be in the middle of one of its calls.
    int result = ::sd_event_source_set_time_relative(m_retry, microseconds(retryDelay));
    if (result >= 0)
        result = ::sd_event_source_set_enabled(m_retry, SD_EVENT_ONESHOT);
    if (result < 0)
        ::sd_event_exit(m_loop, result);
}

} // namespace tamsel
