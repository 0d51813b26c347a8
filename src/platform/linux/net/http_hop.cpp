#include "platform/linux/net/http_hop.h"

#include "platform/linux/net/secure_requests.h"

#include <QCoreApplication>

#include <algorithm>
#include <system_error>

namespace tamsel {

namespace {

constexpr std::size_t maxHead = std::size_t{64} * 1024;

QString text(const char* source) {
    return QCoreApplication::translate("HttpHop", source);
}

template <class Function, class... Arguments>
void tell(Function function, const Arguments&... arguments) {
    // A copy: what is told may let go of the receiver.
    if (function)
        function(arguments...);
}

/// What follows a header's name; nothing when it is another header.
std::optional<QByteArray> valueOf(QByteArrayView line, QByteArrayView name) {
    if (line.size() <= name.size() || line[name.size()] != ':' ||
        line.first(name.size()).compare(name, Qt::CaseInsensitive) != 0)
        return std::nullopt;
    return line.sliced(name.size() + 1).toByteArray().trimmed();
}

} // namespace

HttpHop::Handle HttpHop::send(SecureRequests& requests, HopRequest request, Receiver receiver) {
    Handle hop(new HttpHop(requests, std::move(request), std::move(receiver)));
    requests.network().resolve(
        hop->m_request.url.host(), hop.get(),
        [self = hop.get()](const QList<QHostAddress>& addresses) { self->lookedUp(addresses); });
    return hop;
}

HttpHop::HttpHop(SecureRequests& requests, HopRequest request, Receiver receiver)
    : m_requests(requests), m_request(std::move(request)), m_receiver(std::move(receiver)) {}

HttpHop::~HttpHop() {
    curl_slist_free_all(m_headers);
    curl_slist_free_all(m_resolved);
}

void HttpHop::drop() {
    m_isOver = true;
    m_receiver = {};
    if (m_handle) {
        m_requests.loop().remove(m_handle);
        curl_easy_cleanup(std::exchange(m_handle, nullptr));
    }
    deleteLater(); // its own call may be on the stack
}

void HttpHop::lookedUp(const QList<QHostAddress>& addresses) {
    if (m_isOver)
        return;
    if (addresses.isEmpty()) {
        finish(HopError{false, text("The server's name is not known.")});
        return;
    }
    QList<QHostAddress> allowed;
    for (const QHostAddress& address : addresses) {
        const AddressScope scope = m_requests.network().scopeOf(address);
        if (scope < m_request.nearest)
            continue;
        allowed << address;
        m_scope = std::min(m_scope, scope);
    }
    if (allowed.isEmpty())
        finish(HopError{true, text("The server's address is not one of the internet.")});
    else
        setUp(allowed);
}

void HttpHop::setUp(const QList<QHostAddress>& addresses) {
    m_handle = curl_easy_init();
    const auto set = [this](CURLoption option, auto value) {
        curl_easy_setopt(m_handle, option, value);
    };
    const QUrl& url = m_request.url;
    set(CURLOPT_URL, url.toEncoded(QUrl::RemoveFragment | QUrl::RemoveUserInfo).constData());
    set(CURLOPT_PROTOCOLS_STR, url.scheme() == u"https" ? "https" : "http");
    set(CURLOPT_HTTP_VERSION, long{CURL_HTTP_VERSION_1_1});
    set(CURLOPT_FOLLOWLOCATION, 0L);
    set(CURLOPT_FRESH_CONNECT, 1L);
    set(CURLOPT_FORBID_REUSE, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    // What the environment says of proxies would go past the addresses that were looked at.
    set(CURLOPT_PROXY, "");
    set(CURLOPT_HEADERFUNCTION, &HttpHop::header);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &HttpHop::body);
    set(CURLOPT_WRITEDATA, this);
    if (m_request.method == "POST") {
        set(CURLOPT_POST, 1L);
        set(CURLOPT_POSTFIELDSIZE_LARGE, curl_off_t{m_request.body.size()});
        set(CURLOPT_POSTFIELDS, m_request.body.constData());
    }
    setUpHeaders();
    setUpTls();
    QByteArrayList numbers;
    for (const QHostAddress& address : addresses)
        numbers << address.toString().toLatin1();
    if (QHostAddress(url.host()).isNull()) {
        const int port = url.port(url.scheme() == u"https" ? 443 : 80);
        m_resolved = curl_slist_append(nullptr, (url.host(QUrl::FullyEncoded).toLatin1() + ':' +
                                                 QByteArray::number(port) + ':' + numbers.join(','))
                                                    .constData());
        set(CURLOPT_RESOLVE, m_resolved);
    }
    m_requests.loop().add(m_handle, *this);
}

void HttpHop::setUpHeaders() {
    // Nothing that the library would add by itself, and nothing that packs the answer: what arrives
    // is what was sent, and no small reply becomes a big one.
    QList<std::pair<QByteArray, QByteArray>> headers{
        {"User-Agent", "Tamsel"}, {"Accept-Language", "*"}, {"Accept-Encoding", "identity"},
        {"Connection", "close"},  {"Expect", ""},           {"Accept", ""}};
    for (const auto& given : m_request.headers) {
        headers.removeIf([&given](const auto& own) { return own.first == given.first; });
        headers << given;
    }
    for (const auto& [name, value] : headers)
        m_headers = curl_slist_append(m_headers, (name + ": " + value).trimmed().constData());
    curl_easy_setopt(m_handle, CURLOPT_HTTPHEADER, m_headers);
}

void HttpHop::setUpTls() {
    curl_easy_setopt(m_handle, CURLOPT_SSLVERSION, long{CURL_SSLVERSION_TLSv1_2});
    // The machine's authorities one by one as they are asked for: reading all of them takes longer
    // than a frame.
    curl_easy_setopt(m_handle, CURLOPT_CAPATH, "/etc/ssl/certs");
    const QByteArray own = m_requests.authorityFor(m_request.url);
    curl_easy_setopt(m_handle, CURLOPT_CAINFO, own.isEmpty() ? nullptr : own.constData());
}

std::size_t HttpHop::header(char* bytes, std::size_t one, std::size_t size, void* hop) {
    auto& self = *static_cast<HttpHop*>(hop);
    self.m_headBytes += one * size;
    if (self.m_headBytes > maxHead)
        return 0;
    self.takeHeader(QByteArrayView(bytes, static_cast<qsizetype>(one * size)));
    return one * size;
}

void HttpHop::takeHeader(QByteArrayView line) {
    if (m_hasHead)
        return; // what follows a body in pieces
    if (line.startsWith("HTTP/")) {
        m_head = {};
        m_head.status = line.toByteArray().simplified().split(' ').value(1).toInt();
    } else if (const auto location = valueOf(line, "Location")) {
        m_head.location = *location;
    } else if (const auto length = valueOf(line, "Content-Length")) {
        m_head.length = length->toULongLong();
    } else if (line.toByteArray().trimmed().isEmpty()) {
        m_hasHead = m_head.status >= 200;
    }
}

std::size_t HttpHop::body(char* bytes, std::size_t one, std::size_t size, void* hop) {
    static_cast<HttpHop*>(hop)->m_pending.append(bytes, qsizetype(one) * qsizetype(size));
    return one * size;
}

void HttpHop::progressed() {
    if (m_hasHead && !std::exchange(m_isHeadTold, true))
        tell(m_receiver.head, m_head);
    if (!m_isOver && !m_pending.isEmpty())
        tell(m_receiver.data, std::exchange(m_pending, {}));
}

void HttpHop::ended(CURLcode code) {
    // A word ahead of the answer is the answer when nothing follows it.
    const bool isAhead = !m_hasHead && m_head.status >= 100 && m_head.status < 200;
    m_hasHead = m_hasHead || isAhead;
    progressed();
    if (m_isOver)
        return;
    if (code == CURLE_OK || isAhead)
        finish(std::nullopt);
    else
        finish(HopError{false, reason(code)});
}

QString HttpHop::reason(CURLcode code) const {
    switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
        // The TLS library's own words do not say what to do about it.
        return text("The server's certificate can't be trusted.");
    case CURLE_COULDNT_CONNECT: {
        long error = 0;
        curl_easy_getinfo(m_handle, CURLINFO_OS_ERRNO, &error);
        return QString::fromStdString(std::generic_category().message(static_cast<int>(error)));
    }
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
        return text("Connection closed");
    case CURLE_WRITE_ERROR:
    case CURLE_OUT_OF_MEMORY: // a single line that is longer than the library takes
        return text("The header of the answer is too long.");
    default:
        return QString::fromUtf8(curl_easy_strerror(code));
    }
}

void HttpHop::finish(const std::optional<HopError>& error) {
    m_isOver = true;
    tell(m_receiver.finished, error);
}

} // namespace tamsel
