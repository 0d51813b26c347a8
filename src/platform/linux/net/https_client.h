#pragma once

#include "platform/http_client.h"

namespace tamsel {

class SecureRequests;

/// HttpClient over SecureRequests. Up to five redirects, to https only; every request has a
/// connection of its own.
class HttpsClient final : public HttpClient {
public:
    /// Both outlive the client.
    HttpsClient(SecureRequests& requests, MainQueue& queue);

    TaskHandle send(const HttpRequest& request, Handler done) override;

private:
    SecureRequests& m_requests;
    MainQueue& m_queue;
    QObject m_exchanges; ///< owns what is under way
};

} // namespace tamsel
