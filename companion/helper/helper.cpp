#include "helper/helper.h"

#include "base/unique_fd.h"
#include "helper/access_rule.h"
#include "helper/command.h"
#include "helper/device_access.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <fstream>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace tamsel::driver {

namespace {

/// Another helper that is merely at work is soon done; one that isn't is stuck.
bool lockInTime(int fd) {
    constexpr int tries = 30;
    constexpr timespec pause{0, 100'000'000};
    for (int i = 0; i < tries; ++i) {
        if (::flock(fd, LOCK_EX | LOCK_NB) == 0)
            return true;
        ::nanosleep(&pause, nullptr);
    }
    return false;
}

/// Held until the process ends, also a killed one's.
HelperOutcome takeLock(UniqueFd& lock) {
    const std::string file = underRoot("/run/tamsel-driver.lock");
    lock = UniqueFd(::open(file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!lock.isOpen())
        return {helperInternalFailure,
                "the lock file can't be made: " + std::generic_category().message(errno)};
    if (!lockInTime(lock.get()))
        return {helperBusy, "another process that sets up the driver is stuck"};
    return {};
}

bool nodeExists() {
    return ::access(underRoot(uinputNode).c_str(), F_OK) == 0;
}

/// "live" once it is loaded; "coming" and "going" on the way.
std::string moduleState() {
    std::ifstream file(underRoot("/sys/module/uinput/initstate"));
    std::string state;
    file >> state;
    return state;
}

/// Has udev read its rules again and apply them to the device that is there. False without a
/// running udev.
bool applyRules() {
    if (runCommand(udevadm, {"control", "--reload"}) != CommandEnd::succeeded)
        return false;
    return !nodeExists() || runCommand(udevadm, {"trigger", "--action=add", "--settle",
                                                 std::string("--name-match=") + uinputNode}) ==
                                CommandEnd::succeeded;
}

} // namespace

HelperOutcome loadDriver() {
    UniqueFd lock;
    if (auto outcome = takeLock(lock); outcome.status != helperDone)
        return outcome;
    if (nodeExists())
        return {};
    if (const std::string state = moduleState(); state == "coming" || state == "going")
        return {helperBusy, "the kernel is in the middle of changing the uinput driver"};
    switch (runCommand(modprobe, {"-q", "uinput"})) {
    case CommandEnd::succeeded:
        return {};
    case CommandEnd::failed:
        return {helperNoDriver, "the uinput driver can't be loaded into this kernel"};
    case CommandEnd::timedOut:
        return {helperBusy, "loading the uinput driver doesn't come to an end"};
    case CommandEnd::notStarted:
        break;
    }
    return {helperInternalFailure, "modprobe can't be started"};
}

HelperOutcome grantAccess() {
    UniqueFd lock;
    if (auto outcome = takeLock(lock); outcome.status != helperDone)
        return outcome;
    if (const auto installed = installAccessRule(); !installed)
        return {helperRuleFailed, installed.error().description()};
    if (applyRules() || !nodeExists())
        return {};
    if (const auto given = giveNodeToGroup(underRoot(uinputNode), daemonGroup); !given)
        return {helperAccessFailed, given.error().description()};
    return {};
}

HelperOutcome revokeAccess() {
    UniqueFd lock;
    if (auto outcome = takeLock(lock); outcome.status != helperDone)
        return outcome;
    if (const auto removed = removeAccessRule(); !removed)
        return {helperRuleFailed, removed.error().description()};
    // Taken back here, as udev may not run; what other rules grant, it grants again.
    const auto taken = takeNodeBack(underRoot(uinputNode));
    applyRules();
    if (!taken)
        return {helperAccessFailed, taken.error().description()};
    return {};
}

} // namespace tamsel::driver
