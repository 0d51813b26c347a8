// The daemon's bus, with a standard input in place of combos: each line "USER COMMAND" is handed to
// that user's agent, and what became of it is printed as "true" or "false".

#include "bus/access.h"
#include "bus/bus_server.h"
#include "program/event_loop.h"
#include "protocol/socket_path.h"

#include <charconv>
#include <cstdio>
#include <sys/epoll.h>
#include <unistd.h>

namespace {

using namespace tamsel;

class NoMemory final : public OrderMemory {
public:
    Order load() const override { return Order::start; }
    Result<void> save(Order /*order*/) override { return {}; }
};

class NoOutput final : public VirtualDevice {
public:
    Result<void> write(std::span<const engine::OutputEvent> /*events*/) override { return {}; }
};

struct Input {
    BusServer& server;
    std::string pending = {};

    void obey(const std::string& line) {
        uid_t user = 0;
        const auto end = std::from_chars(line.data(), line.data() + line.size(), user).ptr;
        const auto command = line.substr(static_cast<std::size_t>(end - line.data()) + 1);
        std::puts(server.runCommand(user, command) ? "true" : "false");
        std::fflush(stdout);
    }

    static int onReadable(sd_event_source* source, int fd, std::uint32_t /*events*/, void* self) {
        auto& input = *static_cast<Input*>(self);
        std::array<char, 65536> buffer{};
        const ssize_t count = ::read(fd, buffer.data(), buffer.size());
        if (count <= 0)
            return ::sd_event_exit(::sd_event_source_get_event(source), 0);
        input.pending.append(buffer.data(), static_cast<std::size_t>(count));
        for (std::size_t end = 0; (end = input.pending.find('\n')) != std::string::npos;) {
            input.obey(input.pending.substr(0, end));
            input.pending.erase(0, end + 1);
        }
        return 0;
    }
};

Result<void> run() {
    auto loop = makeLoop();
    auto listener = Listener::open(protocol::daemonAddress());
    if (!listener)
        return tl::unexpected(listener.error());
    NoMemory memory;
    const Log log = Log::standardError();
    NoOutput output;
    Core core(output, memory, [&log](const Error& error) { log.error(error.description()); });
    BusServer server(loop->get(), *listener, core, log, mayTalk);
    if (auto started = server.start(); !started)
        return started;
    Input input{server};
    if (const int result = ::sd_event_add_io(loop->get(), nullptr, STDIN_FILENO, EPOLLIN,
                                             Input::onReadable, &input);
        result < 0)
        return loopError(result);
    ::sd_event_loop(loop->get());
    return {};
}

} // namespace

int main() {
    const auto result = run();
    if (result)
        return 0;
    std::fprintf(stderr, "%s\n", result.error().description().c_str());
    return 1;
}
