#pragma once

#include "feedback/ticket_error.h"
#include "feedback/ticket_origin.h"
#include "feedback/ticket_records.h"
#include "platform/http_client.h"

namespace tamsel {

class Logger;
class UserDefaults;

/// The client of the feedback ticket service. It knows the user by an anonymous identifier alone,
/// made when it is first needed. Nothing is sent but what the operations take, that identifier and
/// the application's name; nothing is tried again.
///
/// Operations run side by side. Each calls `done` once, on a later turn of the main loop, unless
/// its handle is destroyed before. Main thread.
class TicketAPI final {
public:
    template <class T>
    using Outcome = tl::expected<T, TicketFailure>;
    template <class T>
    using Handler = std::function<void(const Outcome<T>&)>;
    using Tickets = std::vector<TicketItem>;

    inline static const QString deviceIdKey = QStringLiteral("TamselDeviceId");

    /// All of it outlives the client, and the client the handles.
    TicketAPI(TicketOrigin ticketBaseURL, HttpClient& session, UserDefaults& defaults,
              MainQueue& queue, Logger& logger);

    /// The tickets filed from this machine.
    [[nodiscard]] TaskHandle fetchTickets(Handler<Tickets> done);
    [[nodiscard]] TaskHandle createTicket(const QString& category, const QString& title,
                                          const QString& content, Handler<TicketResponse> done);
    [[nodiscard]] TaskHandle fetchTicketDetail(const QString& uuid,
                                               Handler<TicketDetailResponse> done);
    [[nodiscard]] TaskHandle addComment(const QString& uuid, const QString& content,
                                        Handler<CommentResponse> done);

private:
    using Texts = QList<std::pair<QString, QString>>;
    using Request = Outcome<HttpRequest>;

    QString deviceId();
    void logStart(const char* what);
    Request getRequest(const QString& path, const Texts& query) const;
    Request postRequest(const QString& path, const Texts& body) const;
    template <class Response>
    TaskHandle send(const Request& request, Handler<Response> done);
    template <class Response>
    Outcome<Response> read(const Result<HttpReply>& reply);
    void logUndecoded(const Error& error, const QByteArray& body);

    TicketOrigin m_ticketBaseURL;
    HttpClient& m_session;
    UserDefaults& m_defaults;
    MainQueue& m_queue;
    Logger& m_logger;
    QString m_unstoredId; ///< stands in while the store takes none
};

} // namespace tamsel
