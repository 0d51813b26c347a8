#pragma once

#include "base/error.h"
#include "platform/main_queue.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

namespace tamsel {

struct HttpRequest {
    QByteArray method;
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers;
    QByteArray body;
    /// From sending to the last byte of the answer, redirects included.
    std::chrono::milliseconds deadline{60'000};
    /// A longer answer is a failure. In bytes.
    qsizetype maxReplySize = qsizetype{4} * 1024 * 1024;
};

struct HttpReply {
    /// Nothing when what answered did not speak HTTP.
    std::optional<int> status;
    QByteArray body;
};

/// Sends requests by HTTPS: the other side proves who it is, nothing is sent in the clear (a
/// redirect elsewhere neither), no cookie and no credential is kept, and no header goes out but
/// those of the request and what the transfer itself needs. Main thread.
class HttpClient {
public:
    using Handler = std::function<void(Result<HttpReply>)>;

    virtual ~HttpClient() = default;

    /// Calls `done` exactly once, on a later turn of the main loop: with the answer, whatever its
    /// status, or with why there is none. Destroying the handle takes the request back; `done` is
    /// then never called. The handle must not outlive the client.
    [[nodiscard]] virtual TaskHandle send(const HttpRequest& request, Handler done) = 0;
};

} // namespace tamsel
