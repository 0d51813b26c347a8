#include "../support/logic_fixture.h"

#include "app/app_delegate.h"
#include "app/launch_at_login_mgr.h"
#include "config/default_config.h"
#include "config/records/cfg_coding.h"
#include "daemon/daemon_mgr.h"
#include "driver/system_extension_mgr.h"
#include "platform/fake/fake_application.h"
#include "platform/fake/fake_bundle.h"
#include "platform/fake/fake_processes.h"
#include "platform/fake/fake_service_management.h"
#include "platform/fake/fake_system_extension.h"

namespace tamsel {

struct AppDelegateTest : LogicFixture {
    FakeServiceManagement services;
    FakeBundle bundle;
    FakeSystemExtensionService extensions;
    FakeProcessRunner processes;
    FakeBackgroundQueue background;
    DaemonMgr daemonMgr{services, bundle, logger};
    SystemExtensionMgr sysExtMgr{{extensions, processes, background, queue, logger}, client};
    LaunchAtLoginMgr launchAtLogin{services, defaults, logger};
    FakeApplication application;
    AppDelegate delegate{
        {application, queue, logger, storage, client, daemonMgr, sysExtMgr, launchAtLogin}};

    void launch() {
        takeLog();
        delegate.applicationDidFinishLaunching();
        queue.runPending();
    }
};

TEST_F(AppDelegateTest, StartsInOrder) {
    launch();
    const QStringList log = takeLog();
    EXPECT_EQ(log.mid(0, 6), (QStringList{"[AppDelegate] applicationDidFinishLaunching",
                                          "[AppDelegate] 首次啟動：已啟用開機啟動",
                                          "[AppDelegate] 準備加載 DriverKit 擴展...",
                                          "[AppDelegate] 調用 loadExtension...",
                                          "[SysExtMgr] 請求加載擴展: app.tamsel.driver.virtualhid",
                                          "[SysExtMgr] 請求已提交"}));
    EXPECT_EQ(log[6], "[DaemonMgr] Daemon 已註冊");
    EXPECT_EQ(log.mid(log.size() - 2),
              (QStringList{"[DaemonXPC] 已連接到 Daemon", "[DaemonXPC] 配置發送成功"}));
    ASSERT_EQ(daemon.configs.size(), 1U);
    EXPECT_EQ(decodeCfg(daemon.configs[0]), withDefaults({}));

    delegate.applicationWillTerminate();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(takeLog(),
              (QStringList{"[AppDelegate] App 退出，XPC 已斷開", "[DaemonXPC] 連接已失效"}));
    EXPECT_EQ(daemon.connectionsMade, 1);
}

TEST_F(AppDelegateTest, EveryReconnectSendsTheConfigurationOnce) {
    launch();
    daemon.takeCalls();
    // By the client itself.
    daemon.current->interrupt();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.takeCalls(), std::vector<std::string>{"updateCfg"});
    // By the driver's order to start, which found the connection lost.
    extensions.finish(0);
    queue.advance(Milliseconds(900));
    daemon.current->interrupt();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.takeCalls(), (std::vector<std::string>{"startGrabbing", "updateCfg"}));
    // By a configuration.
    daemon.current->interrupt();
    queue.runPending();
    client.sendConfig({});
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.takeCalls(), std::vector<std::string>{"updateCfg"});
}

} // namespace tamsel
