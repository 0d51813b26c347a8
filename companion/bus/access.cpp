#include "bus/access.h"

#include "program/system_account.h"

#include <systemd/sd-login.h>
#include <unistd.h>

namespace tamsel {

bool mayTalk(uid_t user) {
    constexpr int activeOnly = 1;
    // Only a session at a seat is local; a remote login is "active" as long as it lasts.
    return user == ::geteuid() || ::sd_uid_get_seats(user, activeOnly, nullptr) > 0;
}

std::optional<uid_t> commandUser() {
    if (::geteuid() != systemAccount())
        return ::geteuid();
    uid_t user = 0;
    return ::sd_seat_get_active("seat0", nullptr, &user) >= 0 ? std::optional(user) : std::nullopt;
}

} // namespace tamsel
