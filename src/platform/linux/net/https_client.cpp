#include "platform/linux/net/https_client.h"

#include "platform/linux/net/http_hop.h"
#include "platform/linux/net/secure_requests.h"

#include <QPointer>

#include <memory>

namespace tamsel {

namespace {

constexpr int maxRedirects = 5;

/// One request on its way, redirects included. It deletes itself when that is over.
class Exchange final : public QObject {
public:
    Exchange(SecureRequests& requests, MainQueue& queue, HttpRequest request,
             HttpClient::Handler done, QObject* parent);

    void start();
    /// Nothing is reported any more.
    void drop();

private:
    void ask();
    void answered(const HopHead& head);
    void receive(const QByteArray& bytes);
    void ended(const std::optional<HopError>& error);
    void follow(int status, const QUrl& target);
    void finish(const Result<HttpReply>& result);

    SecureRequests& m_requests;
    HttpRequest m_request;
    HttpClient::Handler m_done;
    TaskHandle m_deadline;
    AddressScope m_nearest = AddressScope::loopback;
    HttpHop::Handle m_hop;
    HopHead m_head;
    QByteArray m_body;
    int m_redirects = 0;
};

Exchange::Exchange(SecureRequests& requests, MainQueue& queue, HttpRequest request,
                   HttpClient::Handler done, QObject* parent)
    : QObject(parent),
      m_requests(requests),
      m_request(std::move(request)),
      m_done(std::move(done)) {
    m_deadline = queue.after(m_request.deadline, [this] { finish(fail("the time is up")); });
}

void Exchange::start() {
    if (!m_done)
        return; // taken back before it began
    if (m_request.url.scheme() == u"https" && SecureRequests::isAllowed(m_request.url))
        ask();
    else
        finish(fail("only https is spoken"));
}

void Exchange::ask() {
    m_head = {};
    m_body.clear();
    m_hop = HttpHop::send(
        m_requests, {m_request.method, m_request.url, m_request.headers, m_request.body, m_nearest},
        {.head = [this](const HopHead& head) { answered(head); },
         .data = [this](const QByteArray& bytes) { receive(bytes); },
         .finished = [this](const auto& error) { ended(error); }});
}

void Exchange::answered(const HopHead& head) {
    m_head = head;
    const QUrl target = QUrl::fromEncoded(head.location, QUrl::StrictMode);
    if (SecureRequests::isRedirect(head.status) && !target.isEmpty())
        follow(head.status, m_request.url.resolved(target));
    else if (head.length > static_cast<quint64>(m_request.maxReplySize))
        finish(fail("the answer is too long"));
}

void Exchange::receive(const QByteArray& bytes) {
    m_body += bytes;
    if (m_body.size() > m_request.maxReplySize)
        finish(fail("the answer is too long"));
}

void Exchange::ended(const std::optional<HopError>& error) {
    if (error)
        finish(fail(error->reason.toStdString()));
    else
        finish(HttpReply{m_head.status, m_body});
}

void Exchange::follow(int status, const QUrl& target) {
    if (!SecureRequests::mayFollow(m_request.url, target) || m_redirects++ == maxRedirects) {
        finish(fail("the redirect is not followed"));
        return;
    }
    // What was posted goes along only where the status says so.
    if (status < 307) {
        m_request.method = "GET";
        m_request.body.clear();
        m_request.headers.removeIf(
            [](const auto& header) { return header.first == "Content-Type"; });
    }
    m_request.url = target;
    // Whoever is far away does not get a request sent into this network.
    m_nearest = m_hop->scope();
    ask();
}

void Exchange::finish(const Result<HttpReply>& result) {
    const auto done = std::exchange(m_done, nullptr);
    drop();
    if (done)
        done(result);
}

void Exchange::drop() {
    m_done = nullptr;
    m_deadline.cancel();
    m_hop.reset();
    deleteLater();
}

} // namespace

HttpsClient::HttpsClient(SecureRequests& requests, MainQueue& queue)
    : m_requests(requests), m_queue(queue) {}

TaskHandle HttpsClient::send(const HttpRequest& request, Handler done) {
    auto* exchange = new Exchange(m_requests, m_queue, request, std::move(done), &m_exchanges);
    // Later, so that nothing is answered before the caller has its handle.
    m_queue.async(exchange, [exchange] { exchange->start(); });
    return TaskHandle([guarded = QPointer(exchange)] {
        if (guarded)
            guarded->drop();
    });
}

} // namespace tamsel
