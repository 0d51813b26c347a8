#include "helper/command.h"

#include "base/process.h"
#include "base/unique_fd.h"
#include "helper/helper.h"

#include <csignal>
#include <unistd.h>

namespace tamsel::driver {

namespace {

constexpr std::chrono::seconds limit{20};

std::string firstThere(std::span<const char* const> places) {
    for (const char* place : places) {
        if (std::string path = underRoot(place); ::access(path.c_str(), X_OK) == 0)
            return path;
    }
    return {};
}

} // namespace

CommandEnd runCommand(std::span<const char* const> places, std::vector<std::string> arguments) {
    const std::string program = firstThere(places);
    if (program.empty())
        return CommandEnd::notStarted;
    // In the caller's session, so that what ends the helper ends its command.
    const auto started = spawn(
        {.program = program,
         .arguments = std::move(arguments),
         .environment = std::vector<std::string>{"PATH=/usr/sbin:/usr/bin:/sbin:/bin", "LC_ALL=C"},
         .session = ChildProgram::Session::callers});
    if (!started)
        return CommandEnd::notStarted;
    // On a kernel without descriptors of processes the wait has no limit.
    if (const UniqueFd process = openProcess(*started);
        process.isOpen() && !hasEndedWithin(process, limit)) {
        ::kill(*started, SIGKILL);
        return CommandEnd::timedOut;
    }
    return reap(*started) == 0 ? CommandEnd::succeeded : CommandEnd::failed;
}

} // namespace tamsel::driver
