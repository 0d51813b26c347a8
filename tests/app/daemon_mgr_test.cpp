#include "daemon/daemon_mgr.h"

#include "support/logic_fixture.h"

namespace tamsel {

namespace {

const ServiceError already{"SMAppServiceErrorDomain", 1, "already"};

} // namespace

struct DaemonMgrTest : LogicFixture {
    FakeService* const daemonSvc = services.daemon;
    FakeService* const agentSvc = services.agent;
};

TEST_F(DaemonMgrTest, PublishesEachStatus) {
    struct Row {
        int status;
        bool isInstalled, isRunning;
        const char* description;
    };
    daemonSvc->current = ServiceStatus::enabled;
    agentSvc->current = ServiceStatus::notFound; // is not looked at
    DaemonMgr mgr(services, bundle, logger);
    EXPECT_EQ(takeLog(), QStringList{"[DaemonMgr] 狀態: 運行中 (SMAppService status=1)"});
    QStringList announced;
    QObject::connect(&mgr, &DaemonMgr::isInstalledChanged, [&] { announced << "installed"; });
    QObject::connect(&mgr, &DaemonMgr::isRunningChanged, [&] { announced << "running"; });
    for (const Row& row : std::initializer_list<Row>{{1, true, true, "運行中"},
                                                     {2, true, false, "等待用戶批准"},
                                                     {0, false, false, "未安裝"},
                                                     {3, false, false, "未安裝"},
                                                     {7, false, false, "未安裝"}}) {
        daemonSvc->current = static_cast<ServiceStatus>(row.status);
        mgr.refreshStatus();
        EXPECT_EQ(mgr.isInstalled(), row.isInstalled) << row.status;
        EXPECT_EQ(mgr.isRunning(), row.isRunning) << row.status;
        EXPECT_EQ(takeLog(), QStringList{QString("[DaemonMgr] 狀態: %1 (SMAppService status=%2)")
                                             .arg(row.description)
                                             .arg(row.status)});
        EXPECT_EQ(std::exchange(announced, {}), (QStringList{"installed", "running"}));
    }
    // Published once as awaiting approval, then withdrawn without an announcement.
    daemonSvc->change(ServiceStatus::requiresApproval);
    daemonSvc->current = ServiceStatus::notRegistered;
    EXPECT_EQ(mgr.statusDescription(), "已安裝（未運行）");
}

TEST_F(DaemonMgrTest, RegistersAndUnregistersBothWhateverBecomesOfOne) {
    const ServiceError other{"SMAppServiceErrorDomain", 2, "no"};
    const ServiceError elsewhere{"app.tamsel.Test", 1, "nein"};
    struct Row {
        void (DaemonMgr::*act)();
        std::optional<ServiceError> daemonError, agentError;
        QString daemonLine, agentLine;
    };
    const auto registering = &DaemonMgr::registerServices;
    const auto unregistering = &DaemonMgr::unregisterServices;
    DaemonMgr mgr(services, bundle, logger);
    for (const Row& row : QList<Row>{
             {registering, {}, {}, "已註冊", "已註冊"},
             {registering, already, already, "已處於註冊狀態", "已處於註冊狀態"},
             {registering, other, {}, "註冊失敗: no", "已註冊"},
             {registering, {}, elsewhere, "已註冊", "註冊失敗: nein"},
             {unregistering, {}, {}, "已取消註冊", "已取消註冊"},
             {unregistering, other, {}, "取消註冊失敗: no", "已取消註冊"},
             {unregistering, {}, elsewhere, "已取消註冊", "取消註冊失敗: nein"},
         }) {
        const bool isRegistering = row.act == registering;
        daemonSvc->current = isRegistering ? ServiceStatus::notRegistered : ServiceStatus::enabled;
        mgr.refreshStatus();
        takeLog();
        daemonSvc->registerError = daemonSvc->unregisterError = row.daemonError;
        agentSvc->registerError = agentSvc->unregisterError = row.agentError;
        (mgr.*row.act)();
        const QString call = isRegistering ? "register " : "unregister ";
        EXPECT_EQ(std::exchange(services.calls, {}),
                  (QStringList{call + "daemon", call + "agent"}));
        EXPECT_EQ(mgr.isRunning(), isRegistering != row.daemonError.has_value());
        EXPECT_EQ(takeLog(),
                  (QStringList{
                      "[DaemonMgr] Daemon " + row.daemonLine, "[DaemonMgr] Agent " + row.agentLine,
                      mgr.isRunning() ? "[DaemonMgr] 狀態: 運行中 (SMAppService status=1)"
                                      : "[DaemonMgr] 狀態: 未安裝 (SMAppService status=0)"}));
    }
}

TEST_F(DaemonMgrTest, RegistersNothingWithoutTheDaemonsProgram) {
    DaemonMgr mgr(services, bundle, logger);
    takeLog();
    bundle.hasDaemon = false;
    daemonSvc->current = ServiceStatus::enabled;
    mgr.registerServices();
    EXPECT_EQ(takeLog(), QStringList{"[DaemonMgr] Daemon 二進制不在 App Bundle 中"});
    EXPECT_TRUE(services.calls.isEmpty());
    EXPECT_FALSE(mgr.isRunning());
}

TEST_F(DaemonMgrTest, SilentlyUnregistersWhatIsNotFoundFirst) {
    daemonSvc->current = agentSvc->current = ServiceStatus::notFound;
    daemonSvc->unregisterError = ServiceError{"app.tamsel.Test", 5, "ignored"};
    DaemonMgr mgr(services, bundle, logger);
    takeLog();
    mgr.registerServices();
    EXPECT_EQ(services.calls, (QStringList{"unregister daemon", "unregister agent",
                                           "register daemon", "register agent"}));
    EXPECT_EQ(takeLog(), (QStringList{"[DaemonMgr] Daemon 已註冊", "[DaemonMgr] Agent 已註冊",
                                      "[DaemonMgr] 狀態: 運行中 (SMAppService status=1)"}));
}

TEST_F(DaemonMgrTest, FollowsWhatIsSettledLater) {
    daemonSvc->afterRegistering = ServiceStatus::requiresApproval;
    DaemonMgr mgr(services, bundle, logger);
    mgr.registerServices();
    takeLog();
    EXPECT_TRUE(mgr.isInstalled());
    Q_EMIT daemonSvc->failedLater(ServiceOperation::registration, {"x", 1, "refused"});
    daemonSvc->change(ServiceStatus::notRegistered);
    Q_EMIT agentSvc->failedLater(ServiceOperation::unregistration, {"x", 1, "stuck"});
    agentSvc->change(ServiceStatus::enabled); // the agent's status is not published
    EXPECT_EQ(takeLog(), (QStringList{"[DaemonMgr] Daemon 註冊失敗: refused",
                                      "[DaemonMgr] 狀態: 未安裝 (SMAppService status=0)",
                                      "[DaemonMgr] Agent 取消註冊失敗: stuck"}));
    EXPECT_FALSE(mgr.isInstalled());
}

} // namespace tamsel
