#include "platform/linux/updater/secure_fetch.h"

#include "platform/linux/net/secure_requests.h"

#include <utility>

namespace tamsel {

namespace {

constexpr int maxRedirects = 5;
} // namespace

SecureFetch::SecureFetch(SecureRequests& requests, MainQueue& queue, const QUrl& url,
                         const FetchLimits& limits, Receiver receiver)
    : m_requests(requests),
      m_queue(queue),
      m_limits(limits),
      m_receiver(std::move(receiver)),
      m_scope(limits.nearest) {
    m_deadline = queue.after(limits.total, [this] {
        finish(FetchError{FetchFault::timedOut, {}});
    });
    if (SecureRequests::isAllowed(url))
        ask(url);
    else
        queue.async(this, [this] { finish(FetchError{FetchFault::insecure, {}}); });
}

void SecureFetch::ask(const QUrl& url) {
    m_url = url;
    m_hop = HttpHop::send(m_requests, {.url = url, .nearest = m_scope},
                          {.head = [this](const HopHead& head) { answered(head); },
                           .data = [this](const QByteArray& bytes) { receive(bytes); },
                           .finished = [this](const auto& error) { ended(error); }});
    listenAgain();
}

void SecureFetch::listenAgain() {
    m_silence = m_queue.after(m_limits.silence, [this] {
        finish(FetchError{FetchFault::timedOut, {}});
    });
}

void SecureFetch::answered(const HopHead& head) {
    m_scope = m_hop->scope();
    if (SecureRequests::isRedirect(head.status) && m_redirects++ < maxRedirects) {
        const QUrl to = m_url.resolved(QUrl::fromEncoded(head.location, QUrl::StrictMode));
        if (SecureRequests::mayFollow(m_url, to))
            ask(to);
        else
            finish(FetchError{FetchFault::insecure, {}});
    } else if (head.status != 200) {
        // What such an answer has to say beyond its status is nobody's, however long it is.
        finish(FetchError{FetchFault::refused, QString::number(head.status)});
    }
}

void SecureFetch::receive(const QByteArray& bytes) {
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

void SecureFetch::ended(const std::optional<HopError>& error) {
    if (error && error->isTooNear)
        finish(FetchError{FetchFault::insecure, {}});
    else if (error)
        finish(FetchError{FetchFault::network, error->reason});
    else
        finish(std::nullopt);
}

void SecureFetch::finish(const std::optional<FetchError>& error) {
    m_deadline.cancel();
    m_silence.cancel();
    m_hop.reset();
    // The receiver may destroy this object, and with it the call itself.
    const auto finished = m_receiver.finished;
    finished(error);
}

} // namespace tamsel
