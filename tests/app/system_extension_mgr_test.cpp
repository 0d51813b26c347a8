#include "../support/logic_fixture.h"
#include "driver/system_extension_mgr.h"

namespace tamsel {

namespace {

using Calls = std::vector<std::string>;
using Kind = SystemExtensionRequest::Kind;

const QString pgrep = "/usr/bin/pgrep";
const QString osascript = "/usr/bin/osascript";
const QString requested = "[SysExtMgr] 請求加載擴展: app.tamsel.driver.virtualhid";
const QString submitted = "[SysExtMgr] 請求已提交";
const QString needsApprovalLine = "[SysExtMgr] 需要用戶批准";
const QString failed11 = "[SysExtMgr] 失敗: domain=OSSystemExtensionErrorDomain code=11 "
                         "Error Domain=OSSystemExtensionErrorDomain Code=11 \"Failure 11\"";
const QString repairStarts = "[SysExtMgr] requestCanceled，嘗試殺死卡住的舊驅動...";
const QString noneStuck = "[SysExtMgr] 未找到卡住的 dext 進程";
const QString killed = "[SysExtMgr] 已殺死舊 dext 進程: [812, 990]";
const QString notKilled = "[SysExtMgr] 殺死舊驅動失敗（用戶取消或權限不足）";
const QString retrying = "[SysExtMgr] 重試加載擴展...";
const QString script = "do shell script \"kill -9 812; kill -9 990\" with administrator privileges";
const QStringList retryLines{retrying, requested, submitted};

SysExtStatus failure(std::int64_t code) {
    return SysExtStatus::failed(code, QStringLiteral("Failure %1").arg(code));
}

} // namespace

struct SystemExtensionMgrTest : LogicFixture {
    FakeSystemExtensionService& service = extensions;
    std::unique_ptr<SystemExtensionMgr> mgr = makeMgr();

    std::unique_ptr<SystemExtensionMgr> makeMgr() {
        connectClient();
        return std::make_unique<SystemExtensionMgr>(
            SysExtServices{service, processes, background, queue, logger}, client);
    }
    void load() {
        mgr->loadExtension();
        takeLog();
    }
    void finish(std::int64_t result) {
        service.finish(result);
        queue.runPending();
    }
    void fail(std::int64_t code) {
        service.fail(code);
        queue.runPending();
    }
    void kill() {
        background.runPending();
        queue.runPending();
    }
};

TEST_F(SystemExtensionMgrTest, RequestsAreSubmittedForTheDriver) {
    EXPECT_EQ(mgr->status(), SysExtStatus::unknown);
    EXPECT_EQ(mgr->extensionStatus(), std::nullopt);
    EXPECT_FALSE(mgr->property("extensionStatus").isValid());
    EXPECT_FALSE(mgr->isLoaded() || mgr->needsApproval());

    mgr->loadExtension();
    EXPECT_EQ(mgr->status(), SysExtStatus::loading);
    EXPECT_EQ(takeLog(), (QStringList{requested, submitted}));
    mgr->unloadExtension();
    EXPECT_EQ(mgr->status(), SysExtStatus::unloading);
    EXPECT_EQ(takeLog(), QStringList{"[SysExtMgr] 請求卸載擴展: app.tamsel.driver.virtualhid"});
    EXPECT_EQ(service.requests, (QList<SystemExtensionRequest>{
                                    {Kind::activation, "app.tamsel.driver.virtualhid"},
                                    {Kind::deactivation, "app.tamsel.driver.virtualhid"}}));
    EXPECT_TRUE(daemon.calls.empty());
}

// Every event is taken in every state, and what it leads to does not depend on the state.
TEST_F(SystemExtensionMgrTest, EachEventLeadsToItsStateFromEveryState) {
    using Step = std::function<void(SystemExtensionMgrTest&)>;
    const auto load = [](auto& t) { t.load(); };
    const auto unload = [](auto& t) { t.mgr->unloadExtension(); };
    const auto approve = [](auto& t) { t.service.needApproval(); };
    const auto outcome = [](std::int64_t result) {
        return Step([result](auto& t) { t.service.finish(result, 0); });
    };
    const auto failWith = [](std::int64_t code) {
        return Step([code](auto& t) { t.service.fail(code); });
    };
    struct Event {
        Step act;
        SysExtStatus status;
        bool needsApproval;
        std::optional<std::int64_t> result;
    };
    const std::vector<Event> events{
        {load, SysExtStatus::loading, true, {}},
        {unload, SysExtStatus::unloading, true, {}},
        {approve, SysExtStatus::needsApproval, true, {}},
        {outcome(0), SysExtStatus::loaded, false, 0},
        {outcome(1), SysExtStatus::completesAfterRestart, false, 1},
        {outcome(2), SysExtStatus::unknownResult, false, 2},
        {outcome(-1), SysExtStatus::unknownResult, false, -1},
        {failWith(4), failure(4), false, {}},
        {failWith(13), failure(13), false, {}},
    };
    for (std::size_t before = 0; before < events.size(); ++before) {
        for (std::size_t i = 0; i < events.size(); ++i) {
            SCOPED_TRACE(testing::Message() << before << " then " << i);
            mgr = makeMgr();
            service.requests.clear();
            this->load();
            events[before].act(*this);
            queue.runPending();
            approve(*this);
            queue.runPending();
            const auto result = mgr->extensionStatus();
            const bool wasLoaded = mgr->isLoaded();
            events[i].act(*this);
            queue.runPending();
            EXPECT_EQ(mgr->status(), events[i].status);
            EXPECT_EQ(mgr->needsApproval(), events[i].needsApproval);
            EXPECT_EQ(mgr->extensionStatus(), events[i].result ? events[i].result : result);
            EXPECT_EQ(mgr->isLoaded(), wasLoaded || events[i].result == 0);
            EXPECT_TRUE(background.tasks.empty()) << "no repair";
        }
    }
}

TEST_F(SystemExtensionMgrTest, CallbacksLogAtOnceAndChangeFieldsOnTheNextTurn) {
    QStringList changes;
    const auto note = [&changes](const char* name) {
        return [&changes, name] { changes << name; };
    };
    QObject::connect(mgr.get(), &SystemExtensionMgr::statusChanged, note("status"));
    QObject::connect(mgr.get(), &SystemExtensionMgr::isLoadedChanged, note("isLoaded"));
    QObject::connect(mgr.get(), &SystemExtensionMgr::needsApprovalChanged, note("needsApproval"));
    QObject::connect(mgr.get(), &SystemExtensionMgr::extensionStatusChanged, note("result"));
    load();
    service.needApproval();
    EXPECT_EQ(takeLog(), QStringList{needsApprovalLine});
    service.finish(0);
    EXPECT_EQ(takeLog(), QStringList{"✅ [SysExtMgr] 完成: 0"});
    EXPECT_EQ(changes, QStringList{"status"});
    queue.runPending();
    EXPECT_EQ(changes, (QStringList{"status", "needsApproval", "status", "result", "needsApproval",
                                    "isLoaded", "status"}));
    EXPECT_EQ(mgr->property("extensionStatus").toLongLong(), 0);
    EXPECT_EQ(mgr->property("status").value<SysExtStatus>(), SysExtStatus::loaded);
    // A failure's lines and its numbers are the platform's, of whatever domain.
    service.fail({"NSCocoaErrorDomain", -257, "No permission", "Cocoa says no"});
    EXPECT_EQ(takeLog(),
              QStringList{"[SysExtMgr] 失敗: domain=NSCocoaErrorDomain code=-257 Cocoa says no"});
    queue.runPending();
    EXPECT_EQ(mgr->status(), SysExtStatus::failed(-257, "No permission"));
}

TEST_F(SystemExtensionMgrTest, TheDaemonTakesTheDevicesAgainOneSecondAfterACompletedActivation) {
    load();
    finish(0);
    queue.advance(Milliseconds(999));
    EXPECT_TRUE(daemon.calls.empty());
    queue.advance(Milliseconds(1));
    EXPECT_EQ(daemon.takeCalls(), Calls{"startGrabbing"});
    for (const std::int64_t other : {1, 2}) {
        finish(other);
        queue.advance(Milliseconds(5000));
        EXPECT_TRUE(daemon.calls.empty()) << other;
    }
}

TEST_F(SystemExtensionMgrTest, ReplacementIsGrantedAfterTheDaemonHasLetGo) {
    client.disconnect();
    queue.runPending();
    load();
    EXPECT_EQ(service.askReplacement("3", "4"), ReplacementAction::replace);
    EXPECT_EQ(daemon.takeCalls(), Calls{"stopGrabbing"}) << "connects first, before it answers";
    EXPECT_EQ(takeLog().value(0), "[SysExtMgr] 請求替換擴展: 3 → 4");

    daemon.implementsProtocol = false; // no proxy: skipped, and without a word
    EXPECT_EQ(service.askReplacement("4", "5"), ReplacementAction::replace);
    EXPECT_TRUE(daemon.calls.empty());
    EXPECT_EQ(takeLog(), QStringList{"[SysExtMgr] 請求替換擴展: 4 → 5"});
}

TEST_F(SystemExtensionMgrTest, ACompletedDeactivationLeavesNoDriver) {
    load();
    finish(0);
    queue.advance(Milliseconds(1000));
    daemon.takeCalls();
    mgr->unloadExtension();
    service.needApproval();
    finish(0);
    EXPECT_EQ(mgr->status(), SysExtStatus::unknown);
    EXPECT_EQ(mgr->extensionStatus(), 0);
    EXPECT_FALSE(mgr->isLoaded() || mgr->needsApproval());
    queue.advance(Milliseconds(5000));
    EXPECT_TRUE(daemon.calls.empty());
    for (const std::int64_t code : {11, 13}) {
        mgr->unloadExtension();
        fail(code);
        EXPECT_EQ(mgr->status(), failure(code));
        EXPECT_TRUE(background.tasks.empty()) << "nothing is killed for a removal";
    }
    // Each outcome is that of its own request, whichever was submitted last.
    service.requests = {{Kind::activation, "x"}, {Kind::deactivation, "x"}};
    service.finish(0, 0);
    queue.runPending();
    EXPECT_EQ(mgr->status(), SysExtStatus::loaded);
}

TEST_F(SystemExtensionMgrTest, AStuckDriverIsKilledOnceAndTheActivationRetried) {
    struct Case {
        std::optional<ProcessResult> search;
        std::optional<ProcessResult> kill;
        QString line;
        QList<QStringList> runs;
    };
    const QStringList search{pgrep, "-f", "app.tamsel.driver.virtualhid"};
    const QStringList kill{osascript, "-e", script};
    const ProcessResult found{0, "812\n990\n"};
    const std::vector<Case> cases{
        {found, ProcessResult{0, {}}, killed, {search, kill}},
        {found, ProcessResult{1, {}}, notKilled, {search, kill}},
        {found, std::nullopt, notKilled, {search, kill}},
        {ProcessResult{1, {}}, std::nullopt, noneStuck, {search}},
        {std::nullopt, std::nullopt, noneStuck, {search}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.line.toStdString());
        processes.answers.clear();
        if (c.search)
            processes.answers[pgrep] = *c.search;
        if (c.kill)
            processes.answers[osascript] = *c.kill;
        load();
        service.needApproval();
        queue.runPending();
        takeLog();
        fail(11);
        EXPECT_EQ(takeLog(), (QStringList{failed11, repairStarts}));
        EXPECT_EQ(mgr->status(), SysExtStatus::repairing);
        EXPECT_FALSE(mgr->needsApproval());
        EXPECT_EQ(daemon.takeCalls(), Calls{"stopGrabbing"});
        EXPECT_TRUE(processes.runs.isEmpty()) << "not on the main thread";
        queue.advance(Milliseconds(60'000)); // as long as the prompt is open
        EXPECT_EQ(mgr->status(), SysExtStatus::repairing);
        this->kill();
        EXPECT_EQ(takeLog(), QStringList{c.line});
        EXPECT_EQ(processes.takeRuns(), c.runs);
        queue.advance(Milliseconds(1999));
        EXPECT_EQ(mgr->status(), SysExtStatus::repairing);
        queue.advance(Milliseconds(1));
        EXPECT_EQ(takeLog(), retryLines);
        EXPECT_EQ(mgr->status(), SysExtStatus::loading);

        fail(11);
        EXPECT_EQ(takeLog(), QStringList{failed11});
        EXPECT_EQ(mgr->status(), failure(11)) << "one repair only";
        EXPECT_TRUE(background.tasks.empty());
        load();
        finish(1);
        fail(11);
        EXPECT_EQ(mgr->status(), failure(11)) << "not completed yet";
        finish(0); // opens the way for the next case's repair
        queue.advance(Milliseconds(1000));
        daemon.takeCalls();
    }
}

TEST_F(SystemExtensionMgrTest, OnlyTheServicesOwnFailureStartsTheRepair) {
    load();
    service.fail({"NSPOSIXErrorDomain", 11, "Try again", "d"});
    queue.runPending();
    EXPECT_EQ(mgr->status(), SysExtStatus::failed(11, "Try again"));
    fail(10);
    EXPECT_TRUE(background.tasks.empty());
    fail(11);
    EXPECT_EQ(mgr->status(), SysExtStatus::repairing) << "neither has used the repair up";
}

TEST_F(SystemExtensionMgrTest, AnUnreachableDaemonHoldsNothingUp) {
    daemon.implementsProtocol = false;
    load();
    fail(11);
    kill();
    queue.advance(Milliseconds(2000));
    finish(0);
    queue.advance(Milliseconds(1000));
    EXPECT_EQ(mgr->status(), SysExtStatus::loaded);
    EXPECT_FALSE(takeLog().join(u' ').contains("[DaemonXPC] 無法"));
}

TEST_F(SystemExtensionMgrTest, AManagerThatIsGoneDoesNothingMore) {
    const std::vector<std::function<void()>> lastWords{
        [&] { service.needApproval(); },
        [&] { service.finish(0); },
        [&] { finish(0); },
        [&] { service.fail(11); },
        [&] { fail(11); },
        [&] { fail(11), background.runPending(); },
        [&] { fail(11), kill(); },
        [&] { fail(11), kill(), queue.advance(Milliseconds(1999)); },
    };
    for (const auto& act : lastWords) {
        mgr = makeMgr();
        load();
        act();
        mgr.reset();
        EXPECT_EQ(service.delegate, nullptr);
        daemon.takeCalls();
        takeLog();
        const auto requests = service.requests.size();
        background.runPending(); // the kill, once begun, is carried out
        queue.advance(Milliseconds(5000));
        EXPECT_EQ(service.requests.size(), requests);
        EXPECT_TRUE(daemon.calls.empty());
        EXPECT_FALSE(takeLog().contains(retrying));
    }
}

} // namespace tamsel
