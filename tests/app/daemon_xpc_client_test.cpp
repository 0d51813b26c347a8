#include "../support/logic_fixture.h"

#include "coding/cfg_coding.h"
#include "coding/seen_devices_coding.h"
#include "config/default_config.h"

namespace tamsel {

namespace {
const QString connected = "[DaemonXPC] 已連接到 Daemon";
const QString interrupted = "[DaemonXPC] 連接已中斷，清除連接以便自動重連";
const QString invalidated = "[DaemonXPC] 連接已失效";
const QString proxyError = "[DaemonXPC] 代理錯誤: no daemon";
const QString sent = "[DaemonXPC] 配置發送成功";
const QString reconnected = "[DaemonXPC] 已自動重連並重新發送配置";
} // namespace

struct DaemonXPCClientTest : LogicFixture {
    std::vector<bool> statuses;

    void listen() {
        client.setKeyViewerOnEvent([](const KeyEvent&) {});
        client.setKeyViewerStatusHandler([this](bool on) { statuses.push_back(on); });
    }
    void loseConnection() {
        daemon.current->interrupt();
        queue.runPending();
    }
};

TEST_F(DaemonXPCClientTest, ConnectsOnceAndSendsTheConfiguration) {
    EXPECT_EQ(client.proxy(), nullptr);
    EXPECT_EQ(daemon.connectionsMade, 0);
    client.sendConfig(withDefaults({}));
    client.connect();
    queue.runPending();
    EXPECT_EQ(daemon.connectionsMade, 1);
    EXPECT_EQ(takeLog(), (QStringList{connected, sent}));
    ASSERT_EQ(daemon.configs.size(), 1U);
    EXPECT_EQ(decodeCfg(daemon.configs[0]), withDefaults({}));

    daemon.boolReply = false;
    client.sendConfig({});
    queue.runPending();
    EXPECT_EQ(takeLog(), QStringList{"[DaemonXPC] 配置發送失敗"});
    Cfg bad;
    bad.version = "\xff";
    client.sendConfig(bad);
    EXPECT_TRUE(takeLog().value(0).startsWith("[DaemonXPC] 編碼配置失敗: version: "));
    daemon.implementsProtocol = false;
    client.sendConfig({});
    EXPECT_EQ(takeLog(), QStringList{"[DaemonXPC] 無法獲取代理"});
    EXPECT_EQ(daemon.configs.size(), 2U);
}

TEST_F(DaemonXPCClientTest, AfterALossReconnectsIn1500msWithTheStoredConfiguration) {
    connectClient();
    Cfg cfg;
    cfg.mappings = {{"m", true, {4, {}}, {5, {}}}};
    storage.save(cfg);
    loseConnection();
    EXPECT_EQ(takeLog(), QStringList{interrupted});
    EXPECT_FALSE(client.hasConnection());
    queue.advance(Milliseconds(1499));
    EXPECT_EQ(daemon.connectionsMade, 1);
    queue.advance(Milliseconds(1));
    EXPECT_EQ(daemon.connectionsMade, 2);
    EXPECT_EQ(takeLog(), (QStringList{connected, reconnected, sent}));
    EXPECT_EQ(daemon.takeCalls(), std::vector<std::string>{"updateCfg"}) << "nobody subscribed";
    EXPECT_EQ(decodeCfg(daemon.configs.back()), withDefaults(cfg));
    queue.advance(Milliseconds(60'000));
    EXPECT_EQ(daemon.connectionsMade, 2);
}

TEST_F(DaemonXPCClientTest, WithoutADaemonItTriesEvery1500msUntilItIsThere) {
    daemon.reachable = false;
    client.sendConfig({});
    queue.runPending();
    EXPECT_EQ(takeLog(), (QStringList{connected, proxyError, invalidated}));
    queue.advance(Milliseconds(4500));
    EXPECT_EQ(daemon.connectionsMade, 4);
    EXPECT_EQ(takeLog().count(proxyError), 3);
    daemon.reachable = true;
    queue.advance(Milliseconds(1500));
    EXPECT_EQ(takeLog(), (QStringList{connected, reconnected, sent}));
    EXPECT_EQ(queue.pendingTimers(), 0U);
}

TEST_F(DaemonXPCClientTest, ConnectDuringTheWaitReplacesTheReconnectAndSaysSo) {
    int replaced = 0;
    QObject::connect(&client, &DaemonXPCClient::reconnectReplaced, [&] { ++replaced; });
    connectClient();
    loseConnection();
    client.connect();
    client.connect();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.connectionsMade, 2);
    EXPECT_TRUE(daemon.takeCalls().empty()) << "only the reconnect sends the configuration";
    EXPECT_EQ(replaced, 1);

    // Neither the reconnect itself nor a configuration sent meanwhile needs another one.
    loseConnection();
    queue.advance(Milliseconds(1500));
    loseConnection();
    client.sendConfig({});
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.takeCalls(), (std::vector<std::string>{"updateCfg", "updateCfg"}));
    EXPECT_EQ(replaced, 1);
}

TEST_F(DaemonXPCClientTest, TwoLossesLeaveOneReconnect) {
    connectClient();
    daemon.current->interrupt();
    daemon.current->invalidate();
    queue.runPending();
    EXPECT_EQ(takeLog(), (QStringList{interrupted, invalidated}));
    EXPECT_EQ(queue.pendingTimers(), 1U);
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.connectionsMade, 2);
}

TEST_F(DaemonXPCClientTest, DisconnectStopsReconnecting) {
    connectClient();
    client.disconnect();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(takeLog(), QStringList{invalidated});
    EXPECT_EQ(daemon.connectionsMade, 1);
    client.connect(); // from stopped, all works again
    queue.runPending();
    loseConnection();
    client.disconnect(); // while waiting
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.connectionsMade, 2);
}

TEST_F(DaemonXPCClientTest, ALateReportDoesNotTakeTheNextConnectionDown) {
    connectClient();
    client.disconnect();
    client.connect();
    queue.advance(Milliseconds(5000));
    EXPECT_TRUE(client.hasConnection());
    EXPECT_EQ(daemon.connectionsMade, 2);
    EXPECT_EQ(takeLog(), (QStringList{connected, invalidated}));
}

TEST_F(DaemonXPCClientTest, ASubscriptionSurvivesTheDaemon) {
    listen();
    std::optional<bool> completed;
    client.subscribeKeyViewer([&](bool on) { completed = on; });
    EXPECT_EQ(statuses, std::vector<bool>{false}) << "no connection, and none is made";
    EXPECT_FALSE(completed);

    connectClient();
    EXPECT_EQ(statuses, (std::vector<bool>{false, true}));
    client.subscribeKeyViewer([&](bool on) { completed = on; });
    queue.runPending();
    EXPECT_EQ(completed, true);
    statuses.clear();
    daemon.takeCalls();

    loseConnection();
    EXPECT_EQ(statuses, std::vector<bool>{false});
    takeLog();
    queue.advance(Milliseconds(1500));
    EXPECT_EQ(daemon.takeCalls(), (std::vector<std::string>{"subscribeKeyViewer", "updateCfg"}));
    EXPECT_EQ(takeLog(), (QStringList{connected, reconnected,
                                      "[DaemonXPC] 重連後重新訂閱 Key Viewer: true", sent}));
    EXPECT_EQ(statuses, (std::vector<bool>{false, true}));

    daemon.reachable = false;
    loseConnection();
    takeLog();
    queue.advance(Milliseconds(1500));
    EXPECT_EQ(takeLog(), (QStringList{connected, reconnected,
                                      "[DaemonXPC] 重連後重新訂閱 Key Viewer 代理錯誤: no daemon",
                                      proxyError, invalidated}));
}

TEST_F(DaemonXPCClientTest, KeyEventsReachTheListenerOfTheMoment) {
    int events = 0;
    connectClient();
    client.setKeyViewerOnEvent([&](const KeyEvent&) { ++events; });
    daemon.current->exported->onKeyEvent({});
    queue.runPending();
    EXPECT_EQ(events, 1);
    client.unsubscribeKeyViewer();
    EXPECT_EQ(daemon.takeCalls(), std::vector<std::string>{"unsubscribeKeyViewer"});
    daemon.current->exported->onKeyEvent({});
    queue.runPending();
    EXPECT_EQ(events, 1);
    loseConnection();
    client.unsubscribeKeyViewer(); // nothing to tell, and no connection is made for it
    EXPECT_EQ(daemon.connectionsMade, 1);
}

TEST_F(DaemonXPCClientTest, SeenDevicesComeOnTheMainThreadOrAsAnEmptyList) {
    std::optional<std::vector<SeenDeviceInfo>> devices;
    const auto fetch = [&] {
        devices.reset();
        client.fetchSeenDevices([&](auto list) { devices = std::move(list); });
        EXPECT_FALSE(devices);
        queue.runPending();
    };
    const std::vector<SeenDeviceInfo> list{{1, 2, "Keyboard", "Maker", "usb", true, true, false}};
    const std::string json = encodeSeenDevices(list);
    daemon.seenDevices.assign(json.begin(), json.end());
    fetch();
    EXPECT_EQ(devices, list);
    daemon.seenDevices = {'{'};
    takeLog();
    fetch();
    EXPECT_EQ(devices, std::vector<SeenDeviceInfo>{});
    EXPECT_TRUE(takeLog().isEmpty());
    daemon.implementsProtocol = false;
    fetch();
    EXPECT_EQ(devices, std::vector<SeenDeviceInfo>{});
}

TEST_F(DaemonXPCClientTest, AnErrorReplyIsAnErrorOfThatCallOnly) {
    connectClient();
    daemon.callError = "refused";
    client.sendConfig({});
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(takeLog(), QStringList{"[DaemonXPC] 代理錯誤: refused"});
    EXPECT_EQ(daemon.connectionsMade, 1);
}

TEST_F(DaemonXPCClientTest, ADestroyedClientIsLeftAlone) {
    auto dying = std::make_unique<DaemonXPCClient>(daemon, desk, callbacks);
    dying->sendConfig({});
    dying->subscribeKeyViewer([](bool) {});
    daemon.current->interrupt();
    dying.reset();
    queue.advance(Milliseconds(5000));
    EXPECT_EQ(daemon.connectionsMade, 1);
    EXPECT_EQ(queue.pendingTimers(), 0U);
}

} // namespace tamsel
