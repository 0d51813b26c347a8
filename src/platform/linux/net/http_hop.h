#pragma once

#include "platform/linux/net/address_scope.h"
#include "platform/linux/net/curl_loop.h"

#include <QByteArray>
#include <QList>
#include <QUrl>

#include <memory>
#include <optional>
#include <utility>

namespace tamsel {

class SecureRequests;

struct HopRequest {
    QByteArray method = "GET"; ///< or "POST"
    QUrl url;
    QList<std::pair<QByteArray, QByteArray>> headers = {};
    QByteArray body = {};
    /// Nearer addresses are not spoken to, whatever the host's name leads to.
    AddressScope nearest = AddressScope::loopback;
};

struct HopHead {
    int status = 0;
    QByteArray location;
    quint64 length = 0; ///< announced, of the body
};

struct HopError {
    bool isTooNear = false; ///< the host has no address that may be spoken to
    QString reason;         ///< for the user
};

/// One request and its answer, over a connection of its own, sent once. The host's name is looked
/// up first, and nothing but the addresses that it had then is connected to. The header of an
/// answer is at most 64 KiB. Main thread.
class HttpHop final : public QObject, private CurlTransfer {
public:
    /// Each may let go of the hop.
    struct Receiver {
        std::function<void(const HopHead& head)> head;
        std::function<void(const QByteArray& bytes)> data;
        std::function<void(const std::optional<HopError>& error)> finished; ///< last, once
    };
    struct GiveUp {
        void operator()(HttpHop* hop) const { hop->drop(); }
    };
    /// Letting go of it gives up what has not ended; nothing is told any more.
    using Handle = std::unique_ptr<HttpHop, GiveUp>;

    /// Nothing is told before the next turn of the main loop.
    static Handle send(SecureRequests& requests, HopRequest request, Receiver receiver);
    ~HttpHop() override;

    /// The nearest address that it may be speaking to; from the head on.
    AddressScope scope() const { return m_scope; }

private:
    HttpHop(SecureRequests& requests, HopRequest request, Receiver receiver);

    void lookedUp(const QList<QHostAddress>& addresses);
    void setUp(const QList<QHostAddress>& addresses);
    void setUpHeaders();
    void setUpTls();
    void progressed() override;
    void ended(CURLcode code) override;
    void takeHeader(QByteArrayView line);
    void finish(const std::optional<HopError>& error);
    QString reason(CURLcode code) const;
    void drop();

    static std::size_t header(char* bytes, std::size_t one, std::size_t size, void* hop);
    static std::size_t body(char* bytes, std::size_t one, std::size_t size, void* hop);

    SecureRequests& m_requests;
    const HopRequest m_request;
    Receiver m_receiver;
    CURL* m_handle = nullptr;
    curl_slist* m_headers = nullptr;
    curl_slist* m_resolved = nullptr;
    AddressScope m_scope = AddressScope::internet;
    HopHead m_head;
    std::size_t m_headBytes = 0;
    bool m_hasHead = false;
    bool m_isHeadTold = false;
    bool m_isOver = false;
    QByteArray m_pending;
};

} // namespace tamsel
