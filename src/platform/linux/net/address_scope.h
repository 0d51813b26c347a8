#pragma once

#include <QHostAddress>

namespace tamsel {

/// How far away an address is, nearest first.
enum class AddressScope {
    loopback, ///< this machine
    local,    ///< private, link-local, shared, multicast and other networks that are no part of the
              ///< internet (RFC 6890)
    internet,
};

/// An IPv4 address inside an IPv6 one counts as what it is.
AddressScope scopeOf(const QHostAddress& address);

} // namespace tamsel
