#include "agent/agent.h"

#include "agent/agent_lock.h"
#include "agent/command_runner.h"
#include "agent/daemon_link.h"
#include "program/event_loop.h"
#include "program/log.h"
#include "program/socket_name.h"
#include "protocol/socket_path.h"

#include <cstdlib>
#include <unistd.h>

namespace tamsel {

namespace {

/// Commands start in the user's home, wherever the agent was started.
Result<void> goHome() {
    const char* const home = std::getenv("HOME");
    if ((home && ::chdir(home) == 0) || ::chdir("/") == 0)
        return {};
    return fail("there is no folder to run commands in");
}

} // namespace

Result<void> runAgent() {
    if (const auto name = socketName(protocol::daemonAddress()); !name)
        return tl::unexpected(name.error());
    const std::string runtimeFolder = protocol::userRuntimeFolder();
    if (runtimeFolder.empty())
        return fail("there is no runtime folder of this user's own");
    const auto lock = AgentLock::acquire(runtimeFolder + "/tamsel");
    if (!lock)
        return tl::unexpected(lock.error());
    if (auto home = goHome(); !home)
        return home;
    auto loop = makeLoop();
    if (!loop)
        return tl::unexpected(loop.error());
    const Log log = Log::system("agent");
    CommandRunner commands(loop->get());
    DaemonLink link(loop->get(), log,
                    [&commands](const std::string& command) { return commands.run(command); });
    if (auto started = link.start(); !started)
        return started;
    if (const int result = ::sd_event_loop(loop->get()); result < 0)
        return loopError(result);
    return {};
}

} // namespace tamsel
