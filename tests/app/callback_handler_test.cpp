#include "../support/logic_fixture.h"

#include "config/text_rules.h"

#include <QUrl>

#include <limits>

namespace tamsel {

struct CallbackHandlerTest : LogicFixture {
    KeyViewerCallbackHandler handler{callbacks};

    std::optional<bool> open(const std::string& url, double deadline) {
        std::optional<bool> reply;
        handler.openURL(url, deadline, [&](bool opened) { reply = opened; });
        EXPECT_FALSE(reply) << "answered off the main queue";
        queue.runPending();
        return reply;
    }
};

TEST_F(CallbackHandlerTest, KeyEventsKeepTheirOrderAndHoldTheHandlerWeakly) {
    std::vector<KeyEvent> seen;
    handler.onKeyEvent({4, true, 0, 4, false}); // nobody listens yet when it arrives
    handler.setOnEvent([&](const KeyEvent& event) { seen.push_back(event); });
    handler.onKeyEvent({57, true, 2, 224, true});
    handler.onKeyEvent({57, false, 2, 224, true});
    EXPECT_TRUE(seen.empty());
    queue.runPending();
    ASSERT_EQ(seen.size(), 3U);
    EXPECT_EQ(seen[1], (KeyEvent{57, true, 2, 224, true}));
    EXPECT_EQ(seen[2].keyDown, false);

    auto dying = std::make_unique<KeyViewerCallbackHandler>(callbacks);
    dying->setOnEvent([&](const KeyEvent& event) { seen.push_back(event); });
    dying->onKeyEvent({});
    dying.reset();
    handler.onKeyEvent({});
    handler.setOnEvent(nullptr);
    queue.runPending();
    EXPECT_EQ(seen.size(), 3U);
}

TEST_F(CallbackHandlerTest, ClipboardTextIsHandedOverAndNeverLogged) {
    // A family emoji and an accented letter are one character each, CR LF is one.
    for (const auto& [contents, count] : std::vector<std::pair<std::optional<QString>, int>>{
             {std::nullopt, 0},
             {QString(), 0},
             {"secret", 6},
             {"👨‍👩‍👧e\u0301\r\n", 3}}) {
        pasteboard.contents = contents;
        std::optional<std::optional<std::string>> reply;
        handler.requestClipboardText([&](auto text) { reply = text; });
        queue.runPending();
        ASSERT_TRUE(reply);
        EXPECT_EQ(*reply, contents ? std::optional(contents->toStdString()) : std::nullopt);
        EXPECT_EQ(takeLog(),
                  QStringList{QString("[DaemonXPC] 已回覆剪貼簿文字請求（chars=%1）").arg(count)});
    }
}

TEST_F(CallbackHandlerTest, OpensBeforeTheDeadlineOnly) {
    const QString expired = "[DaemonXPC] openURL 請求已過期，跳過（防雙開）";
    for (const double deadline : {1000.0, 999.9, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_EQ(open("https://tamsel.app", deadline), false);
        EXPECT_EQ(takeLog(), QStringList{expired});
    }
    EXPECT_EQ(open("https://tamsel.app/a%20b?q=1", 1000.001), true);
    EXPECT_EQ(takeLog(), QStringList{"[DaemonXPC] openURL 已執行"});
    EXPECT_EQ(workspace.opened, QList<QUrl>{QUrl("https://tamsel.app/a%20b?q=1")});

    // Waiting for the main thread counts against the deadline.
    std::optional<bool> reply;
    handler.openURL("a://b", 1000.5, [&](bool opened) { reply = opened; });
    clock.uptimeAtStart = 1001;
    queue.runPending();
    EXPECT_EQ(reply, false);
    EXPECT_EQ(workspace.opened.size(), 1);
}

TEST_F(CallbackHandlerTest, RefusesIllegalURLsAndLogsAFailedOpening) {
    const QString fits = "https://tamsel.app/" + QString(2048 - 19, 'x');
    for (const auto& [text, openable] :
         std::vector<std::pair<QString, bool>>{{"", false},
                                               {fits, true},
                                               {fits + 'x', false},
                                               {"file:///etc/passwd", false},
                                               {"FiLe:///x", false},
                                               {"tamsel.app", false},
                                               {"http://[bad", false},
                                               {" https://tamsel.app", false},
                                               {"MyApp://x", true},
                                               {"mailto:a@b.c", true}}) {
        EXPECT_EQ(openableURL(text).has_value(), openable) << text.left(30).toStdString();
        EXPECT_EQ(open(text.toStdString(), 2000), openable) << text.left(30).toStdString();
        EXPECT_EQ(takeLog(), QStringList{openable ? "[DaemonXPC] openURL 已執行"
                                                  : "[DaemonXPC] openURL 非法 URL，拒絕"});
    }
    workspace.pending.takeFirst()({});
    EXPECT_TRUE(takeLog().isEmpty());
    workspace.pending.takeFirst()(fail("no handler", "xdg-open"));
    EXPECT_EQ(takeLog(), QStringList{"[DaemonXPC] openURL 打開失敗: xdg-open: no handler"});
}

} // namespace tamsel
