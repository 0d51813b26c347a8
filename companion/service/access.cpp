#include "service/access.h"

#include <systemd/sd-login.h>
#include <unistd.h>

namespace tamsel {

bool mayTalk(uid_t user) {
    constexpr int activeOnly = 1;
    // Only a session at a seat is local; a remote login is "active" as long as it lasts.
    return user == ::geteuid() || ::sd_uid_get_seats(user, activeOnly, nullptr) > 0;
}

} // namespace tamsel
