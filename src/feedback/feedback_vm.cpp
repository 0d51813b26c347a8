#include "feedback/feedback_vm.h"

#include "config/text_rules.h"
#include "log/logger.h"

namespace tamsel {

namespace {

const QString initialCategory = QStringLiteral("bug");

} // namespace

FeedbackVM::FeedbackVM(TicketAPI& api, const Clock& clock, Logger& logger, TimeStyle style,
                       QObject* parent)
    : QObject(parent),
      m_api(api),
      m_clock(clock),
      m_logger(logger),
      m_style(std::move(style)),
      m_category(initialCategory) {}

void FeedbackVM::loadTickets() {
    setBusy(m_isLoading, true);
    setErrorMsg({});
    m_logger.info(QStringLiteral("[Feedback] 獲取工單列表"));
    m_listLoad = m_api.fetchTickets([this](const TicketAPI::Outcome<TicketAPI::Tickets>& tickets) {
        if (tickets)
            showList(*tickets);
        else
            failed("載入工單失敗", tickets.error(), tr("Load Failed"));
        endLoad(m_isLoading, m_listWaiters);
    });
}

void FeedbackVM::showList(const TicketAPI::Tickets& tickets) {
    m_tickets = tickets;
    m_rows = ticketRows(m_tickets, m_clock, m_style);
    Q_EMIT ticketsChanged();
    m_logger.success(QStringLiteral("[Feedback] 獲取到 %1 個工單").arg(m_tickets.size()));
}

void FeedbackVM::submit() {
    if (m_isSubmitting)
        return;
    setBusy(m_isSubmitting, true);
    m_logger.info(QStringLiteral("[Feedback] 創建工單: ") + m_category + QStringLiteral(" - ") +
                  m_title);
    m_submission = m_api.createTicket(
        m_category, m_title, m_content, [this](const TicketAPI::Outcome<TicketResponse>& filed) {
            if (!filed) {
                failed("提交失敗", filed.error(), tr("Submit Failed"));
                setBusy(m_isSubmitting, false);
                return;
            }
            m_logger.success(QStringLiteral("[Feedback] 工單已創建: ") + filed->uuid);
            m_ticketUuid = filed->uuid;
            m_showSuccess = true;
            Q_EMIT formChanged();
            m_listWaiters.emplace_back([this] { setBusy(m_isSubmitting, false); });
            loadTickets();
        });
}

void FeedbackVM::loadDetail(const QString& uuid) {
    open(uuid);
    setBusy(m_isLoadingDetail, true);
    m_logger.info(QStringLiteral("[Feedback] 獲取工單詳情: ") + uuid);
    m_detailLoad = m_api.fetchTicketDetail(
        uuid, [this, uuid](const TicketAPI::Outcome<TicketDetailResponse>& response) {
            if (response)
                showDetail(uuid, response->ticket);
            else
                failed("載入工單詳情失敗", response.error(), tr("Load Failed"));
            endLoad(m_isLoadingDetail, m_detailWaiters);
        });
}

void FeedbackVM::showDetail(const QString& uuid, const TicketDetail& ticket) {
    m_ticketDetail = ticket;
    m_detailUuid = uuid;
    m_page = ticketPage(ticket);
    m_comments = commentRows(ticket.comments, m_clock, m_style);
    Q_EMIT ticketDetailChanged();
    m_logger.success(QStringLiteral("[Feedback] 工單詳情已載入: %1, %2, comments: %3")
                         .arg(shownLine(ticket.uuid), shownLine(ticket.status),
                              QString::number(ticket.comments.size())));
}

void FeedbackVM::addComment(const QString& uuid) {
    const QString content = m_newComment.trimmed();
    if (content.isEmpty() || m_isAddingComment)
        return;
    setBusy(m_isAddingComment, true);
    m_logger.info(QStringLiteral("[Feedback] 添加評論到工單: ") + uuid);
    m_reply = m_api.addComment(uuid, content,
                               [this, uuid](const TicketAPI::Outcome<CommentResponse>& response) {
                                   if (response) {
                                       commentAdded(uuid, *response);
                                       return;
                                   }
                                   failed("添加評論失敗", response.error(), tr("Add Failed"));
                                   setBusy(m_isAddingComment, false);
                               });
}

void FeedbackVM::commentAdded(const QString& uuid, const CommentResponse& response) {
    m_logger.success(QStringLiteral("[Feedback] 評論已添加: ") + shownLine(response.message));
    const auto end = [this] { setBusy(m_isAddingComment, false); };
    // Meanwhile the user may have turned to another ticket; it stays open, with its own reply.
    if (!m_openUuid.isEmpty() && uuid != m_openUuid) {
        m_otherReplies.remove(uuid);
        end();
        return;
    }
    setNewComment({});
    m_detailWaiters.emplace_back(end);
    loadDetail(uuid);
}

void FeedbackVM::open(const QString& uuid) {
    if (uuid == m_openUuid)
        return;
    if (!m_openUuid.isEmpty()) {
        m_otherReplies.insert(m_openUuid, m_newComment);
        setNewComment(m_otherReplies.take(uuid));
    }
    m_openUuid = uuid;
    Q_EMIT openUuidChanged();
    Q_EMIT ticketDetailChanged(); // whether it is the open one's
}

void FeedbackVM::resetForm() {
    m_category = initialCategory;
    m_title.clear();
    m_content.clear();
    m_ticketUuid.reset();
    Q_EMIT formChanged();
}

void FeedbackVM::beginNew() {
    if (!m_showSuccess)
        return;
    m_showSuccess = false;
    resetForm();
}

void FeedbackVM::setCategory(const QString& category) {
    m_category = category;
    Q_EMIT formChanged();
}

void FeedbackVM::setTitle(const QString& title) {
    m_title = title;
    Q_EMIT formChanged();
}

void FeedbackVM::setContent(const QString& content) {
    m_content = content;
    Q_EMIT formChanged();
}

bool FeedbackVM::canSubmit() const {
    return !m_title.trimmed().isEmpty() && !m_content.trimmed().isEmpty();
}

void FeedbackVM::setNewComment(const QString& text) {
    if (m_newComment == text)
        return;
    m_newComment = text;
    Q_EMIT newCommentChanged();
}

void FeedbackVM::setBusy(bool& flag, bool busy) {
    if (std::exchange(flag, busy) != busy)
        Q_EMIT busyChanged();
}

void FeedbackVM::setErrorMsg(const QString& message) {
    if (m_errorMsg == message)
        return;
    m_errorMsg = message;
    Q_EMIT errorMsgChanged();
}

void FeedbackVM::failed(const char* what, const TicketFailure& failure, const QString& message) {
    m_logger.error(QStringLiteral("[Feedback] ") + QString::fromUtf8(what) + QStringLiteral(": ") +
                   printedForm(failure));
    setErrorMsg(message);
}

void FeedbackVM::endLoad(bool& flag, Waiters& waiters) {
    setBusy(flag, false);
    for (const auto& end : std::exchange(waiters, {}))
        end();
}

} // namespace tamsel
