#include "platform/linux/updater/secure_fetch.h"

#include <utility>

namespace tamsel {

namespace {

constexpr int maxRedirects = 5;
constexpr qint64 readBuffer = qint64{256} * 1024;

int statusOf(const QNetworkReply& reply) {
    return reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

bool isRedirect(int status) {
    return status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
}

} // namespace

SecureFetch::SecureFetch(SecureRequests& requests, MainQueue& queue, const QUrl& url,
                         const FetchLimits& limits, Receiver receiver)
    : m_requests(requests), m_queue(queue), m_limits(limits), m_receiver(std::move(receiver)) {
    m_deadline = queue.after(limits.total, [this] {
        finish(FetchError{FetchFault::timedOut, {}});
    });
    if (SecureRequests::isAllowed(url))
        ask(url);
    else
        queue.async(this, [this] { finish(FetchError{FetchFault::insecure, {}}); });
}

SecureFetch::~SecureFetch() {
    if (m_reply)
        m_reply->disconnect(this);
}

void SecureFetch::ask(const QUrl& url) {
    m_reply = m_requests.get(m_requests.request(url));
    m_reply->setReadBufferSize(readBuffer);
    connect(m_reply.get(), &QNetworkReply::readyRead, this, &SecureFetch::take);
    // Queued: the reply still has work to do after its signal, and may be replaced here.
    connect(m_reply.get(), &QNetworkReply::finished, this, &SecureFetch::replied,
            Qt::QueuedConnection);
    listenAgain();
}

void SecureFetch::listenAgain() {
    m_silence = m_queue.after(m_limits.silence, [this] {
        finish(FetchError{FetchFault::timedOut, {}});
    });
}

void SecureFetch::take() {
    if (!m_reply || statusOf(*m_reply) != 200)
        return;
    const QByteArray bytes = m_reply->readAll();
    m_received += static_cast<std::uint64_t>(bytes.size());
    if (m_received > m_limits.bytes) {
        finish(FetchError{FetchFault::tooLarge, {}});
        return;
    }
    listenAgain();
    if (const auto taken = m_receiver.data(bytes); !taken)
        finish(
            FetchError{FetchFault::notTaken, QString::fromStdString(taken.error().description())});
}

void SecureFetch::replied() {
    if (!m_reply)
        return;
    if (m_reply->bytesAvailable() > 0)
        take();
    if (!m_reply)
        return;
    const int status = statusOf(*m_reply);
    if (isRedirect(status) && m_redirects++ < maxRedirects) {
        const QUrl from = m_reply->url();
        // As it came: the header's parsed form has no relative addresses.
        const QByteArray location = m_reply->rawHeader("Location");
        const QUrl to = from.resolved(QUrl::fromEncoded(location, QUrl::StrictMode));
        if (SecureRequests::mayFollow(from, to))
            ask(to);
        else
            finish(FetchError{FetchFault::insecure, {}});
    } else if (status != 0 && status != 200) {
        finish(FetchError{FetchFault::refused, QString::number(status)});
    } else if (m_reply->error() != QNetworkReply::NoError) {
        finish(FetchError{FetchFault::network, SecureRequests::reason(*m_reply)});
    } else {
        finish(std::nullopt);
    }
}

void SecureFetch::finish(const std::optional<FetchError>& error) {
    m_deadline.cancel();
    m_silence.cancel();
    if (const auto reply = std::exchange(m_reply, nullptr))
        reply->disconnect(this);
    // The receiver may destroy this object, and with it the call itself.
    const auto finished = m_receiver.finished;
    finished(error);
}

} // namespace tamsel
