#include "platform/linux/process/qt_main_queue.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <gtest/gtest.h>

#include <thread>

namespace tamsel {

using std::chrono::milliseconds;

/// The real queue, within a bounded run of the real event loop.
struct QtMainQueueTest : testing::Test {
    QtMainQueue queue;
    QEventLoop loop;

    void runFor(milliseconds duration) {
        const TaskHandle end = queue.after(duration, [this] { loop.quit(); });
        loop.exec();
    }
};

TEST_F(QtMainQueueTest, TasksOfSeveralThreadsKeepTheirOrderAndDieWithTheirContext) {
    std::vector<int> ran;
    auto context = std::make_unique<QObject>();
    queue.async(context.get(), [&] { ran.push_back(-1); });
    std::thread([&] {
        for (int i = 0; i < 100; ++i)
            queue.async(i % 2 ? &loop : nullptr, [&ran, i] { ran.push_back(i); });
    }).join();
    EXPECT_TRUE(ran.empty());
    context.reset();
    runFor(milliseconds(1));
    ASSERT_EQ(ran.size(), 100U);
    EXPECT_TRUE(std::is_sorted(ran.begin(), ran.end()));
    EXPECT_EQ(ran.front(), 0);
}

TEST_F(QtMainQueueTest, HandlesTakeTasksBack) {
    int cancelled = 0;
    int repeated = 0;
    int kept = 0;
    {
        const TaskHandle dropped = queue.after(milliseconds(1), [&] { ++cancelled; });
    }
    auto context = std::make_unique<QObject>();
    queue.after(context.get(), milliseconds(1), [&] { ++cancelled; });
    context.reset();
    queue.after(&loop, milliseconds(1), [&] { ++kept; });
    TaskHandle replaced = queue.after(milliseconds(1), [&] { ++cancelled; });
    replaced = queue.after(milliseconds(2), [] {});
    // A task that cancels itself while it runs.
    TaskHandle every = queue.every(milliseconds(1), [&] {
        if (++repeated == 3)
            every.cancel();
    });
    runFor(milliseconds(50));
    EXPECT_EQ(cancelled, 0);
    EXPECT_EQ(repeated, 3);
    EXPECT_EQ(kept, 1);
}

} // namespace tamsel
