#include "bus/bus_driver_object.h"

#include "protocol/daemon_protocol.h"

#include <array>
#include <string>
#include <string_view>
#include <system_error>

namespace tamsel {

namespace {

constexpr const char* driverPath = "/org/freedesktop/DBus";
constexpr const char* driverInterface = "org.freedesktop.DBus";
constexpr const char* daemonUniqueName = ":1.0";
constexpr const char* peerUniqueName = ":1.1";

using Call = sd_bus_message*;

/// Null when nobody has the name.
const char* ownerOf(std::string_view name) {
    if (name == protocol::serviceName || name == daemonUniqueName)
        return daemonUniqueName;
    if (name == driverInterface)
        return driverInterface;
    return name == peerUniqueName ? peerUniqueName : nullptr;
}

int hello(Call call, void* /*self*/, sd_bus_error* /*error*/) {
    return ::sd_bus_reply_method_return(call, "s", peerUniqueName);
}

int ignoreMatch(Call call, void* /*self*/, sd_bus_error* /*error*/) {
    return ::sd_bus_reply_method_return(call, "");
}

int nameHasOwner(Call call, void* /*self*/, sd_bus_error* /*error*/) {
    const char* name = nullptr;
    if (const int result = ::sd_bus_message_read(call, "s", &name); result < 0)
        return result;
    return ::sd_bus_reply_method_return(call, "b", int{ownerOf(name) != nullptr});
}

int getNameOwner(Call call, void* /*self*/, sd_bus_error* error) {
    const char* name = nullptr;
    if (const int result = ::sd_bus_message_read(call, "s", &name); result < 0)
        return result;
    if (const char* const owner = ownerOf(name))
        return ::sd_bus_reply_method_return(call, "s", owner);
    return ::sd_bus_error_set(error, SD_BUS_ERROR_NAME_HAS_NO_OWNER, "The name has no owner");
}

int getId(Call call, void* /*self*/, sd_bus_error* /*error*/) {
    sd_id128_t id{};
    if (const int result = ::sd_bus_get_bus_id(::sd_bus_message_get_bus(call), &id); result < 0)
        return result;
    std::array<char, SD_ID128_STRING_MAX> text{};
    return ::sd_bus_reply_method_return(call, "s", ::sd_id128_to_string(id, text.data()));
}

const std::array driverVtable{
    sd_bus_vtable(SD_BUS_VTABLE_START(0)),
    sd_bus_vtable(SD_BUS_METHOD("Hello", "", "s", hello, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_METHOD("AddMatch", "s", "", ignoreMatch, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_METHOD("RemoveMatch", "s", "", ignoreMatch, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(
        SD_BUS_METHOD("NameHasOwner", "s", "b", nameHasOwner, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(
        SD_BUS_METHOD("GetNameOwner", "s", "s", getNameOwner, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_METHOD("GetId", "", "s", getId, SD_BUS_VTABLE_UNPRIVILEGED)),
    sd_bus_vtable(SD_BUS_VTABLE_END),
};

} // namespace

Result<void> addBusDriverObject(sd_bus* bus) {
    const int result = ::sd_bus_add_object_vtable(bus, nullptr, driverPath, driverInterface,
                                                  driverVtable.data(), nullptr);
    if (result < 0)
        return fail("the bus object cannot be served: " + std::generic_category().message(-result));
    return {};
}

} // namespace tamsel
