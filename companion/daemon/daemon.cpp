#include "daemon/daemon.h"

#include "bus/access.h"
#include "bus/bus_server.h"
#include "bus/listener.h"
#include "bus/sleep_watch.h"
#include "core/core.h"
#include "devices/kernel_devices.h"
#include "program/event_loop.h"
#include "program/log.h"
#include "protocol/socket_path.h"
#include "simulation/obedient_devices.h"
#include "simulation/simulated_devices.h"

#include <optional>
#include <sys/epoll.h>
#include <systemd/sd-event.h>

namespace tamsel {

namespace {

struct Simulation {
    SimulatedDevices devices;
    SimulatedOutput output;
};

Result<Simulation> openSimulation(const std::string& folder) {
    auto devices = SimulatedDevices::open(folder);
    if (!devices)
        return tl::unexpected(devices.error());
    auto output = SimulatedOutput::open(folder);
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

/// What the daemon is made of beside its devices.
struct House {
    sd_event* loop;
    Listener& listener;
    OrderMemory& memory;
    const Log& log;

    Core::Complain complain() const {
        return [this](const Error& error) { log.error(error.description()); };
    }
};

Result<void> runLoop(const House& house, Core& core) {
    const int result = ::sd_event_loop(house.loop);
    core.shutDown();
    return result < 0 ? Result<void>(loopError(result)) : Result<void>();
}

Result<void> runSimulated(const House& house, const std::string& folder) {
    auto simulation = openSimulation(folder);
    if (!simulation)
        return tl::unexpected(simulation.error());
    Core core(simulation->output, house.memory, house.complain());
    ObedientDevices control(core);
    core.setAccess({NodeAccess::ok, NodeAccess::ok});
    for (const SeenDeviceInfo& device : simulation->devices.devices())
        core.addDevice(core.newIndex(), device);
    BusServer server(house.loop, house.listener, core, house.log, mayTalk);
    if (auto started = server.start(); !started)
        return started;
    InputPump pump{simulation->devices, core, server};
    if (auto attached = pump.attach(house.loop); !attached)
        return attached;
    auto run = runLoop(house, core);
    return pump.failure ? tl::unexpected(*pump.failure) : run;
}

Result<void> runOnMachine(const House& house, VirtualDevices virtualDevices) {
    const EvdevNodes nodes("/sys", virtualDevices);
    KernelDevices devices(house.loop, nodes,
                          [&house](const std::string& line) { house.log.info(line); });
    Core core(devices.output(), house.memory, house.complain());
    BusServer server(house.loop, house.listener, core, house.log, mayTalk);
    if (auto started = server.start(); !started)
        return started;
    const auto publish = [&server](const KeyEvent& event) { server.publish(event); };
    if (auto started = devices.start(core, publish); !started)
        return started;
    const SleepWatch sleep(house.loop, [&](bool isAboutToSleep) {
        core.setAsleep(isAboutToSleep);
        if (!isAboutToSleep)
            devices.lookAgain();
    });
    auto run = runLoop(house, core);
    core.setDeviceControl(nullptr);
    return run;
}

} // namespace

Result<void> runDaemon(const Options& options) {
    auto loop = makeLoop();
    if (!loop)
        return tl::unexpected(loop.error());
    const auto stateFolder =
        options.stateFolder ? Result<std::string>(*options.stateFolder) : defaultStateFolder();
    if (!stateFolder)
        return tl::unexpected(stateFolder.error());
    auto listener = Listener::open(protocol::daemonAddress());
    if (!listener)
        return tl::unexpected(listener.error());
    const Log log = Log::system("daemon");
    FileOrderMemory memory(*stateFolder);
    const House house{loop->get(), *listener, memory, log};
    return options.simulationFolder ? runSimulated(house, *options.simulationFolder)
                                    : runOnMachine(house, options.virtualDevices);
}

} // namespace tamsel
