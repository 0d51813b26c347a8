#pragma once

#include <optional>
#include <sys/types.h>

namespace tamsel {

/// The user id of the system-wide daemon's account; nothing when this machine has none.
std::optional<uid_t> systemAccount();

} // namespace tamsel
