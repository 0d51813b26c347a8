#include "platform/linux/net/https_client.h"

#include "platform/linux/net/secure_requests.h"

#include <QPointer>

#include <memory>

namespace tamsel {

namespace {

constexpr int maxRedirects = 5;

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

/// The toolkit counts an answer of status 400 and up as an error of these kinds.
bool isAnswer(int status, QNetworkReply::NetworkError error) {
    return error == QNetworkReply::NoError ||
           (status >= 400 && error > QNetworkReply::UnknownProxyError);
}

/// What is posted, readable once only. The toolkit repeats a request when the connection closes
/// before the answer; with this it can't, and nothing is filed twice.
class BodyOnce final : public QIODevice {
public:
    explicit BodyOnce(QByteArray bytes) : m_bytes(std::move(bytes)) { open(ReadOnly); }

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 bytesAvailable() const override {
        return m_bytes.size() - m_read + QIODevice::bytesAvailable();
    }

protected:
    qint64 readData(char* data, qint64 most) override {
        if (m_read == m_bytes.size())
            return -1;
        const qint64 count = std::min<qint64>(most, m_bytes.size() - m_read);
        std::copy_n(m_bytes.constData() + m_read, count, data);
        m_read += count;
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_bytes;
    qint64 m_read = 0;
};

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
    SecureRequests::Reply post(QNetworkRequest request);
    void take();
    void replied();
    void follow(int status, const QUrl& target);
    void finish(const Result<HttpReply>& result);

    SecureRequests& m_requests;
    HttpRequest m_request;
    HttpClient::Handler m_done;
    TaskHandle m_deadline;
    SecureRequests::Reply m_reply;
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
    QNetworkRequest request = m_requests.request(m_request.url);
    // There is no cache; this only spares the headers that would forbid one.
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::PreferNetwork);
    for (const auto& [name, value] : m_request.headers)
        request.setRawHeader(name, value);
    // A kept connection may be dead by the next request.
    request.setRawHeader("Connection", "close");
    m_reply = m_request.method == "POST" ? post(request) : m_requests.get(request);
    // The sooner it is read, the sooner it is too long.
    m_reply->setReadBufferSize(m_request.maxReplySize + 1);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &Exchange::take);
    // Queued: the reply still has work to do after its signal, and may be replaced here.
    connect(m_reply.get(), &QNetworkReply::finished, this, &Exchange::replied,
            Qt::QueuedConnection);
}

SecureRequests::Reply Exchange::post(QNetworkRequest request) {
    request.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    request.setHeader(QNetworkRequest::ContentLengthHeader, m_request.body.size());
    return m_requests.post(request, std::make_unique<BodyOnce>(m_request.body));
}

void Exchange::take() {
    if (!m_reply)
        return;
    m_body += m_reply->readAll();
    const auto announced = m_reply->header(QNetworkRequest::ContentLengthHeader).toLongLong();
    if (std::max<qint64>(announced, m_body.size()) > m_request.maxReplySize)
        finish(fail("the answer is too long"));
}

void Exchange::replied() {
    take();
    if (!m_reply)
        return;
    const QVariant statusCode = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    const int status = statusCode.toInt();
    // Not as the toolkit reads it: it takes whole addresses only.
    const QUrl target = QUrl::fromEncoded(m_reply->rawHeader("Location"), QUrl::StrictMode);
    if (!isAnswer(status, m_reply->error()))
        finish(fail(SecureRequests::reason(*m_reply).toStdString()));
    else if (isRedirect(status) && !target.isEmpty())
        follow(status, m_request.url.resolved(target));
    else
        finish(HttpReply{statusCode.isValid() ? std::optional(status) : std::nullopt, m_body});
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
    m_body.clear();
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
    if (const auto reply = std::exchange(m_reply, nullptr))
        reply->disconnect(this);
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
