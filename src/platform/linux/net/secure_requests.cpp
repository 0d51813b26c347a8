#include "platform/linux/net/secure_requests.h"

#include "platform/bundle.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QNetworkAccessManager>
#include <QSslConfiguration>

namespace tamsel {

void SecureRequests::GiveUp::operator()(QNetworkReply* reply) const {
    reply->abort();
    reply->manager()->deleteLater(); // and the reply with it
}

SecureRequests::SecureRequests(const Bundle& bundle) {
    const auto authority = bundle.pathForResource(QStringLiteral("ca"), QStringLiteral("pem"));
    if (authority)
        m_loopbackAuthorities = QSslCertificate::fromPath(*authority);
}

bool SecureRequests::isLoopback(const QUrl& url) {
    const QString host = url.host();
    return host == u"localhost" || QHostAddress(host).isLoopback();
}

bool SecureRequests::isAllowed(const QUrl& url) {
    if (!url.isValid() || url.host().isEmpty() || !url.userInfo().isEmpty())
        return false;
    return url.scheme() == u"https" || (url.scheme() == u"http" && isLoopback(url));
}

bool SecureRequests::mayFollow(const QUrl& from, const QUrl& to) {
    return isAllowed(to) && (to.scheme() == u"https" || from.scheme() == u"http");
}

QString SecureRequests::reason(QNetworkReply& reply) {
    // The TLS library's own words do not say what to do about it.
    if (reply.error() == QNetworkReply::SslHandshakeFailedError)
        return QCoreApplication::translate("SecureRequests",
                                           "The server's certificate can't be trusted.");
    return reply.errorString();
}

QNetworkRequest SecureRequests::request(const QUrl& url) const {
    QNetworkRequest request(url);
    const auto set = [&request](QNetworkRequest::Attribute attribute, const QVariant& value) {
        request.setAttribute(attribute, value);
    };
    set(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    set(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    set(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    set(QNetworkRequest::CacheSaveControlAttribute, false);
    set(QNetworkRequest::Http2AllowedAttribute, false);
    request.setRawHeader("User-Agent", "Tamsel");
    request.setRawHeader("Accept-Language", "*");
    // What arrives is what was sent: no archive is unpacked on its way, no small reply becomes a
    // big one.
    request.setRawHeader("Accept-Encoding", "identity");
    if (isLoopback(url) && !m_loopbackAuthorities.isEmpty()) {
        QSslConfiguration tls = request.sslConfiguration();
        tls.addCaCertificates(m_loopbackAuthorities);
        request.setSslConfiguration(tls);
    }
    return request;
}

// The toolkit's manager finds out which of a host's two kinds of addresses answers before it opens
// more than one connection. Requests that come meanwhile get the one that won, after each other: each
// waits for the last byte of the one before it.
QNetworkAccessManager& SecureRequests::newConnection() {
    return *new QNetworkAccessManager(&m_connections);
}

SecureRequests::Reply SecureRequests::get(const QNetworkRequest& request) {
    return Reply(newConnection().get(request));
}

SecureRequests::Reply SecureRequests::post(const QNetworkRequest& request,
                                           std::unique_ptr<QIODevice> body) {
    Reply reply(newConnection().post(request, body.get()));
    body.release()->setParent(reply.get());
    return reply;
}

} // namespace tamsel
