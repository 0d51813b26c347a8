#pragma once

#include "base/error.h"

#include <QString>

#include <optional>
#include <variant>

namespace tamsel {

/// The ticket client's own failures.
struct TicketAPIError {
    enum class Kind { requestFailed, decodingFailed, invalidURL };

    Kind kind = Kind::invalidURL;
    std::optional<int> statusCode = {};  ///< requestFailed
    std::optional<QString> message = {}; ///< requestFailed: the service's code
    Error cause = {};                    ///< decodingFailed

    static TicketAPIError requestFailed(std::optional<int> status, std::optional<QString> message) {
        return {Kind::requestFailed, status, std::move(message), {}};
    }
    static TicketAPIError decodingFailed(Error cause) {
        return {Kind::decodingFailed, {}, {}, std::move(cause)};
    }
    static TicketAPIError invalidURL() { return {}; }

    /// In words, for people.
    QString description() const;
    /// The case with its payload, for the log.
    QString printed() const;
};

/// Why an operation has no result: a failure of the client's own, or one of the transport or of
/// encoding, unchanged.
using TicketFailure = std::variant<TicketAPIError, Error>;

QString localizedDescription(const TicketFailure& failure);
QString printedForm(const TicketFailure& failure);

} // namespace tamsel
