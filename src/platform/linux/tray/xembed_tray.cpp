#include "platform/linux/tray/xembed_tray.h"

#include "platform/linux/tray/tray_tool_tip.h"
#include "platform/linux/tray/xcb_replies.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QPainter>
#include <QSocketNotifier>

#include <algorithm>
#include <cstring>
#include <string>

namespace tamsel {

namespace {

using xcb::eventAs;
using xcb::Reply;

constexpr quint32 requestDock = 0; // SYSTEM_TRAY_REQUEST_DOCK
constexpr quint32 xembedMapped = 1;
constexpr quint32 hintMinSize = 1U << 4U; // PMinSize of WM_NORMAL_HINTS
constexpr quint8 alphaDepth = 32;
constexpr quint16 smallestIcon = 22;
constexpr std::chrono::milliseconds hoverTime{500};

/// The depth of one of the screen's visuals; 0 for one that is not there.
quint8 depthOf(const xcb_screen_t& screen, xcb_visualid_t visual) {
    for (auto depth = xcb_screen_allowed_depths_iterator(&screen); depth.rem;
         xcb_depth_next(&depth))
        for (auto type = xcb_depth_visuals_iterator(depth.data); type.rem;
             xcb_visualtype_next(&type))
            if (type.data->visual_id == visual)
                return depth.data->depth;
    return 0;
}

const xcb_screen_t* screenOf(xcb_connection_t* connection, int number) {
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screen.rem && number > 0; --number)
        xcb_screen_next(&screen);
    return screen.data;
}

} // namespace

struct XembedTray::Atoms {
    Atoms(xcb_connection_t* connection, int screenNumber)
        : selection(xcb::atom(connection, "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber))),
          manager(xcb::atom(connection, "MANAGER")),
          opcode(xcb::atom(connection, "_NET_SYSTEM_TRAY_OPCODE")),
          visual(xcb::atom(connection, "_NET_SYSTEM_TRAY_VISUAL")),
          xembedInfo(xcb::atom(connection, "_XEMBED_INFO")),
          name(xcb::atom(connection, "_NET_WM_NAME")),
          utf8(xcb::atom(connection, "UTF8_STRING")) {}

    xcb_atom_t selection;
    xcb_atom_t manager;
    xcb_atom_t opcode;
    xcb_atom_t visual;
    xcb_atom_t xembedInfo;
    xcb_atom_t name;
    xcb_atom_t utf8;
};

XembedTray::XembedTray() {
    if (QGuiApplication::platformName() != u"xcb")
        return;
    m_connection = xcb_connect(nullptr, &m_screenNumber);
    const xcb_screen_t* screen =
        xcb_connection_has_error(m_connection) ? nullptr : screenOf(m_connection, m_screenNumber);
    if (!screen)
        return;
    m_root = screen->root;
    m_atoms = std::make_unique<Atoms>(m_connection, m_screenNumber);
    // A tray that comes tells it on the root window.
    const quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_EVENT_MASK, &mask);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &XembedTray::readEvents);
    m_hovered.setInterval(hoverTime);
    m_hovered.setSingleShot(true);
    connect(&m_hovered, &QTimer::timeout, this, [this] {
        m_toolTip = std::make_unique<TrayToolTip>();
        m_toolTip->setText(m_text);
        m_toolTip->showAtPointer();
    });
    findManager();
}

XembedTray::~XembedTray() {
    m_notifier.reset();
    if (m_connection)
        xcb_disconnect(m_connection);
}

void XembedTray::show(const QImage& icon) {
    m_icon = icon;
    m_isWanted = true;
    if (!m_manager)
        return;
    if (m_window)
        draw();
    else
        dock();
}

void XembedTray::setToolTip(const QString& text) {
    m_text = text;
    if (m_window)
        nameWindow();
}

void XembedTray::hide() {
    m_isWanted = false;
    destroyWindow();
}

void XembedTray::readEvents() {
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)})
        handle(*event);
    if (xcb_connection_has_error(m_connection))
        m_notifier->setEnabled(false);
}

void XembedTray::readEventsSoon() {
    // Whoever waits for a reply takes events off the socket, which then announces nothing.
    QMetaObject::invokeMethod(this, &XembedTray::readEvents, Qt::QueuedConnection);
}

void XembedTray::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE: {
        const auto message = eventAs<xcb_client_message_event_t>(event);
        if (message.type == m_atoms->manager && message.data.data32[1] == m_atoms->selection)
            findManager();
        break;
    }
    case XCB_DESTROY_NOTIFY:
        if (eventAs<xcb_destroy_notify_event_t>(event).window == m_manager && m_manager)
            findManager();
        break;
    case XCB_CONFIGURE_NOTIFY: {
        const auto configured = eventAs<xcb_configure_notify_event_t>(event);
        if (configured.window == m_window)
            m_size = {configured.width, configured.height};
        break;
    }
    case XCB_EXPOSE:
        if (eventAs<xcb_expose_event_t>(event).count == 0)
            draw();
        break;
    case XCB_ENTER_NOTIFY:
        // Not one that was already made anew.
        if (eventAs<xcb_enter_notify_event_t>(event).event == m_window)
            m_hovered.start();
        break;
    case XCB_LEAVE_NOTIFY:
        hideToolTip();
        break;
    case XCB_BUTTON_PRESS:
        hideToolTip();
        if (eventAs<xcb_button_press_event_t>(event).detail == XCB_BUTTON_INDEX_1)
            Q_EMIT clicked();
        break;
    default:
        break;
    }
}

void XembedTray::findManager() {
    destroyWindow();
    const bool wasThere = isThere();
    // Grabbed, so that the owner can't go before its end is watched.
    xcb_grab_server(m_connection);
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        m_connection, xcb_get_selection_owner(m_connection, m_atoms->selection), nullptr));
    m_manager = owner ? owner->owner : 0;
    if (m_manager) {
        const quint32 mask = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
        xcb_change_window_attributes(m_connection, m_manager, XCB_CW_EVENT_MASK, &mask);
    }
    xcb_ungrab_server(m_connection);
    xcb_flush(m_connection);
    readEventsSoon();
    if (m_manager && m_isWanted)
        dock();
    if (isThere() != wasThere)
        Q_EMIT changed();
}

void XembedTray::dock() {
    makeWindow();
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.window = m_manager;
    message.type = m_atoms->opcode;
    message.data.data32[0] = XCB_CURRENT_TIME;
    message.data.data32[1] = requestDock;
    message.data.data32[2] = m_window;
    xcb_send_event(m_connection, 0, m_manager, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&message));
    xcb_flush(m_connection);
    readEventsSoon();
}

void XembedTray::makeWindow() {
    const xcb_screen_t& screen = *screenOf(m_connection, m_screenNumber);
    // A tray that can show translucent icons says in which visual.
    const Reply<xcb_get_property_reply_t> offered(xcb_get_property_reply(
        m_connection,
        xcb_get_property(m_connection, 0, m_manager, m_atoms->visual, XCB_ATOM_VISUALID, 0, 1),
        nullptr));
    xcb_visualid_t visual = screen.root_visual;
    if (offered && offered->type == XCB_ATOM_VISUALID &&
        xcb_get_property_value_length(offered.get()) == 4)
        std::memcpy(&visual, xcb_get_property_value(offered.get()), sizeof visual);
    if (depthOf(screen, visual) != alphaDepth)
        visual = screen.root_visual;
    m_depth = depthOf(screen, visual);

    const bool isTranslucent = m_depth == alphaDepth;
    const xcb_colormap_t colours = xcb_generate_id(m_connection);
    xcb_create_colormap(m_connection, XCB_COLORMAP_ALLOC_NONE, colours, m_root, visual);
    const quint32 events = XCB_EVENT_MASK_EXPOSURE | XCB_EVENT_MASK_BUTTON_PRESS |
                           XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_ENTER_WINDOW |
                           XCB_EVENT_MASK_LEAVE_WINDOW;
    // In the order of the bits in the mask.
    const quint32 values[] = {isTranslucent ? 0U : quint32{XCB_BACK_PIXMAP_PARENT_RELATIVE}, 0,
                              events, colours};
    m_window = xcb_generate_id(m_connection);
    m_size = {smallestIcon, smallestIcon};
    xcb_create_window(m_connection, m_depth, m_window, m_root, 0, 0, smallestIcon, smallestIcon, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, visual,
                      (isTranslucent ? XCB_CW_BACK_PIXEL : XCB_CW_BACK_PIXMAP) |
                          XCB_CW_BORDER_PIXEL | XCB_CW_EVENT_MASK | XCB_CW_COLORMAP,
                      values);
    xcb_free_colormap(m_connection, colours);
    nameWindow();
    const quint32 hints[18] = {hintMinSize, 0, 0, 0, 0, smallestIcon, smallestIcon};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, XCB_ATOM_WM_NORMAL_HINTS,
                        XCB_ATOM_WM_SIZE_HINTS, 32, 18, hints);
    const quint32 info[] = {0, xembedMapped};
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, m_atoms->xembedInfo,
                        m_atoms->xembedInfo, 32, 2, info);
}

void XembedTray::nameWindow() {
    // Assistive programs read the window's name.
    QByteArray name = "Tamsel tray icon";
    if (!m_text.isEmpty())
        name += ": " + m_text.toUtf8();
    for (const xcb_atom_t property : {xcb_atom_t{XCB_ATOM_WM_NAME}, m_atoms->name})
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, m_window, property, m_atoms->utf8,
                            8, static_cast<quint32>(name.size()), name.constData());
    xcb_flush(m_connection);
    if (m_toolTip)
        m_toolTip->setText(m_text);
}

void XembedTray::hideToolTip() {
    m_hovered.stop();
    m_toolTip.reset();
}

void XembedTray::destroyWindow() {
    hideToolTip();
    if (!m_window)
        return;
    xcb_destroy_window(m_connection, m_window);
    xcb_flush(m_connection);
    m_window = 0;
}

QImage XembedTray::background(const QSize& size) const {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (m_depth == alphaDepth)
        return image;
    // What the tray has behind the window.
    xcb_clear_area(m_connection, 0, m_window, 0, 0, 0, 0);
    const Reply<xcb_get_image_reply_t> pixels(xcb_get_image_reply(
        m_connection,
        xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, 0, 0,
                      static_cast<quint16>(size.width()), static_cast<quint16>(size.height()), ~0U),
        nullptr));
    if (pixels && xcb_get_image_data_length(pixels.get()) == image.sizeInBytes())
        std::memcpy(image.bits(), xcb_get_image_data(pixels.get()),
                    static_cast<std::size_t>(image.sizeInBytes()));
    QImage opaque(size, QImage::Format_RGB32);
    std::memcpy(opaque.bits(), image.constBits(), static_cast<std::size_t>(image.sizeInBytes()));
    return opaque;
}

void XembedTray::draw() {
    if (!m_window || m_size.isEmpty())
        return;
    QImage picture = background(m_size);
    const int side = std::min(m_size.width(), m_size.height());
    QRect place(0, 0, side, side);
    place.moveCenter(picture.rect().center());
    {
        QPainter painter(&picture);
        painter.drawImage(place.topLeft(),
                          m_icon.scaled(side, side, Qt::KeepAspectRatio, Qt::SmoothTransformation));
    }
    const xcb_gcontext_t context = xcb_generate_id(m_connection);
    xcb_create_gc(m_connection, context, m_window, 0, nullptr);
    xcb_put_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_window, context,
                  static_cast<quint16>(picture.width()), static_cast<quint16>(picture.height()), 0,
                  0, 0, m_depth, static_cast<quint32>(picture.sizeInBytes()), picture.constBits());
    xcb_free_gc(m_connection, context);
    xcb_flush(m_connection);
    readEventsSoon();
}

} // namespace tamsel
