#pragma once

#include "feedback/service_time.h"
#include "feedback/ticket_records.h"

#include <QList>
#include <QObject>

namespace tamsel {

class Clock;

/// What a ticket can be about. The key is the service's.
struct TicketCategory {
    Q_GADGET
    Q_PROPERTY(QString key MEMBER key)
    Q_PROPERTY(QString label MEMBER label)
    Q_PROPERTY(QString symbol MEMBER symbol)

public:
    QString key;
    QString label; ///< translated
    QString symbol;

    bool operator==(const TicketCategory&) const = default;
};

// The service's records as the screen shows them. Whatever it sent is cut and cleaned for that.

struct TicketRow {
    Q_GADGET
    Q_PROPERTY(QString uuid MEMBER uuid)
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString status MEMBER status)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString time MEMBER time)

public:
    QString uuid; ///< as it came
    QString title;
    QString status;
    QString symbol; ///< of its category
    QString time;   ///< of its last change

    bool operator==(const TicketRow&) const = default;
};

struct TicketPage {
    Q_GADGET
    Q_PROPERTY(QString title MEMBER title)
    Q_PROPERTY(QString content MEMBER content)
    Q_PROPERTY(QString status MEMBER status)

public:
    QString title;
    QString content;
    QString status;

    bool operator==(const TicketPage&) const = default;
};

struct CommentRow {
    Q_GADGET
    Q_PROPERTY(QString id MEMBER id)
    Q_PROPERTY(bool isSupport MEMBER isSupport)
    Q_PROPERTY(QString text MEMBER text)
    Q_PROPERTY(QString time MEMBER time)

public:
    QString id;
    bool isSupport = false;
    QString text;
    QString time;

    bool operator==(const CommentRow&) const = default;
};

/// In the order in which they are offered.
QList<TicketCategory> ticketCategories();

QList<TicketRow> ticketRows(const std::vector<TicketItem>& tickets, const Clock& clock,
                            const TimeStyle& style);
TicketPage ticketPage(const TicketDetail& ticket);
QList<CommentRow> commentRows(const std::vector<TicketComment>& comments, const Clock& clock,
                              const TimeStyle& style);

} // namespace tamsel
