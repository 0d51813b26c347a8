#pragma once

#include "base/error.h"
#include "base/unique_fd.h"

#include <cstddef>
#include <memory>
#include <sys/types.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

namespace tamsel {

/// One accepted client: a peer-to-peer D-Bus connection on the daemon's loop. Every method call of
/// a peer that may not talk to the daemon is answered with AccessDenied before any object sees it.
/// Nothing is ever waited for: what the peer does not read is queued up to a bound, then the peer
/// is dropped.
class PeerConnection final {
public:
    static constexpr std::uint64_t maxQueuedMessages = 8192;
    static constexpr std::size_t maxQueuedBytes = std::size_t{2} * 1024 * 1024;

    class Owner {
    public:
        virtual ~Owner() = default;
        virtual bool mayTalk(uid_t user) = 0;
        /// The peer has gone or was dropped. It may be in the middle of one of its own calls: it is
        /// to be destroyed later in the loop.
        virtual void peerEnded() = 0;
    };

    /// Nothing is read before start(), so that objects can be added first.
    static Result<std::unique_ptr<PeerConnection>> open(sd_event* loop, UniqueFd socket, uid_t user,
                                                        Owner& owner);
    PeerConnection(const PeerConnection&) = delete;
    PeerConnection& operator=(const PeerConnection&) = delete;
    ~PeerConnection();

    Result<void> start(sd_event* loop);

    sd_bus* bus() const { return m_bus; }
    uid_t user() const { return m_user; }
    bool hasEnded() const { return m_hasEnded; }

    /// Tells how much was just sent, to keep the bound on what waits for the peer to read.
    void countSent(std::size_t bytes);

private:
    PeerConnection(sd_bus* bus, uid_t user, Owner& owner)
        : m_bus(bus), m_user(user), m_owner(owner) {}

    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onPost(sd_event_source* source, void* self);
    void drop();

    sd_bus* m_bus;
    sd_event_source* m_drain = nullptr;
    uid_t m_user;
    Owner& m_owner;
    std::size_t m_unsentBytes = 0;
    bool m_hasEnded = false;
};

} // namespace tamsel
