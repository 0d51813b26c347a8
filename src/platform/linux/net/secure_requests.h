#pragma once

#include "platform/linux/net/address_scope.h"
#include "platform/linux/net/curl_loop.h"

#include <QByteArray>
#include <QUrl>

#include <functional>

namespace tamsel {

class Bundle;

/// What names and addresses mean.
struct Network {
    using Addresses = std::function<void(const QList<QHostAddress>& addresses)>;

    /// Looks a host's name, or an address as text, up and calls back on a later turn of the main
    /// loop, unless `context` is gone by then; with nothing when it has no address.
    std::function<void(const QString& host, QObject* context, Addresses found)> resolve;
    std::function<AddressScope(const QHostAddress& address)> scopeOf;

    static Network real();
};

/// How this program asks the network: over https with the machine's authorities, without cookies,
/// stored credentials, caches, or anything about the user in the headers. Every HttpHop stands for
/// one request; whoever sends it follows redirects itself, as far as mayFollow() lets it. Main
/// thread; outlives the hops.
class SecureRequests final {
public:
    /// The bundle's `ca.pem`, if there is one, is an authority for loopback hosts, and only there.
    SecureRequests(const Bundle& bundle, MainQueue& queue, Network network = Network::real());

    /// https with a host and without a user's name; plain http on this machine only.
    static bool isAllowed(const QUrl& url);
    /// From one allowed address to another, but never out of https.
    static bool mayFollow(const QUrl& from, const QUrl& to);
    /// Of the same machine as the caller, whatever the network.
    static bool isLoopback(const QUrl& url);
    /// An answer says that what was asked for is elsewhere.
    static bool isRedirect(int status);

    /// The file with the authority that vouches for a host besides the machine's; empty: none.
    QByteArray authorityFor(const QUrl& url) const;
    const Network& network() const { return m_network; }
    CurlLoop& loop() { return m_loop; }

private:
    Network m_network;
    CurlLoop m_loop;
    QByteArray m_loopbackAuthority;
};

} // namespace tamsel
