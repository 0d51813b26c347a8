#include "../support/lifecycle_fixture.h"

#include "app/dashboard_cards.h"
#include "app/dashboard_vm.h"
#include "app/permission_mgr.h"

namespace tamsel {

struct DashboardTest : LifecycleFixture {
    FakeSettingsPanes panes;
    PermissionMgr permission{daemonMgr};
    std::unique_ptr<DashboardVM> vm = makeModel();

    /// The model that is looked at opens panes of other systems; the program's own stays out of it.
    DashboardTest() { notifications.disconnect(program.screens.dashboard()); }

    using Calls = std::vector<std::string>;

    std::unique_ptr<DashboardVM> makeModel() {
        return std::make_unique<DashboardVM>(
            DashboardServices{queue, defaults, notifications, bundle, panes, client, daemonMgr,
                              sysExtMgr, updateMgr, quorel, permission, launchAtLogin, delegate});
    }
    /// Everything in order: the services run, the driver is loaded.
    void setUpMachine() {
        daemonMgr.registerServices();
        sysExtMgr.loadExtension();
        extensions.finish(0);
        queue.advance(Milliseconds(1000));
        daemon.takeCalls();
        takeLog();
    }
    void tick(int times = 1) { queue.advance(DaemonPoll::interval * times); }
    QStringList cards() const {
        QStringList ids;
        for (const StatusCard& card : vm->cards())
            ids << card.id + (card.primary ? "!" : "");
        return ids;
    }
    Calls takeReply(bool isGrabbing, bool driverConnected, const char* text) {
        daemon.status = {isGrabbing, driverConnected, text};
        daemon.takeCalls();
        tick();
        return daemon.takeCalls();
    }
};

TEST_F(DashboardTest, PollsOnlyWhileItIsShown) {
    setUpMachine();
    tick(3);
    EXPECT_EQ(daemon.takeCalls(), Calls{});
    vm->appear();
    queue.runPending();
    EXPECT_EQ(daemon.takeCalls(), Calls{"getStatus"});
    tick(2);
    EXPECT_EQ(daemon.takeCalls(), (Calls{"getStatus", "getStatus"}));
    vm->disappear();
    tick(3);
    EXPECT_EQ(daemon.takeCalls(), Calls{});
    EXPECT_EQ(queue.pendingTimers(), 1U) << "only the check for updates";
    Q_EMIT notifications.applicationDidBecomeActive();
    queue.runPending();
    EXPECT_EQ(daemon.takeCalls(), Calls{"getStatus"});
}

TEST_F(DashboardTest, FourSilentTicksMakeItUnresponsive) {
    setUpMachine();
    daemon.silent = true;
    vm->appear();
    EXPECT_EQ(cards(), QStringList{"checking"});
    tick(3);
    EXPECT_FALSE(vm->poll().status().daemonUnresponsive);
    daemon.silent = false;
    Q_EMIT notifications.applicationDidBecomeActive(); // a reply after the third tick
    queue.runPending();
    EXPECT_EQ(cards(), QStringList{});
    daemon.silent = true;
    tick();
    EXPECT_EQ(vm->poll().tickCount(), 1);
    tick(2);
    EXPECT_FALSE(vm->poll().status().daemonUnresponsive);
    tick();
    EXPECT_TRUE(vm->poll().status().daemonUnresponsive);
    EXPECT_EQ(cards(), QStringList{"unresponsive"});
    EXPECT_EQ(vm->statusLine(), "Running normally") << "the last state stays";
    vm->appear();
    EXPECT_FALSE(vm->poll().status().daemonUnresponsive) << "starting again begins afresh";
    tick(4);
    daemon.silent = false;
    tick();
    EXPECT_FALSE(vm->poll().status().daemonUnresponsive);
}

TEST_F(DashboardTest, ShowsWhatTheDaemonSaysAndKeepsItInLine) {
    setUpMachine();
    vm->appear();
    queue.runPending();
    struct Case {
        bool isGrabbing, driverConnected;
        const char* text;
        QString line;
        QStringList cards;
        Calls orders; ///< with the master switch on
    };
    const Calls start{"getStatus", "startGrabbing"};
    const Calls nothing{"getStatus"};
    const QString running = "Running normally";
    const QString denied = "Input Monitoring permission is missing.";
    const QString idle = "Driver is connected, keyboard remapping is not active.";
    const QString unplugged = "Driver is not connected.";
    const Case cases[] = {
        {true, true, "RUNNING", running, {}, nothing},
        {true, true, "運行中", running, {}, nothing},
        {false, true, "RUNNING", running, {}, start},
        {false, true, "USER_STOPPED", "Keyboard remapping is currently disabled", {}, start},
        {false, true, "TCC_DENIED", denied, {"permission!"}, nothing},
        {false, false, "TCC_DENIED", denied, {"connection!"}, nothing},
        {false, true, "DRIVER_CONNECTED_NOT_GRABBING", idle, {}, start},
        {false, true, "驅動已連接，未攔截", idle, {}, start},
        {false, false, "DRIVER_DISCONNECTED", unplugged, {"connection!"}, start},
        {false, false, "驅動未連接", unplugged, {"connection!"}, start},
        {false, false, "未連接", "Daemon is not connected yet.", {"connection!"}, start},
        {true, true, "Something else", "Something else", {}, nothing},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(takeReply(each.isGrabbing, each.driverConnected, each.text), each.orders)
            << each.text;
        EXPECT_EQ(vm->statusLine(), each.line);
        EXPECT_EQ(cards(), each.cards) << each.text;
        EXPECT_EQ(vm->isRunning(), each.line == "Running normally");
    }
    vm->setRemappingEnabled(false);
    queue.runPending();
    EXPECT_EQ(daemon.takeCalls(), Calls{"stopGrabbing"});
    EXPECT_EQ(takeReply(true, false, "USER_STOPPED"), (Calls{"getStatus", "stopGrabbing"}));
    EXPECT_EQ(cards(), QStringList{}) << "nothing is at fault that is switched off";
    EXPECT_EQ(takeReply(false, true, "USER_STOPPED"), Calls{"getStatus"});
    vm = makeModel();
    EXPECT_FALSE(vm->remappingEnabled()) << "it is remembered";
    vm->setRemappingEnabled(true);
    queue.runPending();
    EXPECT_EQ(daemon.takeCalls(), Calls{"startGrabbing"});

    sysExtMgr.unloadExtension();
    extensions.finish(0);
    vm->appear();
    queue.runPending();
    EXPECT_EQ(takeReply(false, true, "RUNNING"), Calls{"getStatus"}) << "without the driver";
    EXPECT_EQ(cards(), QStringList{"driver!"});
}

TEST_F(DashboardTest, WithoutAProxyTheDaemonCountsAsNotConnected) {
    setUpMachine();
    daemon.implementsProtocol = false;
    client.disconnect();
    vm->appear();
    queue.runPending();
    EXPECT_EQ(vm->statusLine(), "Daemon is not connected yet.");
    EXPECT_FALSE(vm->poll().status().driverConnected);
    daemonMgr.unregisterServices();
    tick();
    EXPECT_FALSE(vm->poll().status().hasDaemonStatus) << "the daemon is down";
    EXPECT_EQ(vm->statusLine(), "");
}

TEST_F(DashboardTest, CardsAndWhatTheirButtonsDo) {
    vm->appear();
    EXPECT_EQ(cards(), (QStringList{"driver!", "service"}));
    EXPECT_EQ(vm->cards()[0].button, "Load Extension");
    EXPECT_EQ(vm->cards()[0].lead, "Unknown");
    vm->act("driver");
    EXPECT_EQ(extensions.requests.size(), 1);
    extensions.needApproval();
    queue.runPending();
    EXPECT_EQ(vm->cards()[0].symbol, "exclamationmark.triangle.fill");
    EXPECT_EQ(vm->cards()[0].text,
              "Please allow the system extension in Privacy & Security settings");
    vm->act("driver");
    panes.version = 14;
    vm->act("driver");
    EXPECT_EQ(panes.opened, (QStringList{settingsPane::extensions.toString(),
                                         settingsPane::extensionsBefore15.toString()}));

    services.daemon->afterRegistering = ServiceStatus::requiresApproval;
    EXPECT_EQ(vm->cards()[1].button, "Install Service");
    vm->act("service");
    EXPECT_EQ(services.calls, (QStringList{"register daemon", "register agent"}));
    EXPECT_EQ(vm->cards()[1].button, "Open Login Items Settings");
    vm->act("service");
    EXPECT_EQ(panes.opened.takeLast(), "login items");
    services.daemon->change(ServiceStatus::enabled);
    extensions.finish(0);
    queue.runPending();
    EXPECT_EQ(cards(), QStringList{"checking"});

    int installations = 0;
    updater.driver->showReadyToInstallAndRelaunch([&](SPUUserUpdateChoice choice) {
        EXPECT_TRUE(delegate.isFullQuit()) << "the end must be allowed first";
        installations += choice == SPUUserUpdateChoice::install;
    });
    EXPECT_EQ(cards(), (QStringList{"checking", "update!"}));
    vm->act("update");
    EXPECT_EQ(installations, 1);
    panes.opened.clear();
    vm->act("permission");
    vm->act("connection");
    EXPECT_EQ(panes.opened, (QStringList{settingsPane::inputMonitoring.toString(),
                                         settingsPane::extensionsBefore15.toString()}));
}

TEST_F(DashboardTest, ItsOwnSwitches) {
    services.mainApp->current = ServiceStatus::enabled;
    vm->appear();
    EXPECT_TRUE(vm->isLaunchAtLoginEnabled());
    EXPECT_TRUE(vm->showInMenuBar()) << "as long as nothing is stored";
    vm->setLaunchAtLoginEnabled(false);
    EXPECT_FALSE(vm->isLaunchAtLoginEnabled());

    int posted = 0;
    QObject::connect(&notifications, &NotificationCenter::menuBarVisibilityChanged,
                     [&] { ++posted; });
    vm->setShowInMenuBar(false);
    EXPECT_EQ(posted, 1);
    vm = makeModel();
    vm->appear();
    EXPECT_FALSE(vm->showInMenuBar());
}

TEST_F(DashboardTest, NoPollConnectsAgainAfterAFullQuit) {
    setUpMachine();
    vm->appear();
    vm->setShowFullQuitConfirm(true);
    vm->fullQuit();
    EXPECT_FALSE(vm->showFullQuitConfirm());
    EXPECT_FALSE(client.hasConnection());
    tick(3);
    EXPECT_EQ(application.terminations, 1);
    EXPECT_FALSE(client.hasConnection());
}

TEST_F(DashboardTest, PermissionIsThatOfARunningService) {
    const std::tuple<ServiceStatus, bool, QString> cases[] = {
        {ServiceStatus::enabled, true, "Daemon: 運行中"},
        {ServiceStatus::requiresApproval, false, "Daemon: 已安裝但未運行"},
        {ServiceStatus::notRegistered, false, "Daemon: 未安裝"},
        {ServiceStatus::notFound, false, "Daemon: 未安裝"},
    };
    int told = 0;
    QObject::connect(&permission, &PermissionMgr::hasPermissionChanged, [&] { ++told; });
    for (const auto& [status, hasPermission, info] : cases) {
        services.daemon->current = status;
        vm->appear();
        EXPECT_EQ(permission.hasPermission(), hasPermission);
        EXPECT_EQ(permission.debugInfo(), info);
    }
    EXPECT_EQ(told, 4);
    services.daemon->current = ServiceStatus::enabled;
    daemonMgr.refreshStatus();
    EXPECT_FALSE(permission.hasPermission()) << "between two checks the last answer stays";
    permission.requestPermission();
    EXPECT_TRUE(permission.hasPermission());
}

} // namespace tamsel
