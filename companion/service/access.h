#pragma once

#include <sys/types.h>

namespace tamsel {

/// Whether a user may talk to the daemon: the daemon's own user, or one who holds the active local
/// session. Asks logind's state files, so it costs a file or two for a stranger.
bool mayTalk(uid_t user);

} // namespace tamsel
