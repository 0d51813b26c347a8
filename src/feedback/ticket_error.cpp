#include "feedback/ticket_error.h"

namespace tamsel {

QString TicketAPIError::description() const {
    switch (kind) {
    case Kind::requestFailed:
        return message ? *message
                       : QStringLiteral("請求失敗 (狀態碼: %1)")
                             .arg(statusCode ? QString::number(*statusCode)
                                             : QStringLiteral("unknown"));
    case Kind::decodingFailed:
        return QStringLiteral("解碼失敗: ") + QString::fromStdString(cause.description());
    case Kind::invalidURL:
        break;
    }
    return QStringLiteral("無效的 URL");
}

QString TicketAPIError::printed() const {
    switch (kind) {
    case Kind::requestFailed:
        // A single arg(): the service's text may hold place markers of its own.
        return QStringLiteral("requestFailed(%1, %2)")
            .arg(statusCode ? QString::number(*statusCode) : QStringLiteral("none"),
                 message.value_or(QStringLiteral("none")));
    case Kind::decodingFailed:
        return QStringLiteral("decodingFailed(%1)")
            .arg(QString::fromStdString(cause.description()));
    case Kind::invalidURL:
        break;
    }
    return QStringLiteral("invalidURL");
}

QString localizedDescription(const TicketFailure& failure) {
    if (const auto* own = std::get_if<TicketAPIError>(&failure))
        return own->description();
    return QString::fromStdString(std::get<Error>(failure).description());
}

QString printedForm(const TicketFailure& failure) {
    if (const auto* own = std::get_if<TicketAPIError>(&failure))
        return own->printed();
    return QString::fromStdString(std::get<Error>(failure).description());
}

} // namespace tamsel
