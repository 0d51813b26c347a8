#include "bus/peer_connection.h"

#include <system_error>

namespace tamsel {

namespace {

constexpr const char* localInterface = "org.freedesktop.DBus.Local";
/// What a message costs beside its payload, about.
constexpr std::size_t messageOverhead = 192;
/// More calls than can arrive together with the end of an authentication.
constexpr int maxFirstCalls = 2048;

tl::unexpected<Error> busError(const char* what, int result) {
    return fail(std::string(what) + ": " + std::generic_category().message(-result));
}

} // namespace

Result<std::unique_ptr<PeerConnection>> PeerConnection::open(sd_event* loop, UniqueFd socket,
                                                             uid_t user, Owner& owner) {
    sd_bus* bus = nullptr;
    sd_id128_t id{};
    int result = ::sd_bus_new(&bus);
    if (result < 0)
        return busError("no connection", result);
    std::unique_ptr<PeerConnection> peer(new PeerConnection(bus, user, owner));
    result = ::sd_id128_randomize(&id);
    if (result >= 0)
        result = ::sd_bus_set_fd(bus, socket.get(), socket.get());
    if (result >= 0) {
        (void)socket.release();
        result = ::sd_bus_set_server(bus, 1, id);
    }
    if (result >= 0)
        result = ::sd_bus_negotiate_fds(bus, 0);
    if (result >= 0)
        result = ::sd_bus_add_filter(bus, nullptr, onMessage, peer.get());
    // A client's first calls can arrive together with the end of its authentication; the attached
    // source would then wait for further bytes.
    if (result >= 0)
        result = ::sd_event_add_post(loop, &peer->m_drain, onPost, peer.get());
    if (result < 0)
        return busError("no connection", result);
    return peer;
}

Result<void> PeerConnection::start(sd_event* loop) {
    int result = ::sd_bus_start(m_bus);
    if (result >= 0)
        result = ::sd_bus_attach_event(m_bus, loop, SD_EVENT_PRIORITY_NORMAL);
    if (result < 0)
        return busError("the connection cannot be started", result);
    return {};
}

PeerConnection::~PeerConnection() {
    ::sd_event_source_disable_unref(m_drain);
    ::sd_bus_detach_event(m_bus);
    // Closed without flushing: a flush waits for the peer to read.
    ::sd_bus_close_unref(m_bus);
}

int PeerConnection::onMessage(sd_bus_message* message, void* self, sd_bus_error* error) {
    auto* const peer = static_cast<PeerConnection*>(self);
    if (::sd_bus_message_is_signal(message, localInterface, "Disconnected") > 0) {
        peer->drop();
        return 0;
    }
    // A peer that calls and calls without reading the replies.
    peer->countSent(0);
    if (peer->m_hasEnded)
        return 1;
    if (::sd_bus_message_is_method_call(message, nullptr, nullptr) > 0 &&
        !peer->m_owner.mayTalk(peer->m_user))
        return ::sd_bus_error_set(
            error, SD_BUS_ERROR_ACCESS_DENIED,
            "Only the user of the active local session may talk to the daemon");
    return 0;
}

int PeerConnection::onPost(sd_event_source* source, void* self) {
    auto* const peer = static_cast<PeerConnection*>(self);
    int result = 1;
    for (int i = 0; i < maxFirstCalls && result > 0 && !peer->m_hasEnded; ++i)
        result = ::sd_bus_process(peer->m_bus, nullptr);
    if (result < 0)
        peer->drop();
    // From here on each call brings its own bytes, and the attached source sees them.
    if (::sd_bus_is_ready(peer->m_bus) > 0)
        return ::sd_event_source_set_enabled(source, SD_EVENT_OFF);
    return 0;
}

void PeerConnection::countSent(std::size_t bytes) {
    std::uint64_t queued = 0;
    if (::sd_bus_get_n_queued_write(m_bus, &queued) < 0 || queued == 0) {
        m_unsentBytes = 0;
        return;
    }
    if (bytes > 0)
        m_unsentBytes += bytes + messageOverhead;
    if (queued > maxQueuedMessages || m_unsentBytes > maxQueuedBytes)
        drop();
}

void PeerConnection::drop() {
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    m_owner.peerEnded();
}

} // namespace tamsel
