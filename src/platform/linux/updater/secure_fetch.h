#pragma once

#include "base/error.h"
#include "platform/linux/net/http_hop.h"
#include "platform/main_queue.h"

#include <QUrl>

#include <chrono>
#include <cstdint>
#include <optional>

namespace tamsel {

class SecureRequests;

enum class FetchFault {
    insecure, ///< the address, or one it leads to, is not https, or nearer than it may be
    timedOut,
    tooLarge,
    refused, ///< the server answered, but not with what was asked for
    network,
    notTaken, ///< the receiver could not take what arrived
};

struct FetchError {
    FetchFault fault;
    QString detail; ///< for the user; of `refused` the status, of `notTaken` the receiver's own
};

struct FetchLimits {
    std::chrono::milliseconds total;   ///< from the start to the last byte
    std::chrono::milliseconds silence; ///< without a byte
    std::uint64_t bytes;
    /// Nearer addresses are not spoken to: neither at first nor where that leads to.
    AddressScope nearest = AddressScope::loopback;
};

/// Fetches one address over SecureRequests, following up to five redirects. Main thread;
/// destroying it gives the fetch up, without a word to the receiver.
class SecureFetch final : public QObject {
public:
    struct Receiver {
        std::function<Result<void>(const QByteArray& bytes)> data;
        /// The last call, once; it may destroy the fetch.
        std::function<void(const std::optional<FetchError>& error)> finished;
    };

    /// Nothing is reported before the next turn of the main loop.
    SecureFetch(SecureRequests& requests, MainQueue& queue, const QUrl& url,
                const FetchLimits& limits, Receiver receiver);

    /// How far away what answered is; nothing that it names may be nearer.
    AddressScope scope() const { return m_scope; }

private:
    void ask(const QUrl& url);
    void listenAgain();
    void answered(const HopHead& head);
    void receive(const QByteArray& bytes);
    void ended(const std::optional<HopError>& error);
    void finish(const std::optional<FetchError>& error);

    SecureRequests& m_requests;
    MainQueue& m_queue;
    const FetchLimits m_limits;
    Receiver m_receiver;
    TaskHandle m_deadline;
    TaskHandle m_silence;
    QUrl m_url;
    AddressScope m_scope;
    HttpHop::Handle m_hop;
    std::uint64_t m_received = 0;
    int m_redirects = 0;
};

} // namespace tamsel
