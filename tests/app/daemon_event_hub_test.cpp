#include "../support/hub_fixture.h"

#include "config/records/key_codes.h"

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
    using namespace ModifierFlags;
    const auto marked = [](LocalKeyKind kind, std::uint16_t code, std::uint32_t flags = 0) {
        return LocalKeyEvent{kind, LocalKeyEvent::CodeKind::hidUsage, code, flags};
    };
    const auto keyed = [](LocalKeyKind kind, std::uint16_t code, std::uint32_t flags = 0) {
        return LocalKeyEvent{kind, LocalKeyEvent::CodeKind::virtualKey, code, flags};
    };
    using enum LocalKeyKind;
    struct Case {
        LocalKeyEvent event;
        std::uint32_t usage;
        bool keyDown;
    };
    for (const Case& c :
         std::initializer_list<Case>{{keyed(keyDown, 0), 4, true},
                                     {keyed(keyUp, 36), 40, false},
                                     {keyed(keyDown, 0x69), 0x69, true}, // not in the table
                                     {marked(keyDown, 73), 73, true},
                                     {marked(keyUp, 12), 12, false},
                                     {keyed(flagsChanged, 56, shift | leftShift), 225, true},
                                     {keyed(flagsChanged, 56, shift | rightShift), 225, false},
                                     {keyed(flagsChanged, 60, shift | rightShift), 229, true},
                                     {keyed(flagsChanged, 54, command | rightCommand), 231, true},
                                     {keyed(flagsChanged, 55, command | leftCommand), 227, true},
                                     {keyed(flagsChanged, 58, option | leftOption), 226, true},
                                     {keyed(flagsChanged, 61, option | rightOption), 230, true},
                                     {keyed(flagsChanged, 59, control | leftControl), 224, true},
                                     {keyed(flagsChanged, 62, control | rightControl), 228, true},
                                     {keyed(flagsChanged, 62, control), 228, false},
                                     {keyed(flagsChanged, 57, capsLock), 57, true},
                                     {keyed(flagsChanged, 57, ~capsLock), 57, false},
                                     {keyed(flagsChanged, 63, fn), 63, true},
                                     {keyed(flagsChanged, 63, ~fn), 63, false},
                                     {keyed(flagsChanged, 53, ~0U), 41, false},
                                     {keyed(flagsChanged, 64, ~0U), 64, false},
                                     {marked(flagsChanged, 255, fn), 255, true},
                                     {marked(flagsChanged, 255), 255, false},
                                     {marked(flagsChanged, 56, ~0U), 56, false}}) {
        EXPECT_FALSE(local.send(c.event)) << "the hub only looks on";
        EXPECT_TRUE(first.events.empty()) << "told later";
        queue.runPending();
        EXPECT_EQ(std::exchange(first.events, {}),
                  (std::vector{KeyEvent{c.usage, c.keyDown, 0, c.usage, false}}))
            << c.event.keyCode;
    }
    local.send(marked(keyDown, KeyCodes::noKey));
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
