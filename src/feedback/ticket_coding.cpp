#include "feedback/ticket_coding.h"

#include "coding/json_reading.h"

namespace tamsel {

template <>
struct FieldsOf<TicketItem> {
    static constexpr auto list =
        std::tuple{Field{"uuid", &TicketItem::uuid},   Field{"category", &TicketItem::category},
                   Field{"title", &TicketItem::title}, Field{"status", &TicketItem::status},
                   Field{"atime", &TicketItem::atime}, Field{"mtime", &TicketItem::mtime}};
};

template <>
struct FieldsOf<TicketComment> {
    static constexpr auto list = std::tuple{
        Field{"id", &TicketComment::id}, Field{"author_type", &TicketComment::authorType},
        Field{"author_id", &TicketComment::authorId}, Field{"content", &TicketComment::content},
        Field{"atime", &TicketComment::atime}};
};

template <>
struct FieldsOf<TicketDetail> {
    static constexpr auto list = std::tuple{
        Field{"uuid", &TicketDetail::uuid},     Field{"category", &TicketDetail::category},
        Field{"title", &TicketDetail::title},   Field{"content", &TicketDetail::content},
        Field{"status", &TicketDetail::status}, Field{"atime", &TicketDetail::atime},
        Field{"mtime", &TicketDetail::mtime},   Field{"comments", &TicketDetail::comments}};
};

template <>
struct FieldsOf<TicketListResponse> {
    static constexpr auto list = std::tuple{Field{"_res", &TicketListResponse::res},
                                            Field{"results", &TicketListResponse::results}};
};

template <>
struct FieldsOf<TicketDetailResponse> {
    static constexpr auto list = std::tuple{Field{"_res", &TicketDetailResponse::res},
                                            Field{"ticket", &TicketDetailResponse::ticket}};
};

template <>
struct FieldsOf<TicketResponse> {
    static constexpr auto list =
        std::tuple{Field{"_res", &TicketResponse::res}, Field{"message", &TicketResponse::message},
                   Field{"uuid", &TicketResponse::uuid}};
};

template <>
struct FieldsOf<CommentResponse> {
    static constexpr auto list = std::tuple{Field{"_res", &CommentResponse::res},
                                            Field{"message", &CommentResponse::message}};
};

template <>
struct FieldsOf<ErrorResponse> {
    static constexpr auto list =
        std::tuple{Field{"_res", &ErrorResponse::res}, Field{"code", &ErrorResponse::code},
                   Field{"reportable", &ErrorResponse::reportable}};
};

/// Found by the readers of records through the place's namespace.
static Result<void> readJson(const Json& value, const Place& place, QString& out) {
    if (const auto* text = value.get_ptr<const Json::string_t*>())
        out = QString::fromStdString(*text);
    return expectKind(value.is_string(), "a string", value, place);
}

template <class Response>
Result<Response> decodeResponse(const QByteArray& body) {
    const Result<Json> document = parseJson({body.constData(), std::size_t(body.size())});
    if (!document)
        return tl::unexpected(document.error());
    Response response;
    if (Result<void> done = readJson(*document, Place(), response); !done)
        return tl::unexpected(std::move(done.error()));
    return response;
}

template Result<TicketListResponse> decodeResponse(const QByteArray&);
template Result<TicketDetailResponse> decodeResponse(const QByteArray&);
template Result<TicketResponse> decodeResponse(const QByteArray&);
template Result<CommentResponse> decodeResponse(const QByteArray&);
template Result<ErrorResponse> decodeResponse(const QByteArray&);

Result<QByteArray> encodeBody(const QList<std::pair<QString, QString>>& texts) {
    Json object = Json::object();
    for (const auto& [key, text] : texts) {
        if (!text.isValidUtf16())
            return fail("the text has no encoding", key.toStdString());
        object[key.toStdString()] = text.toStdString();
    }
    return QByteArray::fromStdString(object.dump());
}

} // namespace tamsel
