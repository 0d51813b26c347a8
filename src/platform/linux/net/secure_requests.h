#pragma once

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QSslCertificate>

#include <memory>

namespace tamsel {

class Bundle;

/// How this program asks the network: over https with the machine's authorities, without cookies,
/// stored credentials, caches, or anything about the user in the headers. Every request stands for
/// one hop; whoever sends it follows redirects itself, as far as mayFollow() lets it. Main thread.
class SecureRequests final {
public:
    struct GiveUp {
        void operator()(QNetworkReply* reply) const;
    };
    /// Letting go of it gives up what has not ended, and closes the connection. It may be let go of
    /// from its own signals.
    using Reply = std::unique_ptr<QNetworkReply, GiveUp>;

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
    /// Each over a connection of its own: no request ever waits for another. This object outlives
    /// the replies.
    Reply get(const QNetworkRequest& request);
    Reply post(const QNetworkRequest& request, std::unique_ptr<QIODevice> body);

private:
    QNetworkAccessManager& newConnection();

    QObject m_connections; ///< owns them
    QList<QSslCertificate> m_loopbackAuthorities;
};

} // namespace tamsel
