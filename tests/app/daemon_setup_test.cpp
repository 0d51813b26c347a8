#include "../support/lifecycle_fixture.h"

namespace tamsel {

using DaemonSetupTest = LifecycleFixture;

TEST_F(DaemonSetupTest, EachAnswerToTheVersionCheck) {
    const QString differs = "[AppDelegate] Daemon 版本不一致（daemon=%1 app=%2），重啟 daemon";
    const QString timedOut = "[AppDelegate] Daemon 版本查詢超時（舊版本），重啟 daemon";
    const QString done = "[AppDelegate] Daemon 設置完成，版本: ";
    const struct {
        const char* what;
        std::function<void(LifecycleFixture&)> arrange;
        QString verdict;
        int delay; ///< from the check to the verdict, ms
        bool restarts;
    } cases[] = {
        {"same", [](auto&) {}, done + "7", 0, false},
        {"other build", [](auto& run) { run.daemon.version = "6"; }, differs.arg("6", "7"), 0,
         true},
        {"compared as text", [](auto& run) { run.daemon.version = "07"; }, differs.arg("07", "7"),
         0, true},
        {"own version unknown", [](auto& run) { run.bundle.infoStrings.clear(); },
         differs.arg("7", ""), 0, true},
        {"no version", [](auto& run) { run.daemon.version = ""; }, done, 0, false},
        {"no proxy", [](auto& run) { run.daemon.implementsProtocol = false; }, done, 0, false},
        {"no answer", [](auto& run) { run.daemon.silent = true; }, timedOut, 5000, true},
        {"error", [](auto& run) { run.daemon.callError = "unknown"; }, timedOut, 5000, true},
        {"nobody there", [](auto& run) { run.daemon.reachable = false; }, timedOut, 5000, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LifecycleRun run;
        c.arrange(run);
        run.launch();
        run.services.calls.clear();
        run.queue.advance(Milliseconds(2000 + c.delay));
        EXPECT_EQ(run.takeLog().count(c.verdict), 1);
        // A version that comes too late changes nothing.
        run.daemon.silent = false;
        QStringList expected;
        if (c.restarts)
            expected << "unregister daemon"
                     << "unregister agent";
        EXPECT_EQ(run.services.calls, expected);
        run.queue.advance(Milliseconds(1499));
        EXPECT_EQ(run.services.calls, expected);
        run.queue.advance(Milliseconds(1));
        if (c.restarts)
            expected << "register daemon"
                     << "register agent";
        EXPECT_EQ(run.services.calls, expected);
        run.queue.advance(Milliseconds(1999));
        run.takeLog();
        run.queue.advance(Milliseconds(1));
        EXPECT_EQ(run.takeLog().count("[AppDelegate] Daemon 已重啟並重連"), c.restarts ? 1 : 0);
        run.queue.advance(Milliseconds(30'000));
        EXPECT_EQ(run.services.calls, expected) << "one restart";
        if (run.daemon.reachable && run.daemon.implementsProtocol) {
            EXPECT_EQ(run.daemon.configs.size(), 1U);
        }
    }
}

TEST_F(DaemonSetupTest, RepairsServicesThatDoNotRun) {
    const struct {
        ServiceStatus status; ///< what registering leads to
        bool repairs;
    } cases[] = {{ServiceStatus::enabled, false},
                 {ServiceStatus::requiresApproval, false},
                 {ServiceStatus::notRegistered, true}};
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.status));
        LifecycleRun run;
        run.services.daemon->afterRegistering = c.status;
        run.launch();
        const QString line =
            "[AppDelegate] Daemon 未啟用，延遲 unregister + register（launchd 清理）";
        EXPECT_EQ(run.takeLog().contains(line), c.repairs);
        EXPECT_EQ(run.services.calls.count("unregister daemon"), c.repairs ? 1 : 0);
        run.queue.advance(Milliseconds(1499));
        EXPECT_EQ(run.services.calls.count("register daemon"), 1);
        run.queue.advance(Milliseconds(1));
        EXPECT_EQ(run.services.calls.count("register daemon"), c.repairs ? 2 : 1);
        run.queue.advance(Milliseconds(c.repairs ? 1999 : 499));
        EXPECT_EQ(run.daemon.connectionsMade, 0);
        run.queue.advance(Milliseconds(1));
        EXPECT_EQ(run.daemon.takeCalls(), (std::vector<std::string>{"getVersion", "updateCfg"}));
    }
}

TEST_F(DaemonSetupTest, EveryReconnectSendsTheConfigurationOnce) {
    launch();
    queue.advance(Milliseconds(2000));
    daemon.takeCalls();
    // By the driver's order to start, which found the connection lost.
    extensions.finish(0);
    queue.advance(Milliseconds(900));
    daemon.current->interrupt();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.takeCalls(), (std::vector<std::string>{"startGrabbing", "updateCfg"}));
    // By the version check, and by the restart, which send it themselves.
    for (const char* version : {"7", "6"}) {
        LifecycleRun run;
        run.daemon.version = version;
        run.launch();
        const bool restarts = run.daemon.version != "7";
        if (restarts)
            run.queue.advance(Milliseconds(4500)); // disconnected, registered again
        run.client.connect();
        run.queue.advance(Milliseconds(700));
        run.daemon.current->interrupt();
        run.queue.advance(Milliseconds(10'000));
        EXPECT_EQ(run.daemon.configs.size(), 1U) << version;
    }
}

} // namespace tamsel
