#include "bus_client.h"

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

namespace vm::bus {

namespace {

constexpr const char* interface = "app.tamsel.TamselDaemonProtocol";
sd_bus* connection = nullptr;

int onKeyEvent(sd_bus_message* call, void* /*self*/, sd_bus_error* /*error*/) {
    std::uint32_t usage = 0;
    std::uint32_t output = 0;
    int down = 0;
    int apple = 0;
    std::uint8_t action = 0;
    if (::sd_bus_message_read(call, "ubyub", &usage, &down, &action, &output, &apple) >= 0)
        say("@key " + std::to_string(usage) + " " + std::to_string(down) + " " +
            std::to_string(action) + " " + std::to_string(output));
    return ::sd_bus_reply_method_return(call, "");
}

const sd_bus_vtable callbacks[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("onKeyEvent", "ubyub", "", onKeyEvent, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END,
};

std::vector<std::uint8_t> bytes(const std::string& hex) {
    std::vector<std::uint8_t> out;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        out.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    return out;
}

std::string values(sd_bus_message* reply) {
    std::string text;
    for (const char* type = ::sd_bus_message_get_signature(reply, 1); *type != '\0'; ++type) {
        const char* string = nullptr;
        const void* array = nullptr;
        std::size_t size = 0;
        int truth = 0;
        text += text.empty() ? "" : " ";
        if (*type == 'a') {
            ::sd_bus_message_read_array(reply, 'y', &array, &size);
            text.append(static_cast<const char*>(array), size);
            ++type;
        } else if (*type == 's') {
            ::sd_bus_message_read_basic(reply, 's', &string);
            text += string;
        } else {
            ::sd_bus_message_read_basic(reply, *type, &truth);
            text += truth != 0 ? "true" : "false";
        }
    }
    return text;
}

} // namespace

std::string connect(const Words& words) {
    ::sd_bus_close_unref(connection);
    connection = nullptr;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, words.at(1).c_str(), sizeof address.sun_path - 1);
    // The daemon may be about to open its socket.
    for (int tries = 0; tries < 500; ++tries) {
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            ::close(socket);
            ::usleep(10000);
            continue;
        }
        ::sd_bus_new(&connection);
        ::sd_bus_set_fd(connection, socket, socket);
        require(::sd_bus_start(connection) >= 0, "sd_bus_start");
        ::sd_bus_add_object_vtable(connection, nullptr, "/app/tamsel/app",
                                   "app.tamsel.TamselAppCallbackProtocol", callbacks, nullptr);
        return "";
    }
    throw Failure{"nobody listens"};
}

std::string call(const Words& words) {
    sd_bus_message* call = nullptr;
    sd_bus_message* reply = nullptr;
    sd_bus_error error{};
    if (!connection)
        throw Failure{"not connected"};
    ::sd_bus_message_new_method_call(connection, &call, nullptr, "/app/tamsel/daemon", interface,
                                     words.at(1).c_str());
    if (words.size() > 2) {
        const auto argument = bytes(words[2]);
        ::sd_bus_message_append_array(call, 'y', argument.data(), argument.size());
    }
    constexpr std::uint64_t patience = 15'000'000;
    const int result = ::sd_bus_call(connection, call, patience, &error, &reply);
    ::sd_bus_message_unref(call);
    if (result < 0)
        throw Failure{error.message ? error.message : std::strerror(-result)};
    std::string text = values(reply);
    ::sd_bus_message_unref(reply);
    return text;
}

int fd() {
    return connection ? ::sd_bus_get_fd(connection) : -1;
}

void process() {
    while (connection && ::sd_bus_process(connection, nullptr) > 0) {
    }
    if (connection && ::sd_bus_is_open(connection) <= 0) {
        ::sd_bus_close_unref(connection);
        connection = nullptr;
    }
}

} // namespace vm::bus
