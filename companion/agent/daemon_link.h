#pragma once

#include "base/error.h"
#include "program/log.h"

#include <chrono>
#include <functional>
#include <string>
#include <systemd/sd-bus.h>
#include <systemd/sd-event.h>

namespace tamsel {

/// The agent's connection to the daemon: announces the agent and passes on what the daemon wants
/// run. However it ends or fails, another is made a while later, for as long as it takes.
class DaemonLink final {
public:
    static constexpr std::chrono::milliseconds retryDelay{1500};

    /// Called with a command; whether it was started.
    using RunCommand = std::function<bool(const std::string&)>;

    /// The loop and the log outlive the link.
    DaemonLink(sd_event* loop, const Log& log, RunCommand runCommand);
    DaemonLink(const DaemonLink&) = delete;
    DaemonLink& operator=(const DaemonLink&) = delete;
    ~DaemonLink();

    /// Makes the first attempt; a daemon that cannot be reached is no failure.
    Result<void> start();

private:
    friend struct AgentMethods;

    static int onRetry(sd_event_source* source, std::uint64_t time, void* self);
    static int onMessage(sd_bus_message* message, void* self, sd_bus_error* error);
    static int onRegistered(sd_bus_message* answer, void* self, sd_bus_error* error);

    void attempt();
    Result<void> connect();
    void disconnect();
    void fallBack(const std::string& trouble);

    sd_event* m_loop;
    const Log& m_log;
    RunCommand m_runCommand;
    sd_event_source* m_retry = nullptr;
    sd_bus* m_bus = nullptr;
    std::string m_lastTrouble; ///< as logged; the same again is no news
};

} // namespace tamsel
