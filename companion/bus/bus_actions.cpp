#include "bus/bus_actions.h"

#include "bus/access.h"
#include "protocol/daemon_protocol.h"

#include <chrono>
#include <ctime>
#include <memory>
#include <utility>

namespace tamsel {

namespace {

/// An answer that comes later than this would surprise.
constexpr std::chrono::seconds patience{3};
constexpr std::uint64_t patienceMicroseconds = std::chrono::microseconds(patience).count();
/// The longest address that an application opens has 2048 characters.
constexpr std::size_t maxURLSize = std::size_t{64} * 1024;

/// Seconds on the clock that the daemon and the application share.
double sharedNow() {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

/// Text that arrives as it is: D-Bus strings end at a NUL.
bool travels(const std::string& text) {
    return text.find('\0') == std::string::npos;
}

} // namespace

/// A clipboard request on its way; it lives as long as the bus may answer it.
struct BusActions::Request {
    BusActions& owner;
    ClipboardText done;

    Request(BusActions& actions, ClipboardText taken) : owner(actions), done(std::move(taken)) {
        ++owner.m_pendingRequests;
    }
    Request(const Request&) = delete;
    Request& operator=(const Request&) = delete;
    ~Request() { --owner.m_pendingRequests; }

    static void destroy(void* self) { delete static_cast<Request*>(self); }
};

PeerConnection* BusActions::application() const {
    PeerConnection* const peer = m_state.callbackPeer;
    return peer && !peer->hasEnded() && m_access(peer->user()) ? peer : nullptr;
}

void BusActions::runCommand(const std::string& command) {
    if (command.empty())
        return;
    const auto user = commandUser();
    if (!user || !m_agents.runCommand(*user, command))
        m_state.log.error("a command was not run: no agent takes it");
}

void BusActions::openURL(const std::string& url) {
    PeerConnection* const peer = application();
    if (!peer || url.size() > maxURLSize || !travels(url)) {
        m_state.log.error("an address was not opened: no application takes it");
        return;
    }
    const double deadline = sharedNow() + static_cast<double>(patience.count());
    const int sent = ::sd_bus_call_method_async(peer->bus(), nullptr, nullptr, protocol::appPath,
                                                protocol::appInterface, protocol::openURL.name,
                                                onOpened, const_cast<Log*>(&m_state.log),
                                                protocol::openURL.arguments, url.c_str(), deadline);
    peer->countSent(url.size());
    if (sent < 0)
        m_state.log.error("an address was not opened: it cannot be sent");
}

int BusActions::onOpened(sd_bus_message* answer, void* log, sd_bus_error* /*error*/) {
    int isOpened = 0;
    if (::sd_bus_message_is_method_error(answer, nullptr) > 0 ||
        ::sd_bus_message_read(answer, protocol::openURL.reply, &isOpened) < 0 || isOpened == 0)
        static_cast<const Log*>(log)->error("the application did not open an address");
    return 0;
}

void BusActions::requestClipboardText(ClipboardText done) {
    PeerConnection* const peer = application();
    if (!peer || m_pendingRequests >= maxPendingRequests) {
        m_state.log.error("the clipboard was not asked for: no application is free to answer");
        return;
    }
    auto request = std::make_unique<Request>(*this, std::move(done));
    sd_bus_message* call = nullptr;
    sd_bus_slot* slot = nullptr;
    int result = ::sd_bus_message_new_method_call(peer->bus(), &call, nullptr, protocol::appPath,
                                                  protocol::appInterface,
                                                  protocol::requestClipboardText.name);
    if (result >= 0)
        result = ::sd_bus_call_async(peer->bus(), &slot, call, onClipboardText, request.get(),
                                     patienceMicroseconds);
    ::sd_bus_message_unref(call);
    if (result < 0) {
        m_state.log.error("the clipboard was not asked for: the request cannot be sent");
        return;
    }
    // From here on the request belongs to the slot, and the slot to the connection.
    ::sd_bus_slot_set_destroy_callback(slot, Request::destroy);
    static_cast<void>(request.release());
    ::sd_bus_slot_set_floating(slot, 1);
    ::sd_bus_slot_unref(slot);
    peer->countSent(0);
}

int BusActions::onClipboardText(sd_bus_message* answer, void* request, sd_bus_error* /*error*/) {
    const Request& asked = *static_cast<const Request*>(request);
    int isPresent = 0;
    const char* text = nullptr;
    if (::sd_bus_message_is_method_error(answer, nullptr) > 0 ||
        ::sd_bus_message_read(answer, protocol::requestClipboardText.reply, &isPresent, &text) <
            0) {
        asked.owner.m_state.log.error("the application did not hand over the clipboard");
        asked.done(std::nullopt);
    } else {
        asked.done(isPresent != 0 ? std::optional<std::string>(text) : std::nullopt);
    }
    return 0;
}

} // namespace tamsel
