#pragma once

#include <csignal>
#include <cstddef>
#include <string>
#include <systemd/sd-event.h>
#include <unordered_set>

namespace tamsel {

/// Runs shell commands, each in a session and process group of its own, without input and with its
/// output thrown away, no signal blocked or ignored and no descriptor inherited. Ended ones are
/// reaped by the loop; what still runs when the runner goes, goes on running.
class CommandRunner final {
public:
    static constexpr std::size_t maxRunning = 256;

    /// The process must have SIGCHLD blocked; the loop outlives the runner.
    explicit CommandRunner(sd_event* loop) : m_loop(loop) {}
    CommandRunner(const CommandRunner&) = delete;
    CommandRunner& operator=(const CommandRunner&) = delete;
    ~CommandRunner();

    /// Hands the command to /bin/sh. True when the shell was started; false for an empty command,
    /// one with a NUL in it or longer than protocol::maxCommandSize, while maxRunning are running,
    /// and when the system has no process to spare.
    bool run(const std::string& command);

private:
    static int onExit(sd_event_source* source, const siginfo_t* info, void* self);

    sd_event* m_loop;
    std::unordered_set<sd_event_source*> m_running;
};

} // namespace tamsel
