#include "feedback/ticket_api.h"

#include "config/text_rules.h"
#include "feedback/ticket_coding.h"
#include "log/logger.h"
#include "platform/user_defaults.h"

#include <QStringDecoder>
#include <QUuid>

#include <algorithm>

namespace tamsel {

namespace {

using namespace std::chrono_literals;

const QString appName = QStringLiteral("tamsel");

/// Of a body that can't be read, in the log.
constexpr qsizetype loggedCharacters = 500;
/// Of a service's error code.
constexpr qsizetype loggedCode = 100;
/// One character can be made of any number of units.
constexpr qsizetype loggedUnits = 8 * loggedCharacters;

QString newDeviceId() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

bool isTicketId(const QString& uuid) {
    const auto isAllowed = [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f') || (c >= u'A' && c <= u'F') ||
               c == u'-';
    };
    return !uuid.isEmpty() && std::all_of(uuid.begin(), uuid.end(), isAllowed);
}

/// The text of valid UTF-8.
std::optional<QString> decoded(const QByteArray& utf8) {
    QStringDecoder decoder(QStringDecoder::Utf8);
    QString text = decoder(utf8);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

std::optional<QString> errorCode(const QByteArray& body) {
    const auto response = decodeResponse<ErrorResponse>(body);
    if (!response || response->res != u"err")
        return std::nullopt;
    // It is for the log and for the screen; a code is a word or two.
    return firstCharacters(shownLine(response->code), loggedCode);
}

} // namespace

TicketAPI::TicketAPI(TicketOrigin ticketBaseURL, HttpClient& session, UserDefaults& defaults,
                     MainQueue& queue, Logger& logger)
    : m_ticketBaseURL(std::move(ticketBaseURL)),
      m_session(session),
      m_defaults(defaults),
      m_queue(queue),
      m_logger(logger) {}

QString TicketAPI::deviceId() {
    const auto stored = m_defaults.dataForKey(deviceIdKey);
    if (stored && *stored) {
        if (const auto text = decoded(**stored))
            return *text;
    }
    // A store that can't be read may hold the identifier: nothing is put in its place.
    if (m_unstoredId.isEmpty())
        m_unstoredId = newDeviceId();
    if (stored && m_defaults.setString(m_unstoredId, deviceIdKey))
        return std::exchange(m_unstoredId, {});
    return m_unstoredId;
}

void TicketAPI::logStart(const char* what) {
    m_logger.info(
        QStringLiteral("[TicketAPI] %1 %2").arg(QString::fromUtf8(what), m_ticketBaseURL.host()));
}

TaskHandle TicketAPI::fetchTickets(Handler<Tickets> done) {
    logStart("Load tickets from");
    const Request request =
        getRequest(QStringLiteral("/tickets"),
                   {{QStringLiteral("app"), appName}, {QStringLiteral("device_id"), deviceId()}});
    return send<TicketListResponse>(
        request, [done = std::move(done)](const Outcome<TicketListResponse>& outcome) {
            done(outcome.map([](const TicketListResponse& list) { return list.results; }));
        });
}

TaskHandle TicketAPI::createTicket(const QString& category, const QString& title,
                                   const QString& content, Handler<TicketResponse> done) {
    logStart("Create ticket to");
    return send(postRequest(QStringLiteral("/ticket"), {{QStringLiteral("app"), appName},
                                                        {QStringLiteral("device_id"), deviceId()},
                                                        {QStringLiteral("category"), category},
                                                        {QStringLiteral("title"), title},
                                                        {QStringLiteral("content"), content}}),
                std::move(done));
}

TaskHandle TicketAPI::fetchTicketDetail(const QString& uuid, Handler<TicketDetailResponse> done) {
    if (!isTicketId(uuid))
        return send(tl::unexpected<TicketFailure>(TicketAPIError::invalidURL()), std::move(done));
    logStart("Load ticket detail from");
    return send(getRequest(QStringLiteral("/ticket/") + uuid, {}), std::move(done));
}

TaskHandle TicketAPI::addComment(const QString& uuid, const QString& content,
                                 Handler<CommentResponse> done) {
    if (!isTicketId(uuid))
        return send(tl::unexpected<TicketFailure>(TicketAPIError::invalidURL()), std::move(done));
    logStart("Add comment to");
    return send(postRequest(QStringLiteral("/ticket/%1/comment").arg(uuid),
                            {{QStringLiteral("device_id"), deviceId()},
                             {QStringLiteral("content"), content}}),
                std::move(done));
}

TicketAPI::Request TicketAPI::getRequest(const QString& path, const Texts& query) const {
    auto url = m_ticketBaseURL.url(path);
    if (!url)
        return tl::unexpected<TicketFailure>(TicketAPIError::invalidURL());
    QByteArrayList items;
    for (const auto& [name, value] : query)
        items << QUrl::toPercentEncoding(name) + '=' + QUrl::toPercentEncoding(value);
    if (!items.isEmpty())
        url->setQuery(QString::fromLatin1(items.join('&')), QUrl::StrictMode);
    return HttpRequest{"GET", *url, {{"Accept", "application/json"}}, {}, 60s};
}

TicketAPI::Request TicketAPI::postRequest(const QString& path, const Texts& body) const {
    const auto url = m_ticketBaseURL.url(path);
    if (!url)
        return tl::unexpected<TicketFailure>(TicketAPIError::invalidURL());
    const Result<QByteArray> encoded = encodeBody(body);
    if (!encoded)
        return tl::unexpected<TicketFailure>(encoded.error());
    return HttpRequest{"POST",
                       *url,
                       {{"Content-Type", "application/json"}, {"Accept", "application/json"}},
                       *encoded,
                       60s};
}

template <class Response>
TaskHandle TicketAPI::send(const Request& request, Handler<Response> done) {
    if (!request) {
        return m_queue.after(0ms, [failure = request.error(), done = std::move(done)] {
            done(tl::unexpected(failure));
        });
    }
    return m_session.send(*request, [this, done = std::move(done)](const Result<HttpReply>& reply) {
        done(read<Response>(reply));
    });
}

template <class Response>
TicketAPI::Outcome<Response> TicketAPI::read(const Result<HttpReply>& reply) {
    if (!reply)
        return tl::unexpected<TicketFailure>(reply.error());
    if (!reply->status || *reply->status < 200 || *reply->status > 299)
        return tl::unexpected<TicketFailure>(
            TicketAPIError::requestFailed(reply->status, errorCode(reply->body)));
    Result<Response> response = decodeResponse<Response>(reply->body);
    if (!response) {
        logUndecoded(response.error(), reply->body);
        return tl::unexpected<TicketFailure>(TicketAPIError::decodingFailed(response.error()));
    }
    return std::move(*response);
}

void TicketAPI::logUndecoded(const Error& error, const QByteArray& body) {
    m_logger.error(QStringLiteral("[TicketAPI] 解碼失敗: ") +
                   QString::fromStdString(error.description()));
    if (const auto text = decoded(body))
        m_logger.error(QStringLiteral("[TicketAPI] 原始響應: ") +
                       firstCharacters(text->left(loggedUnits), loggedCharacters));
}

} // namespace tamsel
