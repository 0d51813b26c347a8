#include "daemon/daemon.h"

#include "daemon/machine_devices.h"
#include "protocol/socket_path.h"
#include "simulation/simulated_devices.h"
#include "bus/access.h"
#include "bus/bus_server.h"
#include "core/core.h"
#include "program/event_loop.h"
#include "bus/listener.h"
#include "program/log.h"

#include <optional>
#include <sys/epoll.h>
#include <systemd/sd-event.h>

namespace tamsel {

namespace {

struct Simulation {
    SimulatedDevices devices;
    SimulatedOutput output;
};

Result<std::optional<Simulation>> openSimulation(const std::optional<std::string>& folder) {
    if (!folder)
        return std::nullopt;
    auto devices = SimulatedDevices::open(*folder);
    if (!devices)
        return tl::unexpected(devices.error());
    auto output = SimulatedOutput::open(*folder);
    if (!output)
        return tl::unexpected(output.error());
    return Simulation{std::move(*devices), std::move(*output)};
}

/// Feeds the simulated devices' events to the core.
struct InputPump {
    SimulatedDevices& devices;
    Core& core;
    BusServer& server;
    std::optional<Error> failure = std::nullopt;

    Result<void> attach(sd_event* loop) {
        sd_event_source* source = nullptr;
        // Of the clients' priority: the loop takes turns, so that a script of any length starves no
        // client and a client that calls without end delays a key by a call at most.
        int result = ::sd_event_add_io(loop, &source, devices.fd(), EPOLLIN, onReadable, this);
        if (result >= 0)
            result = ::sd_event_source_set_floating(source, 1);
        ::sd_event_source_unref(source);
        if (result < 0)
            return loopError(result);
        return {};
    }

    static int onReadable(sd_event_source* source, int /*fd*/, std::uint32_t /*events*/,
                          void* self) {
        auto* const pump = static_cast<InputPump*>(self);
        const auto read = pump->devices.read(
            [pump](const SimulatedLine& line) {
                if (!line.event)
                    return;
                if (const auto seen = pump->core.handle(*line.event))
                    pump->server.publish(*seen);
            },
            [](const Error& error) { Log::standardError().error(error.description()); });
        if (read)
            return 0;
        pump->failure = read.error();
        return ::sd_event_exit(::sd_event_source_get_event(source), 1);
    }
};

} // namespace

Result<void> runDaemon(const Options& options) {
    auto loop = makeLoop();
    if (!loop)
        return tl::unexpected(loop.error());
    const auto stateFolder =
        options.stateFolder ? Result<std::string>(*options.stateFolder) : defaultStateFolder();
    if (!stateFolder)
        return tl::unexpected(stateFolder.error());
    auto simulation = openSimulation(options.simulationFolder);
    if (!simulation)
        return tl::unexpected(simulation.error());
    auto listener = Listener::open(protocol::daemonAddress());
    if (!listener)
        return tl::unexpected(listener.error());

    const Log log = Log::system("daemon");
    FileOrderMemory memory(*stateFolder);
    auto& simulated = *simulation;
    Core core(simulated ? &simulated->output : nullptr, memory,
              simulated ? simulated->devices.devices() : std::vector<SeenDeviceInfo>(),
              [&log](const Error& error) { log.error(error.description()); });
    BusServer server(loop->get(), *listener, core, log, mayTalk);
    if (auto started = server.start(); !started)
        return started;
    std::optional<InputPump> pump;
    if (simulated) {
        pump.emplace(InputPump{simulated->devices, core, server});
        if (auto attached = pump->attach(loop->get()); !attached)
            return attached;
    }
    std::optional<MachineDevices> machine;
    if (!simulated) {
        machine.emplace(core, log);
        if (auto started = machine->start(loop->get()); !started)
            return started;
    }
    const int result = ::sd_event_loop(loop->get());
    core.shutDown();
    if (pump && pump->failure)
        return tl::unexpected(*pump->failure);
    if (result < 0)
        return loopError(result);
    return {};
}

} // namespace tamsel
