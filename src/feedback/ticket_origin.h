#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace tamsel {

class Bundle;

/// The ticket service's origin: "https://" and a host, nothing else; a port only on this machine.
class TicketOrigin final {
public:
    explicit TicketOrigin(QString text);
    /// The bundle's "QLTicketOrigin", or the maker's service.
    static TicketOrigin of(const Bundle& bundle);

    /// Empty when the origin's text is no address.
    QString host() const;
    /// The address of a path ("/tickets") there; nothing when the origin's text is no origin.
    std::optional<QUrl> url(const QString& path) const;

private:
    QString m_text;
};

} // namespace tamsel
