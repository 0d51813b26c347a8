#pragma once

#include <optional>
#include <sys/types.h>

namespace tamsel {

/// Whether a user may talk to the daemon: the daemon's own user, or one who holds the active local
/// session. Asks logind's state files, so it costs a file or two for a stranger.
bool mayTalk(uid_t user);

/// Whose agent runs the commands of combos: the daemon's own user, or for the system-wide daemon
/// the user of the session that is active at the machine's first seat, if there is one.
std::optional<uid_t> commandUser();

} // namespace tamsel
