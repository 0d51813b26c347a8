#pragma once

#include "feedback/feedback_rows.h"
#include "feedback/ticket_api.h"

#include <QHash>

namespace tamsel {

class Logger;

/// The feedback screen's model: the tickets of this machine, the ticket being written, the one that
/// is open with its conversation, and the reply to it. A flow ends with its busy flag off, by a
/// result or by a short message; none starts again by itself.
///
/// A load takes the place of one of its kind that still runs: what was asked for last is what is
/// shown. Filing and replying do not start a second time while they run. Main thread.
class FeedbackVM final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QList<tamsel::TicketRow> rows READ rows NOTIFY ticketsChanged)
    Q_PROPERTY(QList<tamsel::TicketCategory> cats READ cats CONSTANT)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY busyChanged)
    Q_PROPERTY(QString errorMsg READ errorMsg NOTIFY errorMsgChanged)
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY formChanged)
    Q_PROPERTY(QString title READ title WRITE setTitle NOTIFY formChanged)
    Q_PROPERTY(QString content READ content WRITE setContent NOTIFY formChanged)
    Q_PROPERTY(bool canSubmit READ canSubmit NOTIFY formChanged)
    Q_PROPERTY(bool isSubmitting READ isSubmitting NOTIFY busyChanged)
    Q_PROPERTY(bool showSuccess READ showSuccess NOTIFY formChanged)
    Q_PROPERTY(QString openUuid READ openUuid NOTIFY openUuidChanged)
    Q_PROPERTY(bool isOpenLoaded READ isOpenLoaded NOTIFY ticketDetailChanged)
    Q_PROPERTY(tamsel::TicketPage page READ page NOTIFY ticketDetailChanged)
    Q_PROPERTY(QList<tamsel::CommentRow> comments READ comments NOTIFY ticketDetailChanged)
    Q_PROPERTY(bool isLoadingDetail READ isLoadingDetail NOTIFY busyChanged)
    Q_PROPERTY(QString newComment READ newComment WRITE setNewComment NOTIFY newCommentChanged)
    Q_PROPERTY(bool canReply READ canReply NOTIFY newCommentChanged)
    Q_PROPERTY(bool isAddingComment READ isAddingComment NOTIFY busyChanged)

public:
    /// All of it outlives the model.
    FeedbackVM(TicketAPI& api, const Clock& clock, Logger& logger, TimeStyle style,
               QObject* parent = nullptr);

    const std::vector<TicketItem>& tickets() const { return m_tickets; }
    const QList<TicketRow>& rows() const { return m_rows; }
    QList<TicketCategory> cats() const { return ticketCategories(); }
    bool isLoading() const { return m_isLoading; }
    /// The last failure, translated; empty when there is none.
    const QString& errorMsg() const { return m_errorMsg; }

    const QString& category() const { return m_category; }
    void setCategory(const QString& category);
    const QString& title() const { return m_title; }
    void setTitle(const QString& title);
    const QString& content() const { return m_content; }
    void setContent(const QString& content);
    /// There is a title and a description.
    bool canSubmit() const;
    bool isSubmitting() const { return m_isSubmitting; }
    bool showSuccess() const { return m_showSuccess; }
    /// Of the ticket just filed.
    const std::optional<QString>& ticketUuid() const { return m_ticketUuid; }

    /// The ticket that the user turned to last; empty before the first.
    const QString& openUuid() const { return m_openUuid; }
    /// The ticket that was loaded last, not yet the open one when that still loads.
    const std::optional<TicketDetail>& ticketDetail() const { return m_ticketDetail; }
    bool isOpenLoaded() const { return m_ticketDetail && m_detailUuid == m_openUuid; }
    /// The ticket that was loaded last, for the screen.
    const TicketPage& page() const { return m_page; }
    const QList<CommentRow>& comments() const { return m_comments; }
    bool isLoadingDetail() const { return m_isLoadingDetail; }

    const QString& newComment() const { return m_newComment; }
    void setNewComment(const QString& text);
    /// There is more than white space to send.
    bool canReply() const { return !m_newComment.trimmed().isEmpty(); }
    bool isAddingComment() const { return m_isAddingComment; }

    Q_INVOKABLE void loadTickets();
    /// Files a ticket of the form's texts as they stand.
    Q_INVOKABLE void submit();
    Q_INVOKABLE void loadDetail(const QString& uuid);
    /// Sends the reply without the white space around it, if there is anything else.
    Q_INVOKABLE void addComment(const QString& uuid);
    Q_INVOKABLE void resetForm();
    /// The form for the next ticket: an empty one once a ticket was filed, else what was begun.
    Q_INVOKABLE void beginNew();

signals:
    void ticketsChanged();
    void ticketDetailChanged();
    void openUuidChanged();
    void busyChanged();
    void errorMsgChanged();
    void formChanged();
    void newCommentChanged();

private:
    /// What waits for a load to end.
    using Waiters = std::vector<std::function<void()>>;

    void setBusy(bool& flag, bool busy);
    void setErrorMsg(const QString& message);
    void failed(const char* what, const TicketFailure& failure, const QString& message);
    void endLoad(bool& flag, Waiters& waiters);
    void showList(const TicketAPI::Tickets& tickets);
    void showDetail(const QString& uuid, const TicketDetail& ticket);
    void commentAdded(const QString& uuid, const CommentResponse& response);
    void open(const QString& uuid);

    TicketAPI& m_api;
    const Clock& m_clock;
    Logger& m_logger;
    TimeStyle m_style;
    std::vector<TicketItem> m_tickets;
    QList<TicketRow> m_rows;
    bool m_isLoading = false;
    QString m_errorMsg;
    QString m_category;
    QString m_title;
    QString m_content;
    bool m_isSubmitting = false;
    bool m_showSuccess = false;
    std::optional<QString> m_ticketUuid;
    QString m_openUuid;
    std::optional<TicketDetail> m_ticketDetail;
    QString m_detailUuid; ///< what m_ticketDetail was asked for as
    TicketPage m_page;
    QList<CommentRow> m_comments;
    bool m_isLoadingDetail = false;
    QString m_newComment;
    QHash<QString, QString> m_otherReplies; ///< begun for tickets that are not open
    bool m_isAddingComment = false;
    Waiters m_listWaiters;
    Waiters m_detailWaiters;
    // What is under way ends with the model, before anything that it would change.
    TaskHandle m_listLoad;
    TaskHandle m_detailLoad;
    TaskHandle m_submission;
    TaskHandle m_reply;
};

} // namespace tamsel
