#pragma once

#include <QString>

#include <optional>
#include <vector>

// The ticket service's records, as it sends them. Times are the service's own texts.

namespace tamsel {

/// One row of the list.
struct TicketItem {
    QString uuid; ///< hexadecimal digits and hyphens
    QString category;
    QString title;
    QString status; ///< "pending", "replied", "closed" or anything else
    QString atime;  ///< of its creation
    QString mtime;  ///< of its last change

    bool operator==(const TicketItem&) const = default;
};

struct TicketComment {
    QString id;
    QString authorType; ///< "admin": the support side; anything else: the user
    QString authorId;
    QString content;
    QString atime;

    bool operator==(const TicketComment&) const = default;
};

/// One ticket with its conversation.
struct TicketDetail {
    QString uuid;
    QString category;
    QString title;
    QString content;
    QString status;
    QString atime;
    QString mtime;
    std::vector<TicketComment> comments; ///< oldest first

    bool operator==(const TicketDetail&) const = default;
};

// The envelopes; `res` is the service's status word.

struct TicketListResponse {
    QString res;
    std::vector<TicketItem> results;
};

struct TicketDetailResponse {
    QString res;
    TicketDetail ticket;
};

struct TicketResponse {
    QString res;
    QString message;
    QString uuid; ///< of the new ticket
};

struct CommentResponse {
    QString res;
    QString message;
};

struct ErrorResponse {
    QString res;
    QString code;
    std::optional<bool> reportable;
};

} // namespace tamsel
