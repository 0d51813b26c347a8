#include "../support/hub_fixture.h"

namespace tamsel {

namespace {

struct Listener {
    std::vector<KeyEvent> events;
    std::vector<bool> states;

    DaemonEventHub::Sink sink() {
        return {[this](const KeyEvent& event) { events.push_back(event); },
                [this](bool reporting) { states.push_back(reporting); }};
    }
};

using Calls = std::vector<std::string>;
using States = std::vector<bool>;

} // namespace

struct DaemonEventHubTest : HubFixture {
    Listener first;
    Listener second;
};

TEST_F(DaemonEventHubTest, ListenersShareOneSubscription) {
    const QUuid one = hub.addSink(first.sink());
    EXPECT_FALSE(hub.isDaemonConnected());
    EXPECT_TRUE(first.states.empty()) << "told later, never within the call";
    queue.runPending();
    EXPECT_EQ(first.states, States{true});
    const QUuid two = hub.addSink(second.sink());
    EXPECT_NE(one, two);
    EXPECT_TRUE(hub.isDaemonConnected());
    const KeyEvent event{57, true, 2, 224, true};
    report(event);
    EXPECT_EQ(first.events, std::vector{event});
    EXPECT_EQ(second.events, std::vector{event});
    EXPECT_TRUE(second.states.empty());
    hub.removeSink(one);
    EXPECT_EQ(daemon.takeCalls(), Calls{"subscribeKeyViewer"});
    report(event);
    EXPECT_EQ(first.events.size(), 1U);
    EXPECT_EQ(second.events.size(), 2U);
    hub.removeSink(two);
    EXPECT_EQ(daemon.takeCalls(), Calls{"unsubscribeKeyViewer"});
    EXPECT_FALSE(hub.isDaemonConnected());
    EXPECT_EQ(local.installed(), 0U);
    hub.removeSink(two); // unknown by now
    EXPECT_EQ(daemon.takeCalls(), Calls{"unsubscribeKeyViewer"});
}

TEST_F(DaemonEventHubTest, FallsBackToLocalEventsUntilTheDaemonReports) {
    daemon.implementsProtocol = false; // no proxy
    const QUuid token = hub.addSink(first.sink());
    queue.runPending();
    EXPECT_EQ(first.states, States{false});
    EXPECT_EQ(local.installed(), 1U);
    daemon.implementsProtocol = true;
    daemon.current->interrupt();
    queue.runPending();
    EXPECT_EQ(local.installed(), 1U) << "replaced, not doubled";
    queue.advance(DaemonXPCClient::reconnectInterval);
    EXPECT_EQ(first.states, (States{false, false, true}));
    EXPECT_EQ(local.installed(), 0U);
    daemon.current->interrupt();
    queue.runPending();
    EXPECT_EQ(local.installed(), 1U);
    EXPECT_FALSE(hub.isDaemonConnected());
    local.keyDown(0);
    daemon.takeCalls();
    hub.removeSink(token);
    EXPECT_EQ(local.installed(), 0U);
    queue.advance(DaemonXPCClient::reconnectInterval);
    EXPECT_TRUE(first.events.empty()) << "nobody listened any more when it was to be told";
    EXPECT_EQ(first.states.size(), 4U);
    EXPECT_EQ(daemon.takeCalls(), Calls{"updateCfg"}) << "nothing to subscribe again";
}

TEST_F(DaemonEventHubTest, LocalEventsAreTranslated) {
    refuse();
    hub.addSink(first.sink());
    queue.runPending();
    using enum LocalKeyKind;
    using enum LocalKeyEvent::CodeKind;
    const auto expect = [&](const LocalKeyEvent& event, std::uint32_t usage, bool down) {
        EXPECT_FALSE(local.send(event)) << "the hub only looks on";
        EXPECT_TRUE(first.events.empty()) << "told later";
        queue.runPending();
        EXPECT_EQ(std::exchange(first.events, {}),
                  (std::vector{KeyEvent{usage, down, 0, usage, false}}));
    };
    expect({keyDown, virtualKey, 0}, 4, true);
    expect({keyUp, virtualKey, 36}, 40, false);
    expect({keyDown, virtualKey, 105}, 105, true); // no usage
    expect({keyUp, hidUsage, 12}, 12, false);      // not 'q', whose virtual key code it is
    // Virtual key code, flag, usage.
    constexpr std::uint32_t modifiers[][3] = {
        {54, 0x10, 231}, {55, 0x8, 227}, {56, 0x2, 225},  {57, 0x10000, 57}, {58, 0x20, 226},
        {59, 0x1, 224},  {60, 0x4, 229}, {61, 0x40, 230}, {62, 0x2000, 228}, {63, 0x800000, 63}};
    for (const auto& [code, flag, usage] : modifiers) {
        SCOPED_TRACE(code);
        expect({flagsChanged, virtualKey, std::uint16_t(code), flag}, usage, true);
        expect({flagsChanged, virtualKey, std::uint16_t(code), ~flag}, usage, false);
    }
    expect({flagsChanged, hidUsage, 255, 0x800000}, 255, true);
    expect({flagsChanged, hidUsage, 56, ~0U}, 56, false); // not left Shift
    expect({flagsChanged, virtualKey, 53, ~0U}, 41, false);
    expect({flagsChanged, virtualKey, 64, ~0U}, 64, false);
    local.send({keyDown, hidUsage, 0}); // a key without a code
    queue.runPending();
    EXPECT_TRUE(first.events.empty());
}

TEST_F(DaemonEventHubTest, ALateStatusAndLeavingListenersInstallNoMonitor) {
    refuse();
    hub.removeSink(hub.addSink(first.sink()));
    queue.runPending();
    EXPECT_EQ(local.installed(), 0U);
    EXPECT_TRUE(first.states.empty());

    // Each listener takes itself off as soon as it hears of the state.
    std::optional<QUuid> one;
    std::optional<QUuid> two;
    int told = 0;
    one = hub.addSink({nullptr, [&](bool) { hub.removeSink(*one), ++told; }});
    two = hub.addSink({nullptr, [&](bool) { hub.removeSink(*two), ++told; }});
    queue.runPending();
    EXPECT_EQ(told, 2);
    EXPECT_EQ(local.installed(), 0U);

    auto dying = std::make_unique<DaemonEventHub>(client, local, queue);
    dying->addSink(first.sink());
    dying.reset();
    queue.runPending();
    EXPECT_EQ(daemon.takeCalls().back(), "unsubscribeKeyViewer");
    EXPECT_TRUE(first.states.empty());
}

} // namespace tamsel
