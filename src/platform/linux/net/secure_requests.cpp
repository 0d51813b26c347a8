#include "platform/linux/net/secure_requests.h"

#include "platform/bundle.h"

#include <QFile>
#include <QHostInfo>

#include <utility>

namespace tamsel {

Network Network::real() {
    const auto resolve = [](const QString& host, QObject* context, const Addresses& found) {
        // An address would be looked up the other way round.
        if (const QHostAddress address(host); !address.isNull())
            QMetaObject::invokeMethod(
                context, [=] { found({address}); }, Qt::QueuedConnection);
        else
            QHostInfo::lookupHost(host, context,
                                  [found](const QHostInfo& info) { found(info.addresses()); });
    };
    return {.resolve = resolve, .scopeOf = &tamsel::scopeOf};
}

SecureRequests::SecureRequests(const Bundle& bundle, MainQueue& queue, Network network)
    : m_network(std::move(network)), m_loop(queue) {
    const auto authority = bundle.pathForResource(QStringLiteral("ca"), QStringLiteral("pem"));
    if (authority)
        m_loopbackAuthority = QFile::encodeName(*authority);
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

bool SecureRequests::isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

QByteArray SecureRequests::authorityFor(const QUrl& url) const {
    return isLoopback(url) ? m_loopbackAuthority : QByteArray();
}

} // namespace tamsel
