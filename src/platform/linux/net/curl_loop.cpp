#include "platform/linux/net/curl_loop.h"

#include <QSocketNotifier>

#include <algorithm>
#include <chrono>

namespace tamsel {

CurlLoop::CurlLoop(MainQueue& queue) : m_queue(queue) {
    curl_global_init(CURL_GLOBAL_DEFAULT);
    m_multi = curl_multi_init();
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETFUNCTION, &CurlLoop::watch);
    curl_multi_setopt(m_multi, CURLMOPT_SOCKETDATA, this);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERFUNCTION, &CurlLoop::setTimer);
    curl_multi_setopt(m_multi, CURLMOPT_TIMERDATA, this);
}

CurlLoop::~CurlLoop() {
    curl_multi_cleanup(m_multi);
}

void CurlLoop::add(CURL* handle, CurlTransfer& transfer) {
    m_transfers[handle] = &transfer;
    curl_multi_add_handle(m_multi, handle);
}

void CurlLoop::remove(CURL* handle) {
    if (m_transfers.erase(handle) > 0)
        curl_multi_remove_handle(m_multi, handle);
}

int CurlLoop::watch(CURL* /*handle*/, curl_socket_t socket, int what, void* loop, void* /*known*/) {
    static_cast<CurlLoop*>(loop)->watchSocket(socket, what);
    return 0;
}

void CurlLoop::watchSocket(int socket, int what) {
    for (QSocketNotifier* notifier : m_sockets[socket]) {
        notifier->setEnabled(false);
        notifier->deleteLater(); // it may be on the stack
    }
    m_sockets.erase(socket);
    const auto add = [this, socket](QSocketNotifier::Type type, int event) {
        auto* notifier = new QSocketNotifier(socket, type, this);
        connect(notifier, &QSocketNotifier::activated, this,
                [this, socket, event] { act(socket, event); });
        m_sockets[socket].push_back(notifier);
    };
    if (what == CURL_POLL_IN || what == CURL_POLL_INOUT)
        add(QSocketNotifier::Read, CURL_CSELECT_IN);
    if (what == CURL_POLL_OUT || what == CURL_POLL_INOUT)
        add(QSocketNotifier::Write, CURL_CSELECT_OUT);
}

int CurlLoop::setTimer(CURLM* /*multi*/, long milliseconds, void* loop) {
    auto& self = *static_cast<CurlLoop*>(loop);
    self.m_timer.cancel();
    if (milliseconds >= 0)
        self.m_timer = self.m_queue.after(std::chrono::milliseconds(milliseconds),
                                          [&self] { self.act(CURL_SOCKET_TIMEOUT, 0); });
    return 0;
}

void CurlLoop::act(int socket, int events) {
    int running = 0;
    curl_multi_socket_action(m_multi, socket, events, &running);
    tellAll();
}

void CurlLoop::tellAll() {
    std::vector<CURL*> handles;
    for (const auto& [handle, transfer] : m_transfers)
        handles.push_back(handle);
    // Each of them may end others.
    for (CURL* handle : handles) {
        if (const auto found = m_transfers.find(handle); found != m_transfers.end())
            found->second->progressed();
    }
    int left = 0;
    while (const CURLMsg* message = curl_multi_info_read(m_multi, &left)) {
        const auto found = m_transfers.find(message->easy_handle);
        if (message->msg != CURLMSG_DONE || found == m_transfers.end())
            continue;
        CurlTransfer& transfer = *found->second;
        const CURLcode code = message->data.result;
        remove(message->easy_handle);
        transfer.ended(code);
    }
}

} // namespace tamsel
