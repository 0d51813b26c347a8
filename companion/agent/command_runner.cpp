#include "agent/command_runner.h"

#include "base/process.h"
#include "protocol/daemon_protocol.h"

namespace tamsel {

CommandRunner::~CommandRunner() {
    for (sd_event_source* const source : m_running)
        ::sd_event_source_disable_unref(source);
}

bool CommandRunner::run(const std::string& command) {
    if (command.empty() || command.size() > protocol::maxCommandSize ||
        command.find('\0') != std::string::npos || m_running.size() >= maxRunning)
        return false;
    const auto pid = spawn({.program = "/bin/sh", .arguments = {"-c", "--", command}});
    if (!pid)
        return false;
    sd_event_source* source = nullptr;
    if (::sd_event_add_child(m_loop, &source, *pid, WEXITED, onExit, this) < 0) {
        // It could never be reaped.
        ::kill(-*pid, SIGKILL);
        reap(*pid);
        return false;
    }
    m_running.insert(source);
    return true;
}

int CommandRunner::onExit(sd_event_source* source, const siginfo_t* /*info*/, void* self) {
    // The loop reaps the process once this has returned.
    static_cast<CommandRunner*>(self)->m_running.erase(source);
    ::sd_event_source_unref(source);
    return 0;
}

} // namespace tamsel
