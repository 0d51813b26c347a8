#include "../support/logic_fixture.h"

#include <thread>

namespace tamsel {

struct LoggerTest : LogicFixture {};

TEST_F(LoggerTest, EachLevelHasItsTypeItsLineAndItsIcon) {
    clock.zone = QTimeZone(8 * 3600);
    clock.wallTime = std::chrono::system_clock::time_point(std::chrono::seconds(6 * 3600 + 207));
    Logger local(systemLog, queue, clock, pasteboard);
    local.info("[A] i");
    local.warning("[DaemonXPC] 連接已失效");
    local.error("[A] e");
    local.success("[A] s");
    const QList<FakeSystemLog::Line> expected{
        {SystemLogType::info, "[14:03:27] [A] i"},
        {SystemLogType::standard, "[14:03:27] [DaemonXPC] 連接已失效"},
        {SystemLogType::error, "[14:03:27] [A] e"},
        {SystemLogType::info, "[14:03:27] ✅ [A] s"},
    };
    EXPECT_EQ(systemLog.lines, expected);

    EXPECT_TRUE(local.recentLogs().isEmpty()) << "entries arrive on the main thread later";
    queue.advance(Milliseconds(5000)); // an entry keeps the time of its call
    EXPECT_EQ(local.formattedText(),
              QString("\u2705 14:03:27 [A] s\n\u274C 14:03:27 [A] e\n"
                      "\u26A0\uFE0F 14:03:27 [DaemonXPC] 連接已失效\n\u2139\uFE0F 14:03:27 [A] i"));
    EXPECT_EQ(local.recentLogs().last().message, "[A] s");
    local.copyAll();
    EXPECT_EQ(pasteboard.clears, 1);
    EXPECT_EQ(pasteboard.contents, local.formattedText());
}

TEST_F(LoggerTest, ADisabledTypeIsStillRecorded) {
    systemLog.infoEnabled = false;
    logger.info("a");
    logger.success("b");
    logger.warning("c");
    queue.runPending();
    EXPECT_EQ(systemLog.lines.size(), 1);
    EXPECT_EQ(logger.recentLogs().size(), 3);
}

TEST_F(LoggerTest, KeepsTheLast200AndClears) {
    EXPECT_EQ(logger.formattedText(), "");
    for (int i = 0; i < 250; ++i)
        logger.info(QString::number(i));
    queue.runPending();
    ASSERT_EQ(logger.recentLogs().size(), 200);
    EXPECT_EQ(logger.recentLogs().first().message, "50");
    EXPECT_EQ(logger.recentLogs().last().message, "249");
    logger.clear();
    logger.info("after");
    queue.runPending();
    EXPECT_EQ(logger.recentLogs().size(), 1);
    EXPECT_FALSE(logger.formattedText().contains('\n'));
}

TEST_F(LoggerTest, ManyThreadsLoseNothing) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([this] {
            for (int i = 0; i < 50; ++i)
                logger.info("x");
        });
    for (auto& thread : threads)
        thread.join();
    queue.runPending();
    EXPECT_EQ(logger.recentLogs().size(), 200);
    EXPECT_EQ(systemLog.lines.size(), 200);
    for (const auto& line : systemLog.lines)
        EXPECT_EQ(line.text, "[00:00:00] x");
}

} // namespace tamsel
