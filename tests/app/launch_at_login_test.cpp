#include "app/launch_at_login_mgr.h"

#include "support/logic_fixture.h"

namespace tamsel {

struct LaunchAtLoginTest : LogicFixture {
    const QString key = "HasSetupLaunchAtLogin";
    FakeService* const item = services.mainApp;
    LaunchAtLoginMgr mgr{services, defaults, logger};

    QStringList takeCalls() { return std::exchange(services.calls, {}); }
};

TEST_F(LaunchAtLoginTest, TheFirstLaunchTurnsItOnAndNoLaterOneDoes) {
    mgr.runFirstLaunchStep();
    EXPECT_EQ(takeCalls(), QStringList{"register application"});
    EXPECT_EQ(takeLog(), QStringList{"[AppDelegate] 首次啟動：已啟用開機啟動"});
    EXPECT_TRUE(mgr.isEnabled());
    EXPECT_TRUE(mgr.disable());
    mgr.runFirstLaunchStep();
    EXPECT_FALSE(mgr.isEnabled());
    EXPECT_TRUE(takeLog().isEmpty());
}

TEST_F(LaunchAtLoginTest, AnAttemptThatFailedIsNotRepeated) {
    item->registerError = ServiceError{"x", 1, "not allowed"};
    for (const QStringList& lines :
         {QStringList{"[AppDelegate] 啟用開機啟動失敗: not allowed"}, QStringList{}}) {
        mgr.runFirstLaunchStep();
        EXPECT_EQ(takeLog(), lines);
        EXPECT_TRUE(defaults.values.contains(key));
        EXPECT_EQ(takeCalls().size(), lines.size());
    }
}

TEST_F(LaunchAtLoginTest, NothingIsTurnedOnThatIsOrCantBeNoted) {
    defaults.values[key] = "0"; // any value will do
    mgr.runFirstLaunchStep();
    EXPECT_TRUE(takeLog().isEmpty());
    defaults.failure = Error{"disk full"};
    mgr.runFirstLaunchStep();
    EXPECT_EQ(takeLog(), QStringList{"[AppDelegate] 啟用開機啟動失敗: disk full"});
    EXPECT_TRUE(takeCalls().isEmpty());
}

TEST_F(LaunchAtLoginTest, ASwitchThatFailsKeepsItsPlace) {
    EXPECT_TRUE(mgr.switchTo(true));
    item->registerError = item->unregisterError = ServiceError{"x", 1, "read-only"};
    for (const bool wanted : {false, true})
        EXPECT_EQ(mgr.switchTo(wanted), !wanted);
    EXPECT_EQ(takeLog(), QStringList(2, "切換開機啟動失敗: read-only"));
    item->unregisterError.reset();
    EXPECT_FALSE(mgr.switchTo(false));
    EXPECT_FALSE(mgr.isEnabled());
    item->current = ServiceStatus::requiresApproval;
    EXPECT_FALSE(mgr.isEnabled());
}

} // namespace tamsel
