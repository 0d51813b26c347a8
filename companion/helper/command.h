#pragma once

#include <span>
#include <string>
#include <vector>

namespace tamsel::driver {

enum class CommandEnd { succeeded, failed, timedOut, notStarted };

/// Where a system program may be; the first that is there is taken.
inline constexpr const char* modprobe[] = {"/usr/sbin/modprobe", "/sbin/modprobe"};
inline constexpr const char* udevadm[] = {"/usr/bin/udevadm", "/bin/udevadm"};

/// Runs a system program silently, with a fixed environment, for at most 20 seconds; one that takes
/// longer is killed and left to the system.
CommandEnd runCommand(std::span<const char* const> places, std::vector<std::string> arguments);

} // namespace tamsel::driver
