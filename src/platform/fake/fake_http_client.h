#pragma once

#include "platform/http_client.h"

#include <map>

namespace tamsel {

/// Writes down what is sent; the test answers, in any order.
class FakeHttpClient final : public HttpClient {
public:
    QList<HttpRequest> requests;

    TaskHandle send(const HttpRequest& request, Handler done) override {
        const qsizetype place = requests.size();
        requests.append(request);
        m_waiting[place] = std::move(done);
        return TaskHandle([this, place] { m_waiting.erase(place); });
    }

    /// Answers the request at `place`, by default the last one; false when nobody waits for it.
    bool answer(const Result<HttpReply>& reply, qsizetype place = -1) {
        const auto found = m_waiting.find(place < 0 ? requests.size() - 1 : place);
        if (found == m_waiting.end())
            return false;
        const Handler done = std::move(found->second);
        m_waiting.erase(found);
        done(reply);
        return true;
    }
    bool answer(int status, const QByteArray& body, qsizetype place = -1) {
        return answer(HttpReply{status, body}, place);
    }
    std::size_t waiting() const { return m_waiting.size(); }

private:
    std::map<qsizetype, Handler> m_waiting;
};

} // namespace tamsel
