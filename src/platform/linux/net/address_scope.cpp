#include "platform/linux/net/address_scope.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tamsel {

namespace {

using Network = std::pair<QHostAddress, int>;

bool isIn(const QHostAddress& address, const Network& network) {
    return address.protocol() == network.first.protocol() && address.isInSubnet(network);
}

const std::array<Network, 23>& localNetworks() {
    static const auto networks = [] {
        std::array<Network, 23> parsed;
        constexpr std::array texts{
            "0.0.0.0/8",      "10.0.0.0/8",    "100.64.0.0/10",   "169.254.0.0/16",
            "172.16.0.0/12",  "192.0.0.0/24",  "192.0.2.0/24",    "192.88.99.0/24",
            "192.168.0.0/16", "198.18.0.0/15", "198.51.100.0/24", "203.0.113.0/24",
            "224.0.0.0/4",    "240.0.0.0/4",   "::/96",           "100::/64",
            "2001::/23",      "2001:db8::/32", "2002::/16",       "fc00::/7",
            "fe80::/10",      "fec0::/10",     "ff00::/8"};
        std::transform(texts.begin(), texts.end(), parsed.begin(), [](const char* text) {
            return QHostAddress::parseSubnet(QLatin1String(text));
        });
        return parsed;
    }();
    return networks;
}

/// The IPv4 address that an IPv6 one stands for: mapped, or behind a translator (64:ff9b::/96).
QHostAddress plain(const QHostAddress& address) {
    static const Network translated = QHostAddress::parseSubnet(QStringLiteral("64:ff9b::/96"));
    bool isMapped = false;
    if (const quint32 mapped = address.toIPv4Address(&isMapped); isMapped)
        return QHostAddress(mapped);
    if (!isIn(address, translated))
        return address;
    const Q_IPV6ADDR bytes = address.toIPv6Address();
    return QHostAddress((quint32{bytes[12]} << 24U) | (quint32{bytes[13]} << 16U) |
                        (quint32{bytes[14]} << 8U) | quint32{bytes[15]});
}

} // namespace

AddressScope scopeOf(const QHostAddress& of) {
    const QHostAddress address = plain(of);
    // What is no address in particular is this machine to a connection.
    if (address.isNull() || address.isLoopback() || address == QHostAddress::AnyIPv4 ||
        address == QHostAddress::AnyIPv6)
        return AddressScope::loopback;
    const auto& local = localNetworks();
    const bool isLocal =
        std::any_of(local.begin(), local.end(),
                    [&address](const Network& network) { return isIn(address, network); });
    return isLocal ? AddressScope::local : AddressScope::internet;
}

} // namespace tamsel
