#pragma once

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QSslCertificate>

namespace tamsel {

class Bundle;

/// How this program asks the network: over https with the machine's authorities, without cookies,
/// stored credentials, caches, or anything about the user in the headers. Every request stands for
/// one hop; whoever sends it follows redirects itself, as far as mayFollow() lets it. Main thread.
class SecureRequests final {
public:
    /// The bundle's `ca.pem`, if there is one, is an authority for loopback hosts, and only there.
    explicit SecureRequests(const Bundle& bundle);

    /// https with a host and without a user's name; plain http on this machine only.
    static bool isAllowed(const QUrl& url);
    /// From one allowed address to another, but never out of https.
    static bool mayFollow(const QUrl& from, const QUrl& to);
    /// Of the same machine as the caller, whatever the network.
    static bool isLoopback(const QUrl& url);
    /// The cause of a failed reply, in words for the user.
    static QString reason(QNetworkReply& reply);

    QNetworkRequest request(const QUrl& url) const;
    QNetworkAccessManager& network() { return m_network; }

private:
    QNetworkAccessManager m_network;
    QList<QSslCertificate> m_loopbackAuthorities;
};

} // namespace tamsel
