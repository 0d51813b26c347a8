#include "../support/feedback_fixture.h"

#include "platform/fake/fake_bundle.h"

#include <QUrlQuery>
#include <QUuid>

namespace tamsel {

struct TicketAPITest : FeedbackFixture {
    TaskHandle handle;
    QString outcome; ///< "ok", or the description and the printed form of the failure

    template <class T>
    TicketAPI::Handler<T> note() {
        return [this](const TicketAPI::Outcome<T>& result) {
            outcome =
                result ? "ok"
                       : localizedDescription(result.error()) + " | " + printedForm(result.error());
        };
    }
    QString fetchDetail(const Result<HttpReply>& reply) {
        outcome.clear();
        handle = api.fetchTicketDetail("a-1", note<TicketDetailResponse>());
        http.answer(reply);
        return outcome;
    }
    QByteArray deviceId() { return defaults.values[TicketAPI::deviceIdKey]; }
};

using HeaderList = QList<std::pair<QByteArray, QByteArray>>;

TEST_F(TicketAPITest, EachOperationSendsWhatItSaysAndNothingElse) {
    handle = api.fetchTickets(note<TicketAPI::Tickets>());
    EXPECT_EQ(takeLog(), QStringList{"[TicketAPI] Load tickets from tickets.example"});
    const QUrlQuery query(http.requests[0].url);
    EXPECT_EQ(http.requests[0].url.toString(QUrl::RemoveQuery), "https://tickets.example/tickets");
    const QString id = query.queryItemValue("device_id");
    EXPECT_EQ(query.queryItems().size(), 2);
    EXPECT_EQ(query.queryItemValue("app"), "tamsel");
    EXPECT_EQ(id.toUtf8(), deviceId());
    EXPECT_EQ(QUuid(id).toString(QUuid::WithoutBraces).toUpper(), id);
    EXPECT_EQ(http.requests[0].headers, (HeaderList{{"Accept", "application/json"}}));

    const HeaderList posted{{"Content-Type", "application/json"}, {"Accept", "application/json"}};
    handle = api.createTicket("bug", "T\"", "é\n", note<TicketResponse>());
    handle = api.fetchTicketDetail("0aF-9", note<TicketDetailResponse>());
    handle = api.addComment("aB", "c", note<CommentResponse>());
    EXPECT_EQ(takeLog(), (QStringList{"[TicketAPI] Create ticket to tickets.example",
                                      "[TicketAPI] Load ticket detail from tickets.example",
                                      "[TicketAPI] Add comment to tickets.example"}));
    const struct {
        QByteArray method, url, body;
        HeaderList headers;
    } expected[] = {
        {"POST", "https://tickets.example/ticket",
         R"({"app":"tamsel","category":"bug","content":"é\n","device_id":")" + id.toUtf8() +
             R"(","title":"T\""})",
         posted},
        {"GET", "https://tickets.example/ticket/0aF-9", "", http.requests[0].headers},
        {"POST", "https://tickets.example/ticket/aB/comment",
         R"({"content":"c","device_id":")" + id.toUtf8() + "\"}", posted},
    };
    for (qsizetype i = 0; i < 3; ++i) {
        const HttpRequest& request = http.requests[i + 1];
        EXPECT_EQ(request.method, expected[i].method);
        EXPECT_EQ(request.url.toEncoded(), expected[i].url);
        EXPECT_EQ(request.body, expected[i].body);
        EXPECT_EQ(request.headers, expected[i].headers);
        EXPECT_EQ(request.deadline, std::chrono::seconds(60));
    }
}

TEST_F(TicketAPITest, TheDeviceIdentifierIsKept) {
    const auto sent = [this] {
        handle = api.fetchTickets(note<TicketAPI::Tickets>());
        return QUrlQuery(http.requests.last().url)
            .queryItemValue("device_id", QUrl::FullyDecoded)
            .toUtf8();
    };
    defaults.values[TicketAPI::deviceIdKey] = "any text & +%";
    EXPECT_EQ(sent(), "any text & +%");
    defaults.values[TicketAPI::deviceIdKey] = "\xff no text";
    const QByteArray fresh = sent();
    EXPECT_EQ(fresh.size(), 36);
    EXPECT_EQ(deviceId(), fresh);
    EXPECT_EQ(sent(), fresh);
    // An unreadable store: one identifier for now, and the stored one once it can be read.
    defaults.failure = Error{"broken"};
    const QByteArray standIn = sent();
    EXPECT_NE(standIn, fresh);
    EXPECT_EQ(sent(), standIn);
    defaults.failure.reset();
    EXPECT_EQ(sent(), fresh);
}

TEST_F(TicketAPITest, WhatMustNotBeSentIsNot) {
    for (const char* uuid : {"", "a/b", "a.b", "a b", "ag", "a\n", "a%20", "１"}) {
        outcome.clear();
        handle = api.fetchTicketDetail(uuid, note<TicketDetailResponse>());
        EXPECT_EQ(outcome, "") << "never at once";
        queue.advance(Milliseconds(0));
        EXPECT_EQ(outcome, "無效的 URL | invalidURL") << uuid;
        outcome.clear();
        handle = api.addComment(uuid, "c", note<CommentResponse>());
        queue.advance(Milliseconds(0));
        EXPECT_EQ(outcome, "無效的 URL | invalidURL") << uuid;
    }
    EXPECT_EQ(takeLog(), QStringList());
    handle = api.createTicket("bug", QString(QChar(0xd800)), "c", note<TicketResponse>());
    queue.advance(Milliseconds(0));
    EXPECT_EQ(outcome, "title: the text has no encoding | title: the text has no encoding");
    EXPECT_EQ(http.requests.size(), 0);

    const std::pair<const char*, bool> origins[] = {
        {"https://a.b", true},         {"https://localhost:81", true},
        {"https://127.0.0.1:8", true}, {"https://[::1]:8", true},
        {"https://a.b:81", false},     {"https://127.0.0.1.evil.net:8", false},
        {"http://a.b", false},         {"https://a.b/", false},
        {"https://a.b?x=", false},     {"https://a.b#", false},
        {"https://u@a.b", false},      {"https://", false},
        {"https://a b", false},        {"", false}};
    for (const auto& [text, isOrigin] : origins)
        EXPECT_EQ(TicketOrigin(text).url("/tickets").has_value(), isOrigin) << text;
    EXPECT_EQ(TicketOrigin::of(bundle).host(), "tickets.tamsel.app");
    bundle.infoStrings["QLTicketOrigin"] = "nothing";
    TicketAPI lost(TicketOrigin::of(bundle), http, defaults, queue, logger);
    handle = lost.fetchTickets(note<TicketAPI::Tickets>());
    queue.advance(Milliseconds(0));
    EXPECT_EQ(outcome, "無效的 URL | invalidURL");
    EXPECT_EQ(http.requests.size(), 0);
}

TEST_F(TicketAPITest, AnswersAreReadAsTheirStatusSays) {
    const QByteArray error = R"({"_res":"err","code":"C%1")";
    const std::tuple<std::optional<int>, QByteArray, const char*> cases[] = {
        {200, detail("a"), "ok"},
        {299, detail("a"), "ok"},
        {199, detail("a"), "請求失敗 (狀態碼: 199) | requestFailed(199, none)"},
        {300, detail("a"), "請求失敗 (狀態碼: 300) | requestFailed(300, none)"},
        {404, "", "請求失敗 (狀態碼: 404) | requestFailed(404, none)"},
        {500, error + "}", "C%1 | requestFailed(500, C%1)"},
        {500, error + R"(,"reportable":null,"x":[]})", "C%1 | requestFailed(500, C%1)"},
        {500, error + R"(,"reportable":1})", "請求失敗 (狀態碼: 500) | requestFailed(500, none)"},
        {500, R"({"_res":"ERR","code":"C"})", "請求失敗 (狀態碼: 500) | requestFailed(500, none)"},
        {std::nullopt, "?", "請求失敗 (狀態碼: unknown) | requestFailed(none, none)"},
        {std::nullopt, error + "}", "C%1 | requestFailed(none, C%1)"},
    };
    for (const auto& [status, body, expected] : cases)
        EXPECT_EQ(fetchDetail(HttpReply{status, body}), expected);
    EXPECT_EQ(fetchDetail(fail("no way", "there")), "there: no way | there: no way");
}

TEST_F(TicketAPITest, AnUnreadableAnswerIsLogged) {
    const QString many = QString("é").repeated(501); // "e" with a combining accent: one character
    const std::pair<QByteArray, QStringList> cases[] = {
        {R"({"_res":"ok"})",
         {"[TicketAPI] 解碼失敗: ticket: the key is missing",
          R"([TicketAPI] 原始響應: {"_res":"ok"})"}},
        {detail("a", R"({"id":7})"),
         {"[TicketAPI] 解碼失敗: ticket.comments[0].id: expected a string, found an integer",
          "[TicketAPI] 原始響應: " + detail("a", R"({"id":7})")}},
        {"[]",
         {"[TicketAPI] 解碼失敗: expected an object, found an array", "[TicketAPI] 原始響應: []"}},
        {"\xff", {"[TicketAPI] 解碼失敗: not valid JSON at byte 1"}},
        {many.toUtf8(),
         {"[TicketAPI] 解碼失敗: not valid JSON at byte 1",
          "[TicketAPI] 原始響應: " + many.chopped(many.size() / 501)}},
    };
    for (const auto& [body, lines] : cases) {
        takeLog();
        EXPECT_EQ(fetchDetail(HttpReply{200, body}).section(" | ", 1).left(15), "decodingFailed(");
        EXPECT_EQ(takeLog().mid(1), lines);
    }
    EXPECT_EQ(fetchDetail(HttpReply{200, "{"}).left(6), "解碼失敗: ");
    EXPECT_EQ(fetchDetail(HttpReply{200, QByteArray(100000, '[')}).left(6), "解碼失敗: ");
}

} // namespace tamsel
