#pragma once

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>
#include <xcb/xcb.h>

namespace tamsel::xcb {

struct Free {
    void operator()(void* data) const { std::free(data); }
};

/// What the library has allocated for its caller: a reply, an event; null when there is none.
template <class T>
using Reply = std::unique_ptr<T, Free>;

/// The event as what its type says it is.
template <class T>
T eventAs(const xcb_generic_event_t& event) {
    T out{};
    std::memcpy(&out, &event, sizeof out);
    return out;
}

/// Waits for the server's answer; XCB_ATOM_NONE when the connection is broken.
inline xcb_atom_t atom(xcb_connection_t* connection, std::string_view name) {
    const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    return reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
}

} // namespace tamsel::xcb
