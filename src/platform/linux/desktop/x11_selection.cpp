#include "platform/linux/desktop/x11_selection.h"

#include "platform/linux/tray/xcb_replies.h"

#include <QDeadlineTimer>

#include <poll.h>

namespace tamsel {

namespace {

using xcb::Reply;

/// One conversation with the selection's owner (ICCCM, section 2), with a deadline.
class SelectionRequest {
public:
    SelectionRequest(QDeadlineTimer deadline, qsizetype maxBytes)
        : m_connection(xcb_connect(nullptr, nullptr)), m_deadline(deadline), m_maxBytes(maxBytes) {}
    SelectionRequest(const SelectionRequest&) = delete;
    SelectionRequest& operator=(const SelectionRequest&) = delete;
    ~SelectionRequest() { xcb_disconnect(m_connection); }

    std::optional<QByteArray> read() {
        if (xcb_connection_has_error(m_connection))
            return std::nullopt;
        makeWindow();
        m_property = atom("TAMSEL_CLIPBOARD");
        m_incremental = atom("INCR");
        xcb_convert_selection(m_connection, m_window, atom("CLIPBOARD"), atom("UTF8_STRING"),
                              m_property, XCB_CURRENT_TIME);
        xcb_flush(m_connection);
        while (const auto event = nextEvent()) {
            if ((event->response_type & 0x7f) != XCB_SELECTION_NOTIFY)
                continue;
            const auto notify = xcb::eventAs<xcb_selection_notify_event_t>(*event);
            if (notify.property == XCB_NONE)
                return std::nullopt;
            Chunk first = takeProperty();
            if (first.type != m_incremental)
                return first.data;
            return readIncrements();
        }
        return std::nullopt;
    }

private:
    struct Chunk {
        xcb_atom_t type = XCB_NONE;
        std::optional<QByteArray> data;
    };

    void makeWindow() {
        const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
        m_window = xcb_generate_id(m_connection);
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_window, screen->root, 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK,
                          &events);
    }

    xcb_atom_t atom(const char* name) { return xcb::atom(m_connection, name); }

    Reply<xcb_generic_event_t> nextEvent() {
        for (;;) {
            if (Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)})
                return event;
            const auto left = m_deadline.remainingTime();
            pollfd fd{xcb_get_file_descriptor(m_connection), POLLIN, 0};
            if (left <= 0 || xcb_connection_has_error(m_connection) ||
                ::poll(&fd, 1, static_cast<int>(left)) <= 0)
                return nullptr;
        }
    }

    /// Reads and deletes the property, which asks the owner for the next part.
    Chunk takeProperty() {
        const auto limit = static_cast<std::uint32_t>(m_maxBytes / 4 + 1);
        const auto cookie = xcb_get_property(m_connection, 1, m_window, m_property,
                                             XCB_GET_PROPERTY_TYPE_ANY, 0, limit);
        const Reply<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection, cookie, nullptr));
        if (!reply || reply->bytes_after > 0)
            return {};
        const auto* data = static_cast<const char*>(xcb_get_property_value(reply.get()));
        return {reply->type, QByteArray(data, xcb_get_property_value_length(reply.get()))};
    }

    std::optional<QByteArray> readIncrements() {
        QByteArray text;
        while (const auto event = nextEvent()) {
            if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
                continue;
            const auto notify = xcb::eventAs<xcb_property_notify_event_t>(*event);
            if (notify.atom != m_property || notify.state != XCB_PROPERTY_NEW_VALUE)
                continue;
            const Chunk chunk = takeProperty();
            if (!chunk.data || text.size() + chunk.data->size() > m_maxBytes)
                return std::nullopt;
            if (chunk.data->isEmpty())
                return text;
            text += *chunk.data;
        }
        return std::nullopt;
    }

    xcb_connection_t* m_connection;
    QDeadlineTimer m_deadline;
    qsizetype m_maxBytes;
    xcb_window_t m_window = XCB_NONE;
    xcb_atom_t m_property = XCB_NONE;
    xcb_atom_t m_incremental = XCB_NONE;
};

} // namespace

std::optional<QByteArray> readX11Clipboard(std::chrono::milliseconds timeout, qsizetype maxBytes) {
    return SelectionRequest(QDeadlineTimer(timeout), maxBytes).read();
}

} // namespace tamsel
