#include "../support/logic_fixture.h"

#include "update/update_mgr.h"

namespace tamsel {

struct UpdatesTest : LogicFixture {
    FakeSystemLog log;
    FakeSystemLog driverLog;
    std::unique_ptr<Quorel> quorel = makeQuorel();

    std::unique_ptr<Quorel> makeQuorel() {
        return std::make_unique<Quorel>(
            QuorelServices{updater, bundle, queue, clock, log, driverLog});
    }
    QStringList takeLines(FakeSystemLog& from) {
        QStringList lines;
        for (const FakeSystemLog::Line& line : std::exchange(from.lines, {}))
            lines << line.text;
        return lines;
    }
    std::string status() const {
        const UpdateStatus& status = quorel->status();
        static const char* const names[] = {"available", "downloading", "error", "idle",
                                            "checking",  "up to date",  "ready"};
        return names[status.kind] + (" " + status.version.toStdString()) +
               status.message.toStdString() +
               (status.progress > 0 ? std::to_string(status.progress).substr(0, 4) : "");
    }
    void beginCheck() {
        updater.isInSession = false;
        quorel->check(true);
        takeLines(log);
        takeLines(driverLog);
    }
    const AppcastItem item{"1.5", "200"};
    const UpdaterError noUpdate{updaterErrorDomain.toString(), 1001, "none"};
    const UpdaterError other{"Elsewhere", 1001, "broken"};
    int acknowledged = 0;
    std::function<void()> acknowledge = [this] { ++acknowledged; };
};

TEST_F(UpdatesTest, StartsWithOrWithoutAFeed) {
    EXPECT_EQ(takeLines(log),
              (QStringList{"[Quorel] 初始化",
                           "[Quorel] QLFeedURL 未設置（需 consumer 在 Info.plist 配置）",
                           "[Quorel] SPUUpdater 啟動成功"}));
    EXPECT_FALSE(updater.automatic);
    EXPECT_EQ(updater.delegate->feedURLString(), std::nullopt);
    bundle.infoStrings["QLFeedURL"] = "https://a.b/feed?x=1";
    updater.startResult = fail("no");
    quorel = makeQuorel();
    EXPECT_EQ(takeLines(log),
              (QStringList{"[Quorel] 初始化", "[Quorel] QLFeedURL: https://a.b/feed?x=1",
                           "[Quorel] SPUUpdater 啟動失敗: no"}));
    clock.zone = QTimeZone(3600);
    clock.wallTime = std::chrono::system_clock::time_point(std::chrono::seconds(1794834300));
    EXPECT_EQ(updater.delegate->feedURLString(), "https://a.b/feed?x=1?t=261116.1405");
}

TEST_F(UpdatesTest, EachOutcomeOfACheck) {
    const std::tuple<std::function<void()>, std::string, QString> cases[] = {
        {[&] { updater.delegate->didFindValidUpdate(item); }, "available 1.5",
         "[Quorel] didFindValidUpdate: 1.5 (build 200)"},
        {[&] { updater.driver->showUpdateFound(item, [](auto) {}); }, "available 1.5",
         "[Quorel] onUpdateFound: 1.5 (build 200)"},
        {[&] { updater.delegate->didNotFindUpdate(); }, "up to date ",
         "[Quorel] updaterDidNotFindUpdate()"},
        {[&] { updater.driver->showUpdateNotFound(noUpdate, acknowledge); }, "up to date ",
         "[Quorel] onUpToDate"},
        {[&] { updater.delegate->didAbortWithError(noUpdate); }, "up to date ",
         "[Quorel] 已是最新版本"},
        {[&] { updater.delegate->didAbortWithError(other); }, "error broken",
         "[Quorel] didAbortWithError: broken"},
        {[&] { updater.driver->showUpdaterError(other, acknowledge); }, "error broken",
         "[Quorel] onErr: broken"},
        {[&] { updater.delegate->didFinishUpdateCycle(std::nullopt); }, "up to date ", ""},
        {[&] { updater.delegate->didFinishUpdateCycle(other); }, "error broken", ""},
    };
    for (const auto& [happen, outcome, line] : cases) {
        beginCheck();
        EXPECT_EQ(status(), "checking ");
        queue.advance(Milliseconds(10'000));
        happen();
        EXPECT_EQ(status(), outcome);
        EXPECT_EQ(takeLines(log).join('|'), line);
        EXPECT_EQ(quorel->lastUpdateCheckDate(), clock.now());
        updater.delegate->didFinishUpdateCycle(std::nullopt);
        queue.advance(Milliseconds(30'000));
        EXPECT_EQ(status(), outcome) << "decided is decided, and no time-out comes later";
    }
    EXPECT_EQ(acknowledged, 2);
    updater.driver->showUpdateNotFound(noUpdate, acknowledge);
    EXPECT_EQ(driverLog.lines.last(),
              (FakeSystemLog::Line{SystemLogType::debug, "[Quorel] showUpdateNotFoundWithError"}));
    takeLines(log);
    EXPECT_EQ(quorel->availableBuildNumber(), "200");

    beginCheck();
    queue.advance(Milliseconds(29'999));
    EXPECT_EQ(status(), "checking ");
    queue.advance(Milliseconds(1));
    EXPECT_EQ(status(), "error 檢查超時，請稍後再試");
    EXPECT_EQ(takeLines(log), QStringList{"[Quorel] ❌ 檢查超時 (30s)"});
    EXPECT_EQ(quorel->lastUpdateCheckDate(), clock.now());
}

TEST_F(UpdatesTest, ARunningSessionRefusesChecks) {
    takeLines(log);
    updater.isInSession = true;
    quorel->check(true);
    updater.isInSession = false;
    updater.canCheck = false;
    quorel->checkInBackground();
    EXPECT_EQ(takeLines(log),
              (QStringList{"[Quorel] check skipped: session already in progress",
                           "[Quorel] checkInBackground skipped: session already in progress"}));
    EXPECT_EQ(updater.calls, QStringList{});
    EXPECT_EQ(status(), "idle ");
    updater.canCheck = true;
    quorel->check(false);
    quorel->checkInBackground();
    EXPECT_EQ(takeLines(log),
              (QStringList{"[Quorel] check(userInitiated: false)", "[Quorel] checkInBackground"}));
    EXPECT_EQ(updater.calls, (QStringList{"check", "background"}));
}

TEST_F(UpdatesTest, FromAFindToTheInstallation) {
    std::vector<int> answers;
    const auto reply = [&](SPUUserUpdateChoice choice) { answers.push_back(int(choice)); };
    beginCheck();
    updater.driver->showUserInitiatedUpdateCheck();
    updater.driver->showUpdateFound(item, reply);
    quorel->downloadAndInstall();
    quorel->downloadAndInstall(); // answered already: found again, then downloaded at once
    EXPECT_EQ(answers, std::vector<int>{1});
    EXPECT_EQ(updater.calls, (QStringList{"check", "check"}));
    updater.driver->showUpdateFound(item, reply);
    EXPECT_EQ(answers, (std::vector<int>{1, 1}));
    updater.driver->showDownloadDidReceiveDataOfLength(5);
    updater.driver->showDownloadInitiated();
    EXPECT_EQ(status(), "downloading ");
    updater.driver->showDownloadDidReceiveDataOfLength(10);
    EXPECT_EQ(status(), "downloading ") << "no total yet";
    updater.driver->showDownloadInitiated();
    updater.driver->showDownloadDidReceiveExpectedContentLength(50'000'000);
    updater.driver->showDownloadDidReceiveDataOfLength(25'000'000);
    EXPECT_EQ(status(), "downloading 0.50");
    updater.driver->showDownloadDidReceiveDataOfLength(50'000'000);
    EXPECT_EQ(status(), "downloading 1.50") << "what comes is what is told";
    updater.driver->showDownloadDidStartExtractingUpdate();
    quorel->tryInstallOnDeactivate();
    updater.driver->showReadyToInstallAndRelaunch(reply);
    EXPECT_EQ(status(), "ready ");
    quorel->installAndRelaunch();
    quorel->installAndRelaunch();
    EXPECT_EQ(answers, (std::vector<int>{1, 1, 1}));
    updater.driver->showReadyToInstallAndRelaunch(reply);
    quorel->tryInstallOnDeactivate();
    updater.driver->showInstallingUpdate();
    updater.driver->showUpdateInstalledAndRelaunched(acknowledge);
    EXPECT_EQ(answers.size(), 4U);
    EXPECT_EQ(
        takeLines(driverLog).join('|'),
        "[Quorel] 用戶發起檢查|[Quorel] 發現更新: 1.5|[Quorel] 開始下載|[Quorel] 發現更新: "
        "1.5|[Quorel] 自動開始下載|[Quorel] 下載開始|[Quorel] 下載開始|[Quorel] 預期大小: "
        "50000000 bytes|[Quorel] 開始解壓|[Quorel] 準備安裝|[Quorel] 安裝並重啟|[Quorel] "
        "安裝並重啟|[Quorel] 準備安裝|[Quorel] 安裝並重啟|[Quorel] 正在安裝...|[Quorel] 安裝完成");

    answers.clear();
    updater.driver->showUpdateFound(item, reply);
    quorel->skipVersion("1.5");
    updater.driver->showUpdateFound(item, reply);
    quorel->remindLater();
    updater.driver->showUpdateFound(item, reply);
    updater.driver->dismissUpdateInstallation();
    quorel->skipVersion("1.5");
    EXPECT_EQ(answers, (std::vector<int>{0, 2}));
    EXPECT_EQ(status(), "idle ");
    bool isAllowed = true;
    updater.driver->showUpdatePermissionRequest([&](SUUpdatePermissionResponse response) {
        isAllowed = response.automaticUpdateChecks || response.sendSystemProfile;
    });
    EXPECT_FALSE(isAllowed);
}

TEST_F(UpdatesTest, AFailedUpdateIsToldUntilItIsRead) {
    static_cast<void>(defaults.setString("did not start", failedUpdateKey));
    {
        UpdateMgr manager(*quorel, defaults, queue, clock, logger);
        quorel->checkInBackground();
        updater.delegate->didNotFindUpdate();
        EXPECT_EQ(manager.failedUpdate(), "did not start");
    }
    UpdateMgr later(*quorel, defaults, queue, clock, logger);
    EXPECT_EQ(later.failedUpdate(), "did not start");
    later.failedUpdateRead();
    EXPECT_EQ(later.failedUpdate(), "");
    UpdateMgr afterThat(*quorel, defaults, queue, clock, logger);
    EXPECT_EQ(afterThat.failedUpdate(), "");
}

TEST_F(UpdatesTest, TheManagerMirrorsAndChecksEveryFourHours) {
    takeLog();
    const auto make = [&] {
        return std::make_unique<UpdateMgr>(*quorel, defaults, queue, clock, logger);
    };
    auto manager = make();
    EXPECT_EQ(takeLog(), QStringList{"[更新] UpdateMgr 初始化（Quorel facade）"});
    int shown = 0;
    QObject::connect(manager.get(), &UpdateMgr::readyToInstall, [&] { ++shown; });
    queue.advance(UpdateMgr::checkItv - Milliseconds(1));
    EXPECT_EQ(updater.calls, QStringList{});
    queue.advance(Milliseconds(1));
    EXPECT_EQ(updater.calls, QStringList{"background"});
    EXPECT_EQ(manager->checkStatus().kind, UpdateStatus::checking);
    EXPECT_EQ(manager->lastUpdateCheckDate(), std::nullopt);
    updater.driver->showDownloadDidReceiveExpectedContentLength(10);
    updater.driver->showDownloadDidReceiveDataOfLength(4);
    EXPECT_EQ(manager->checkStatus(), UpdateStatus::downloaded(0.4));
    EXPECT_EQ(manager->lastUpdateCheckDate(), std::nullopt);
    updater.delegate->didFindValidUpdate(item);
    EXPECT_EQ(manager->availableVer(), "1.5");
    EXPECT_EQ(manager->lastUpdateCheckDate(), clock.now());
    updater.driver->showReadyToInstallAndRelaunch([](auto) {});
    EXPECT_EQ(shown, 1);

    manager->setDisableAutoCheck(true);
    queue.advance(2 * UpdateMgr::checkItv);
    manager = make();
    EXPECT_TRUE(manager->disableAutoCheck());
    queue.advance(2 * UpdateMgr::checkItv);
    EXPECT_EQ(updater.calls, QStringList{"background"});
    manager->setDisableAutoCheck(false);
    queue.advance(UpdateMgr::checkItv);
    EXPECT_EQ(updater.calls.size(), 2);
    manager.reset();
    quorel.reset();
    queue.advance(2 * UpdateMgr::checkItv);
    EXPECT_EQ(queue.pendingTimers(), 0U);
}

} // namespace tamsel
