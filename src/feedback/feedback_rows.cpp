#include "feedback/feedback_rows.h"

#include "config/text_rules.h"

#include <QCoreApplication>

#include <algorithm>

namespace tamsel {

namespace {

struct CategoryTexts {
    Q_DECLARE_TR_FUNCTIONS(FeedbackVM)
};

QString symbolOf(const QString& category, const QList<TicketCategory>& categories) {
    const auto found = std::find_if(categories.begin(), categories.end(),
                                    [&](const auto& each) { return each.key == category; });
    return found == categories.end() ? categories.last().symbol : found->symbol;
}

} // namespace

QList<TicketCategory> ticketCategories() {
    return {{QStringLiteral("bug"), CategoryTexts::tr("Bug"), QStringLiteral("ant.fill")},
            {QStringLiteral("feature"), CategoryTexts::tr("Suggestion"),
             QStringLiteral("lightbulb.fill")},
            {QStringLiteral("question"), CategoryTexts::tr("Question"),
             QStringLiteral("questionmark.circle.fill")},
            {QStringLiteral("other"), CategoryTexts::tr("Other"),
             QStringLiteral("ellipsis.circle.fill")}};
}

QList<TicketRow> ticketRows(const std::vector<TicketItem>& tickets, const Clock& clock,
                            const TimeStyle& style) {
    const QList<TicketCategory> categories = ticketCategories();
    QList<TicketRow> rows;
    rows.reserve(qsizetype(tickets.size()));
    for (const TicketItem& ticket : tickets)
        rows.append({ticket.uuid, shownLine(ticket.title), shownLine(ticket.status),
                     symbolOf(ticket.category, categories),
                     shownLine(displayedTime(ticket.mtime, clock, style))});
    return rows;
}

TicketPage ticketPage(const TicketDetail& ticket) {
    return {shownLine(ticket.title), shownText(ticket.content), shownLine(ticket.status)};
}

QList<CommentRow> commentRows(const std::vector<TicketComment>& comments, const Clock& clock,
                              const TimeStyle& style) {
    QList<CommentRow> rows;
    rows.reserve(qsizetype(comments.size()));
    for (const TicketComment& comment : comments)
        rows.append({comment.id, comment.authorType == u"admin", shownText(comment.content),
                     shownLine(displayedTime(comment.atime, clock, style))});
    return rows;
}

} // namespace tamsel
