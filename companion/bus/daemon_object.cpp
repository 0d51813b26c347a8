#include "bus/daemon_object.h"

#include "coding/seen_devices_coding.h"

#include <array>
#include <string>
#include <system_error>

namespace tamsel {

/// The methods as the bus calls them; `self` is the DaemonObject.
struct DaemonMethods {
    using Call = sd_bus_message*;

    static DaemonObject& object(void* self) { return *static_cast<DaemonObject*>(self); }
    static Core& core(void* self) { return object(self).m_state.core; }

    static int updateCfg(Call call, void* self, sd_bus_error* /*error*/) {
        const void* bytes = nullptr;
        std::size_t size = 0;
        if (const int result = ::sd_bus_message_read_array(call, 'y', &bytes, &size); result < 0)
            return result;
        DaemonState& state = object(self).m_state;
        const auto taken =
            state.core.updateCfg(ByteView(static_cast<const std::uint8_t*>(bytes), size));
        if (taken)
            state.callbackPeer = &object(self).m_peer;
        else
            state.log.error("a configuration was refused: " +
                            withoutQuotations(taken.error().description()));
        return object(self).replyBool(call, taken.has_value());
    }

    static int getStatus(Call call, void* self, sd_bus_error* /*error*/) {
        const Status status = core(self).status();
        return ::sd_bus_reply_method_return(call, protocol::getStatus.reply, int{status.isGrabbing},
                                            int{status.driverConnected},
                                            std::string(status.text).c_str());
    }

    static int getVersion(Call call, void* /*self*/, sd_bus_error* /*error*/) {
        return ::sd_bus_reply_method_return(call, protocol::getVersion.reply, TAMSEL_BUILD_NUMBER);
    }

    static int stopGrabbing(Call call, void* self, sd_bus_error* /*error*/) {
        return object(self).replyBool(call, core(self).stopGrabbing());
    }

    static int startGrabbing(Call call, void* self, sd_bus_error* /*error*/) {
        return object(self).replyBool(call, core(self).startGrabbing());
    }

    static int subscribeKeyViewer(Call call, void* self, sd_bus_error* /*error*/) {
        object(self).m_isSubscribed = true;
        return object(self).replyBool(call, true);
    }

    static int unsubscribeKeyViewer(Call call, void* self, sd_bus_error* /*error*/) {
        object(self).m_isSubscribed = false;
        return object(self).replyBool(call, true);
    }

    static int getSeenDevices(Call call, void* self, sd_bus_error* /*error*/) {
        const std::string json = encodeSeenDevices(core(self).seenDevices());
        sd_bus_message* reply = nullptr;
        int result = ::sd_bus_message_new_method_return(call, &reply);
        if (result >= 0)
            result = ::sd_bus_message_append_array(reply, 'y', json.data(), json.size());
        if (result >= 0)
            result = ::sd_bus_send(nullptr, reply, nullptr);
        ::sd_bus_message_unref(reply);
        object(self).m_peer.countSent(json.size());
        return result;
    }
};

namespace {

constexpr sd_bus_vtable method(const protocol::Method& names, sd_bus_message_handler_t handler) {
    // Access is checked for each call by the connection, on the peer's identity.
    return SD_BUS_METHOD(names.name, names.arguments, names.reply, handler,
                         SD_BUS_VTABLE_UNPRIVILEGED);
}

const std::array daemonVtable{
    sd_bus_vtable(SD_BUS_VTABLE_START(0)),
    method(protocol::updateCfg, DaemonMethods::updateCfg),
    method(protocol::getStatus, DaemonMethods::getStatus),
    method(protocol::getVersion, DaemonMethods::getVersion),
    method(protocol::stopGrabbing, DaemonMethods::stopGrabbing),
    method(protocol::startGrabbing, DaemonMethods::startGrabbing),
    method(protocol::subscribeKeyViewer, DaemonMethods::subscribeKeyViewer),
    method(protocol::unsubscribeKeyViewer, DaemonMethods::unsubscribeKeyViewer),
    method(protocol::getSeenDevices, DaemonMethods::getSeenDevices),
    sd_bus_vtable(SD_BUS_VTABLE_END),
};

} // namespace

Result<void> DaemonObject::add() {
    const int result =
        ::sd_bus_add_object_vtable(m_peer.bus(), nullptr, protocol::daemonPath,
                                   protocol::daemonInterface, daemonVtable.data(), this);
    if (result < 0)
        return fail("the daemon's object cannot be served: " +
                    std::generic_category().message(-result));
    return {};
}

void DaemonObject::send(const KeyEvent& event) {
    sd_bus_message* call = nullptr;
    int result =
        ::sd_bus_message_new_method_call(m_peer.bus(), &call, nullptr, protocol::appPath,
                                         protocol::appInterface, protocol::onKeyEvent.name);
    if (result >= 0)
        result = ::sd_bus_message_set_expect_reply(call, 0);
    if (result >= 0)
        result = ::sd_bus_message_append(call, protocol::onKeyEvent.arguments, event.usage,
                                         int{event.keyDown}, event.action, event.outputUsage,
                                         int{event.fromApple});
    if (result >= 0)
        ::sd_bus_send(nullptr, call, nullptr);
    ::sd_bus_message_unref(call);
    m_peer.countSent(sizeof event);
}

int DaemonObject::replyBool(sd_bus_message* call, bool answer) {
    return ::sd_bus_reply_method_return(call, "b", int{answer});
}

} // namespace tamsel
