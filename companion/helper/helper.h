#pragma once

#include "protocol/driver_helper.h"

#include <string>
#include <string_view>

namespace tamsel::driver {

/// The system's root folder: "" in the program that is installed.
inline constexpr auto systemRoot = std::string_view(TAMSEL_HELPER_ROOT);

inline std::string underRoot(std::string_view path) {
    return std::string(systemRoot).append(path);
}

/// How a command ended, and one line for a person when it is not helperDone.
struct HelperOutcome {
    HelperStatus status = helperDone;
    std::string message = {};
};

/// The three things that the helper does, each under a lock of the whole machine: helperBusy when
/// another helper is at work or the kernel is in the middle of changing the driver.
HelperOutcome loadDriver();
HelperOutcome grantAccess();
HelperOutcome revokeAccess();

} // namespace tamsel::driver
