#include "program/system_account.h"

#include "protocol/daemon_protocol.h"

#include <pwd.h>

namespace tamsel {

std::optional<uid_t> systemAccount() {
    const passwd* const entry = ::getpwnam(protocol::systemUser);
    return entry ? std::optional(entry->pw_uid) : std::nullopt;
}

} // namespace tamsel
