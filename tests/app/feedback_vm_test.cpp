#include "../support/feedback_fixture.h"

namespace tamsel {

struct FeedbackVMTest : FeedbackFixture {
    void fill(const char* title, const char* content) {
        vm->setTitle(title);
        vm->setContent(content);
    }
};

TEST_F(FeedbackVMTest, TheListIsLoadedAndKept) {
    vm->loadTickets();
    EXPECT_EQ(flags(), "L");
    http.answer(200, list({"a", "b"}));
    EXPECT_EQ(flags(), "");
    EXPECT_EQ(titles(), (QStringList{"a", "b"}));
    EXPECT_EQ(takeLog(), (QStringList{"[Feedback] 獲取工單列表",
                                      "[TicketAPI] Load tickets from tickets.example",
                                      "✅ [Feedback] 獲取到 2 個工單"}));
    vm->loadTickets();
    http.answer(404, "");
    EXPECT_EQ(takeLog().last(), "[Feedback] 載入工單失敗: requestFailed(404, none)");
    EXPECT_EQ(vm->errorMsg(), "Load Failed");
    EXPECT_EQ(titles(), (QStringList{"a", "b"}));
    vm->loadTickets();
    EXPECT_EQ(vm->errorMsg(), "");

    // The answer to an older question never replaces that to a newer one.
    vm->loadTickets();
    EXPECT_FALSE(http.answer(200, list({"old"}), 2));
    EXPECT_TRUE(http.answer(200, list({"new"}), 3));
    EXPECT_EQ(titles(), QStringList{"new"});
    EXPECT_EQ(flags(), "");
}

TEST_F(FeedbackVMTest, FilesATicket) {
    EXPECT_EQ(vm->category(), "bug");
    fill(" \n", "text");
    EXPECT_FALSE(vm->canSubmit());
    fill(" T ", "text");
    EXPECT_TRUE(vm->canSubmit());
    vm->setCategory("other");
    vm->submit();
    vm->submit();
    EXPECT_EQ(http.requests.size(), 1) << "once is enough";
    EXPECT_EQ(flags(), "S");
    http.answer(fail("unreachable"));
    EXPECT_EQ(flags(), "");
    EXPECT_EQ(vm->errorMsg(), "Submit Failed");
    EXPECT_EQ(vm->title(), " T ");
    EXPECT_EQ(takeLog(), (QStringList{"[Feedback] 創建工單: other -  T ",
                                      "[TicketAPI] Create ticket to tickets.example",
                                      "[Feedback] 提交失敗: unreachable"}));
    vm->submit();
    http.answer(200, R"({"_res":"any","message":"m","uuid":"a-b"})");
    EXPECT_EQ(takeLog().mid(2),
              (QStringList{"✅ [Feedback] 工單已創建: a-b", "[Feedback] 獲取工單列表",
                           "[TicketAPI] Load tickets from tickets.example"}));
    EXPECT_TRUE(vm->showSuccess());
    EXPECT_EQ(vm->ticketUuid(), "a-b");
    EXPECT_EQ(flags(), "LS");
    vm->loadTickets();
    EXPECT_EQ(flags(), "LS") << "the filing waits for the load that took over";
    http.answer(200, list({"a-b"}));
    EXPECT_EQ(flags(), "");

    vm->resetForm();
    EXPECT_TRUE(vm->showSuccess());
    EXPECT_EQ(vm->ticketUuid(), std::nullopt);
    EXPECT_EQ(vm->category() + vm->title() + vm->content(), "bug");
    fill("next", "");
    vm->beginNew();
    EXPECT_EQ(vm->title(), "");
    EXPECT_FALSE(vm->showSuccess());
    fill("draft", "");
    vm->beginNew();
    EXPECT_EQ(vm->title(), "draft") << "nothing filed, nothing lost";
}

TEST_F(FeedbackVMTest, OpensATicketAndReplies) {
    vm->loadDetail("a");
    EXPECT_EQ(flags(), "D");
    EXPECT_FALSE(vm->isOpenLoaded());
    http.answer(200, detail("a", comment("x")));
    EXPECT_EQ(flags(), "");
    EXPECT_TRUE(vm->isOpenLoaded());
    EXPECT_TRUE(vm->comments().at(0).isSupport);
    EXPECT_EQ(takeLog(), (QStringList{"[Feedback] 獲取工單詳情: a",
                                      "[TicketAPI] Load ticket detail from tickets.example",
                                      "✅ [Feedback] 工單詳情已載入: a, s, comments: 1"}));
    for (const char* text : {"", " \n\t ", "\u00a0\u2028\r\n"}) {
        vm->setNewComment(text);
        EXPECT_FALSE(vm->canReply());
        vm->addComment("a");
    }
    EXPECT_EQ(takeLog(), QStringList());
    vm->setNewComment("\n hello \n");
    vm->addComment("a");
    vm->addComment("a");
    EXPECT_EQ(flags(), "A");
    http.answer(500, "");
    EXPECT_EQ(takeLog(), (QStringList{"[Feedback] 添加評論到工單: a",
                                      "[TicketAPI] Add comment to tickets.example",
                                      "[Feedback] 添加評論失敗: requestFailed(500, none)"}));
    EXPECT_EQ(flags() + vm->errorMsg() + vm->newComment(), "Add Failed\n hello \n");
    vm->addComment("a");
    EXPECT_TRUE(http.requests.last().body.contains(R"("hello")"));
    http.answer(200, R"({"_res":"ok","message":"added"})");
    EXPECT_EQ(takeLog().mid(2, 1), QStringList{"✅ [Feedback] 評論已添加: added"});
    EXPECT_EQ(vm->newComment(), "");
    EXPECT_EQ(flags(), "DA");
    http.answer(200, detail("a", comment("x") + ',' + comment("hello", "user")));
    EXPECT_EQ(flags(), "");
    EXPECT_EQ(vm->comments().size(), 2);
    EXPECT_FALSE(vm->comments().at(1).isSupport);
    vm->loadDetail("g");
    queue.advance(Milliseconds(0));
    EXPECT_EQ(takeLog().last(), "[Feedback] 載入工單詳情失敗: invalidURL");
    EXPECT_EQ(flags() + vm->errorMsg(), "Load Failed");
}

TEST_F(FeedbackVMTest, EachTicketKeepsItsReply) {
    vm->loadDetail("a");
    vm->setNewComment("for a");
    vm->loadDetail("b");
    EXPECT_FALSE(http.answer(200, detail("a"), 0)) << "too late";
    EXPECT_EQ(vm->newComment(), "");
    vm->setNewComment("for b");
    vm->loadDetail("a");
    EXPECT_EQ(vm->newComment(), "for a");
    vm->addComment("a");
    vm->loadDetail("b");
    http.answer(200, detail("b"));
    EXPECT_TRUE(http.answer(200, R"({"_res":"ok","message":""})", 3));
    EXPECT_EQ(flags() + vm->openUuid() + vm->newComment(), "bfor b");
    vm->loadDetail("a");
    EXPECT_EQ(vm->newComment(), "") << "it was sent";
}

TEST_F(FeedbackVMTest, NothingHappensOnceItIsGone) {
    fill("T", "c");
    vm->setNewComment("r");
    vm->loadTickets();
    vm->submit();
    vm->loadDetail("a");
    vm->addComment("a");
    vm->loadDetail("not one"); // fails by itself, a turn later
    EXPECT_EQ(http.waiting(), 3U);
    takeLog();
    vm.reset();
    EXPECT_EQ(http.waiting(), 0U);
    queue.advance(Milliseconds(0));
    EXPECT_EQ(takeLog(), QStringList());
}

TEST_F(FeedbackVMTest, TimesAreShownAsTheUserWritesThem) {
    using namespace std::chrono;
    clock.wallTime = sys_days(year(2026) / 11 / 23) + hours(17) + minutes(30);
    clock.zone = QTimeZone(8 * 3600); // 01:30 on the 24th
    const std::pair<const char*, const char*> cases[] = {
        {"2026-11-23T17:00:00.123Z", "Today 01:00"},
        {"2026-11-24T00:59:59+08:00", "Today 00:59"},
        {"2026-11-23T15:59:59Z", "Yesterday 23:59"},
        {"2026-11-22T15:59:59.9Z", "11-22 23:59"},
        {"2026-11-24T16:00:00Z", "11-25 00:00"},
        {"2026-11-23 17:05:00.123456 +0000 UTC", "Today 01:05"},
        {"2026-11-23 17:05:00.5 +0000", "Today 01:05"},
        {"2026-11-24 01:05:00 +0800 CST", "Today 01:05"},
        {"2026-11-24 01:05:00 +0800 GMT+8", "Today 01:05"},
        {"2026-11-23 13:35:00 -0330", "Today 01:05"},
        {"2024-02-29T00:00:00Z", "02-29 08:00"},
    };
    for (const auto& [text, shown] : cases)
        EXPECT_EQ(displayedTime(text, clock, {}), shown) << text;
    const QString none = "2026-02-29T00:00:00Z|2026-11-23T17:00:00|2026-11-23T24:00:00Z|"
                         "2026-11-23T17:00:60Z|2026-11-23T17:00:00.Z|2026-11-23 17:05:00|"
                         "2026-11-23 17:05:00 UTC|2026-11-23 17:05:00 +0060|yesterday||"
                         "2026-11-23 17:05:00 +0000 no zone| 2026-11-23T17:00:00Z|"
                         "2026-11-23T17:00:00Z\n";
    for (const QString& text : none.split('|'))
        EXPECT_EQ(displayedTime(text, clock, {}), text) << text.toStdString();
    const auto inStyle = [this](const char* locale, const char* text) {
        return displayedTime(text, clock, TimeStyle::of(QLocale(locale)));
    };
    EXPECT_EQ(inStyle("de_DE", "2026-11-01T00:00:00Z"), "11-01 08:00");
    EXPECT_EQ(inStyle("fa_IR", "2026-11-01T00:00:00Z"), "۰۸-۱۰ ۰۸:۰۰");
    EXPECT_EQ(inStyle("ar_EG", "2026-11-23T17:00:00Z"), "Today ٠١:٠٠");
}

TEST_F(FeedbackVMTest, HostileTextsAreMadeHarmless) {
    vm->loadTickets();
    http.answer(200, list({QString(1 << 20, 'x'), "a\\n\\u202eb\\u0000"}));
    EXPECT_LT(titles().at(0).size(), 500);
    EXPECT_EQ(titles().at(1), "a↵·b·");
    EXPECT_EQ(vm->tickets().at(1).title, QString::fromUtf8("a\n\u202eb\0", 7));
    vm->loadDetail("a");
    http.answer(200, detail("a", comment("1\\r\\n2\\t\\u001b") + ',' +
                                     comment(QByteArray(1 << 20, 'x'), "user")));
    EXPECT_EQ(vm->comments().at(0).text, "1\n2\t·");
    EXPECT_EQ(vm->comments().at(1).text.size(), 20000);
}

} // namespace tamsel
