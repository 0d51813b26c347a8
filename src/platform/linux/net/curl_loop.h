#pragma once

#include "platform/main_queue.h"

#include <curl/curl.h>

#include <map>
#include <vector>

class QSocketNotifier;

namespace tamsel {

/// What the loop tells a transfer, outside of the library's own calls, so that anything may be done
/// about it, its end too.
class CurlTransfer {
public:
    virtual ~CurlTransfer() = default;

    /// Something may have come in.
    virtual void progressed() = 0;
    /// The last call; the transfer has been taken out.
    virtual void ended(CURLcode code) = 0;
};

/// The library's transfers on the main loop. Main thread; outlives its transfers.
class CurlLoop final : public QObject {
public:
    explicit CurlLoop(MainQueue& queue);
    ~CurlLoop() override;

    void add(CURL* handle, CurlTransfer& transfer);
    void remove(CURL* handle);

private:
    static int watch(CURL* handle, curl_socket_t socket, int what, void* loop, void* known);
    static int setTimer(CURLM* multi, long milliseconds, void* loop);

    void watchSocket(int socket, int what);
    void act(int socket, int events);
    void tellAll();

    MainQueue& m_queue;
    CURLM* m_multi;
    TaskHandle m_timer;
    std::map<int, std::vector<QSocketNotifier*>> m_sockets;
    std::map<CURL*, CurlTransfer*> m_transfers;
};

} // namespace tamsel
