#include "../support/lifecycle_fixture.h"

#include "coding/cfg_coding.h"
#include "config/default_config.h"

namespace tamsel {

using AppDelegateTest = LifecycleFixture;

TEST_F(AppDelegateTest, StartsInOrder) {
    launch();
    EXPECT_EQ(application.takeCalls(), (QStringList{"make", "activate"}));
    EXPECT_EQ(application.window->shown, 1);
    EXPECT_EQ(statusBar.made, 1);
    EXPECT_EQ(statusBar.shownImage, statusBar.images["MenuBarIcon"]);
    EXPECT_EQ(defaults.values["NSInitialToolTipDelay"], "100");
    EXPECT_EQ(defaults.values["ShowInMenuBar"], "1");
    EXPECT_EQ(reopens, 0) << "a new window is no reopened one";
    const QStringList log = takeLog();
    EXPECT_EQ(log.mid(0, 7), (QStringList{"[AppDelegate] applicationDidFinishLaunching",
                                          "[AppDelegate] 首次啟動：已啟用開機啟動",
                                          "[AppDelegate] 準備加載 DriverKit 擴展...",
                                          "[AppDelegate] 調用 loadExtension...",
                                          "[SysExtMgr] 請求加載擴展: app.tamsel.driver.virtualhid",
                                          "[SysExtMgr] 請求已提交", "[DaemonMgr] Daemon 已註冊"}));
    EXPECT_EQ(daemon.connectionsMade, 0);
    queue.advance(Milliseconds(1999));
    EXPECT_EQ(daemon.connectionsMade, 0);
    queue.advance(Milliseconds(1));
    EXPECT_EQ(takeLog(),
              (QStringList{"[DaemonMgr] 狀態: 運行中 (SMAppService status=1)",
                           "[DaemonXPC] 已連接到 Daemon", "[AppDelegate] Daemon 設置完成，版本: 7",
                           "[DaemonXPC] 配置發送成功"}));
    ASSERT_EQ(daemon.configs.size(), 1U);
    EXPECT_EQ(decodeCfg(daemon.configs[0]), withDefaults({}));

    delegate.applicationWillTerminate();
    queue.advance(Milliseconds(60'000));
    EXPECT_EQ(takeLog(),
              (QStringList{"[AppDelegate] App 退出，XPC 已斷開", "[DaemonXPC] 連接已失效"}));
    EXPECT_EQ(daemon.connectionsMade, 1);
    EXPECT_EQ(daemon.configs.size(), 1U);
}

TEST_F(AppDelegateTest, FollowsTheChoiceOfAMenuBarIcon) {
    const struct {
        std::optional<bool> before;
        bool shows;
    } cases[] = {{std::nullopt, true}, {true, true}, {false, false}};
    for (const auto& c : cases) {
        LifecycleRun run;
        if (c.before)
            static_cast<void>(run.defaults.setBool(*c.before, "ShowInMenuBar"));
        run.launch();
        EXPECT_EQ(run.statusBar.item != nullptr, c.shows);
        EXPECT_EQ(run.defaults.boolForKey("ShowInMenuBar"), c.shows);
        for (const bool show : {false, false, true, true}) {
            static_cast<void>(run.defaults.setBool(show, "ShowInMenuBar"));
            Q_EMIT run.notifications.menuBarVisibilityChanged();
            EXPECT_EQ(run.statusBar.item != nullptr, show);
        }
        EXPECT_EQ(run.statusBar.made, c.shows ? 2 : 1);
    }
}

TEST_F(AppDelegateTest, TheIconIsRedWhileAnUpdateWaits) {
    launch();
    const auto ignore = [](auto) {};
    const auto acknowledge = [] {};
    const struct {
        UpdateStatus::Kind kind;
        std::function<void()> arrange;
        const char* toolTip; ///< not empty: in red
    } cases[] = {
        {UpdateStatus::checking, [&] { quorel.check(true); }, ""},
        {UpdateStatus::updateAvailable,
         [&] {
             updater.driver->showUpdateFound({"2", "200"}, ignore);
         },
         "Version 2 is available"},
        {UpdateStatus::downloading, [&] { updater.driver->showDownloadInitiated(); },
         "Downloading an update"},
        {UpdateStatus::readyToInstall,
         [&] { updater.driver->showReadyToInstallAndRelaunch(ignore); },
         "An update is ready to install"},
        {UpdateStatus::error,
         [&] {
             updater.driver->showUpdaterError({"D", 1, "e"}, acknowledge);
         },
         ""},
        {UpdateStatus::upToDate, [&] { quorel.check(true), updater.delegate->didNotFindUpdate(); },
         ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.kind);
        c.arrange();
        ASSERT_EQ(updateMgr.checkStatus().kind, c.kind);
        EXPECT_EQ(statusBar.toolTip, c.toolTip);
        EXPECT_EQ(statusBar.isRed(), *c.toolTip != '\0');
        if (statusBar.isRed()) {
            // An icon made anew takes both over.
            statusBar.shownKind = ImageKind::templateImage;
            delegate.applicationShouldTerminate();
            queue.advance(Milliseconds(600));
            EXPECT_TRUE(statusBar.isRed());
            EXPECT_EQ(statusBar.toolTip, c.toolTip);
        }
    }
    // Without the picture there is no red one.
    statusBar.images.clear();
    const QImage before = statusBar.shownImage;
    updater.driver->showUpdateFound({"2", "200"}, [](auto) {});
    EXPECT_EQ(statusBar.shownImage, before);
}

TEST_F(AppDelegateTest, HidesInsteadOfClosingAndQuitting) {
    const struct {
        const char* what;
        std::function<void(LifecycleFixture&)> hide;
    } ways[] = {
        {"close",
         [](auto& run) { EXPECT_FALSE(run.delegate.windowShouldClose(*run.application.window)); }},
        {"Command-Q",
         [](auto& run) {
             EXPECT_TRUE(run.localEvents.send(
                 {LocalKeyKind::keyDown, {}, 12, ModifierFlags::command, false, {}, "q"}));
         }},
        {"quit",
         [](auto& run) {
             EXPECT_EQ(run.delegate.applicationShouldTerminate(), TerminateReply::cancel);
         }},
    };
    for (const bool hasIcon : {true, false}) {
        for (const auto& way : ways) {
            SCOPED_TRACE(way.what);
            LifecycleRun run;
            static_cast<void>(run.defaults.setBool(hasIcon, "ShowInMenuBar"));
            run.launch();
            run.application.takeCalls();
            way.hide(run);
            EXPECT_EQ(run.application.takeCalls(), QStringList{"order out"});
            run.queue.advance(Milliseconds(100));
            const QStringList expected = hasIcon ? QStringList{"accessory"} : QStringList{};
            EXPECT_EQ(run.application.takeCalls(), expected);
            EXPECT_EQ(run.statusBar.made, hasIcon ? 1 : 0);
            run.queue.advance(Milliseconds(500));
            EXPECT_EQ(run.statusBar.made, hasIcon ? 2 : 0) << "made anew after the switch";

            // The same window comes back, by its icon or by a second start.
            if (hasIcon)
                run.statusBar.click();
            else
                EXPECT_FALSE(run.delegate.applicationShouldHandleReopen(false));
            EXPECT_EQ(run.application.takeCalls(),
                      (hasIcon ? QStringList{"regular"} : QStringList{}) << "activate");
            EXPECT_EQ(run.reopens, 1);
            run.delegate.openMainWindow();
            EXPECT_EQ(run.reopens, 1) << "it was visible";
        }
    }
    launch();
    const FakeWindow other;
    EXPECT_TRUE(delegate.windowShouldClose(other));
    // Another window stays: no switch. Shown again at once: none either.
    application.hidesWindows = false;
    delegate.applicationShouldTerminate();
    queue.advance(Milliseconds(50));
    application.hidesWindows = true;
    delegate.openMainWindow();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(application.policy, ActivationPolicy::regular);
    EXPECT_FALSE(delegate.applicationShouldTerminateAfterLastWindowClosed());
}

TEST_F(AppDelegateTest, WhichKeysQuit) {
    launch();
    using namespace ModifierFlags;
    const struct {
        std::uint32_t flags;
        const char* characters;
        bool taken;
    } cases[] = {
        {command, "q", true},          {control, "q", true},  {command | option, "q", true},
        {command | shift, "Q", false}, {0, "q", false},       {option, "q", false},
        {command, "w", false},         {command, "qq", false}};
    const auto press = [this](std::uint32_t flags, const char* characters) {
        return localEvents.send({LocalKeyKind::keyDown, {}, 12, flags, false, {}, characters});
    };
    for (const auto& c : cases)
        EXPECT_EQ(press(c.flags, c.characters), c.taken) << c.flags << c.characters;
    delegate.setFullQuit();
    EXPECT_FALSE(press(command, "q"));
}

TEST_F(AppDelegateTest, EndsWhenTheMachineDoes) {
    launch();
    Q_EMIT powerOff.willPowerOff();
    queue.advance(Milliseconds(10'000));
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::now);
    Q_EMIT powerOff.willPowerOff(); // the time begins anew
    queue.advance(Milliseconds(29'999));
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::now);
    queue.advance(Milliseconds(1));
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::cancel);
}

TEST_F(AppDelegateTest, AFullQuitStopsTheDaemonAndEverythingStillToCome) {
    daemon.version = "6";
    launch();
    queue.advance(Milliseconds(2100)); // a restart is under way
    services.calls.clear();
    delegate.fullQuit();
    EXPECT_EQ(services.calls, (QStringList{"unregister daemon", "unregister agent"}));
    queue.advance(Milliseconds(299));
    EXPECT_EQ(application.terminations, 0);
    EXPECT_FALSE(delegate.isFullQuit());
    queue.advance(Milliseconds(1));
    EXPECT_EQ(application.terminations, 1);
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::now);
    queue.advance(Milliseconds(10'000));
    EXPECT_EQ(services.calls.size(), 2);
    EXPECT_EQ(daemon.connectionsMade, 1);
}

TEST_F(AppDelegateTest, OpensItsUrls) {
    launch();
    delegate.applicationShouldTerminate();
    delegate.applicationOpenURLs({"Tamsel://devices", "https://devices", "tamsel", "x"});
    queue.advance(Milliseconds(1000));
    EXPECT_EQ(reopens, 0);
    delegate.applicationOpenURLs({"tamsel://devices", "TAMSEL://about", "tamsel://", "tamsel:map",
                                  "tamsel://user@Combo:8/x?y#z", "tamsel://[bad"});
    EXPECT_EQ(reopens, 1);
    queue.advance(Milliseconds(99));
    EXPECT_EQ(pages, QStringList{});
    queue.advance(Milliseconds(1));
    EXPECT_EQ(pages, (QStringList{"devices", "", "", "combo", ""}));
}

TEST_F(AppDelegateTest, AnUpdateThatIsReadyOpensTheWindow) {
    launch();
    delegate.applicationShouldTerminate();
    queue.advance(Milliseconds(1000));
    updater.driver->showReadyToInstallAndRelaunch([](auto) {});
    EXPECT_TRUE(application.window->visible);
    EXPECT_EQ(reopens, 1);
}

TEST_F(AppDelegateTest, AWindowThatCantBeMadeLeavesTheRestRunning) {
    application.canMakeWindow = false;
    launch();
    queue.advance(Milliseconds(2000));
    EXPECT_EQ(daemon.configs.size(), 1U);
    delegate.openMainWindow();
    EXPECT_EQ(delegate.applicationShouldTerminate(), TerminateReply::cancel);
}

} // namespace tamsel
