#pragma once

#include "base/error.h"
#include "feedback/ticket_records.h"

#include <QByteArray>
#include <QList>

#include <utility>

namespace tamsel {

/// Reads one of the service's envelopes. Bytes from outside: an error says what is wrong and where.
template <class Response>
Result<Response> decodeResponse(const QByteArray& body);

/// A compact JSON object of texts. Fails for a text that has no encoding (half a surrogate pair).
Result<QByteArray> encodeBody(const QList<std::pair<QString, QString>>& texts);

} // namespace tamsel
