#include "feedback/ticket_origin.h"

#include "platform/bundle.h"

#include <QRegularExpression>

namespace tamsel {

namespace {

bool isLoopback(const QString& host) {
    static const QRegularExpression local(
        QRegularExpression::anchoredPattern(QStringLiteral("localhost|::1|127(\\.[0-9]{1,3}){3}")));
    return local.match(host).hasMatch();
}

} // namespace

TicketOrigin::TicketOrigin(QString text) : m_text(std::move(text)) {}

TicketOrigin TicketOrigin::of(const Bundle& bundle) {
    return TicketOrigin(bundle.infoString(QStringLiteral("QLTicketOrigin"))
                            .value_or(QStringLiteral("https://tickets.tamsel.app")));
}

QString TicketOrigin::host() const {
    return QUrl(m_text, QUrl::StrictMode).host();
}

std::optional<QUrl> TicketOrigin::url(const QString& path) const {
    QUrl url(m_text + path, QUrl::StrictMode);
    const bool isOrigin = url.isValid() && url.scheme() == u"https" && !url.host().isEmpty() &&
                          url.userInfo().isEmpty() && url.path() == path && !url.hasQuery() &&
                          !url.hasFragment() && (url.port() == -1 || isLoopback(url.host()));
    return isOrigin ? std::optional(url) : std::nullopt;
}

} // namespace tamsel
