#pragma once

#include "protocol/access_rule_text.h"

#include <string_view>

/// What the application and its privileged helper agree on.
namespace tamsel::driver {

/// By this name the helper's process is found when it is stuck.
inline constexpr const char* driverIdentifier = "app.tamsel.driver.virtualhid";
inline constexpr const char* helperProgram = "tamsel-driver-helper";

/// The helper's one argument.
inline constexpr const char* loadCommand = "load";     ///< loads the kernel's driver
inline constexpr const char* grantCommand = "grant";   ///< installs the access rule, applies it
inline constexpr const char* revokeCommand = "revoke"; ///< removes the rule, takes access back

/// The helper's exit statuses. 126 and 127 are those of the program that authorizes it.
enum HelperStatus : int {
    helperDone = 0,
    helperMisused = 2,         ///< not exactly one of the three arguments
    helperNotPrivileged = 3,   ///< not run as root
    helperNoDriver = 4,        ///< the running kernel has no such driver
    helperRuleFailed = 5,      ///< the access rule can't be written or removed
    helperAccessFailed = 6,    ///< the rule is in place, the device that is there is unchanged
    helperInternalFailure = 7, ///< the helper can't work here at all
    helperBusy = 11,           ///< another process holds the driver
};

/// Where the rule is installed, and its name in the folders of packages.
inline constexpr const char* accessRuleFile = "/etc/udev/rules.d/60-tamsel-uinput.rules";
inline constexpr const char* packagedRuleFile = "/usr/lib/udev/rules.d/60-tamsel-uinput.rules";
inline constexpr const char* uinputNode = "/dev/uinput";
/// The group of the system daemon's user; the rule gives it access.
inline constexpr const char* daemonGroup = "tamsel";

/// The version in a rule file's first line ("# tamsel-access VERSION"); "0" for a file without
/// one. Letters, digits and dots, at most 32.
constexpr std::string_view accessRuleVersion(std::string_view text) {
    constexpr std::string_view stamp = "# tamsel-access ";
    const std::string_view line = text.substr(0, text.find('\n'));
    if (!line.starts_with(stamp))
        return "0";
    const std::string_view version = line.substr(stamp.size());
    const bool plain = version.find_first_not_of("0123456789abcdefghijklmnopqrstuvwxyz"
                                                 "ABCDEFGHIJKLMNOPQRSTUVWXYZ.") == version.npos;
    return plain && !version.empty() && version.size() <= 32 ? version : "0";
}

} // namespace tamsel::driver
