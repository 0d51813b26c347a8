#include "core/core.h"

#include "coding/cfg_coding.h"

#include <gmock/gmock.h>

namespace tamsel {
namespace {

using engine::Edge;
using engine::EngineTime;
namespace word = protocol::status;

class FakeMemory final : public OrderMemory {
public:
    Order load() const override { return order; }
    Result<void> save(Order saved) override {
        if (isBroken)
            return fail("no room", "state");
        order = saved;
        return {};
    }
    Order order = Order::start;
    bool isBroken = false;
};

class FakeOutput final : public VirtualDevice {
public:
    Result<void> write(std::span<const engine::OutputEvent> events) override {
        if (isBroken)
            return fail("no room", "out");
        for (const engine::OutputEvent& event : events)
            text += std::to_string(event.usage) + (event.edge == Edge::down ? "d " : "u ");
        return {};
    }
    Result<void> record(const ShortcutAction& action) override {
        text += "!" + std::string(name(action.type)) + " ";
        return {};
    }
    std::string taken() { return std::exchange(text, {}); }
    std::string text;
    bool isBroken = false;
};

class FakeRunner final : public ActionRunner {
public:
    void runCommand(const std::string& command) override { asked.push_back("run " + command); }
    void openURL(const std::string& url) override { asked.push_back("open " + url); }
    void requestClipboardText(ClipboardText done) override { clipboard = std::move(done); }
    std::vector<std::string> asked;
    ClipboardText clipboard;
};

SeenDeviceInfo device(std::int64_t vendor, const char* product, bool isMouse) {
    return {vendor, 7, product, "Maker", "USB", false, false, isMouse};
}

Bytes encoded(const Cfg& cfg) {
    return encodeCfg(cfg).value();
}

Cfg capsIsControl() {
    Cfg cfg;
    cfg.mappings.push_back({"id", true, {57, {}}, {224, {}}});
    return cfg;
}

/// Combos on the keys from 4 on, without modifiers.
Cfg combos(const std::vector<std::pair<ShortcutAction, std::optional<ShortcutAction>>>& actions) {
    Cfg cfg;
    for (const auto& [action, actionUp] : actions) {
        Shortcut combo{.id = "id", .enabled = true, .action = action, .actionUp = actionUp};
        combo.keys.keyCode = static_cast<std::uint32_t>(4 + cfg.shortcuts.size());
        cfg.shortcuts.push_back(combo);
    }
    return cfg;
}

class CoreTest : public testing::Test {
protected:
    enum : engine::DeviceIndex { appleKeyboard, otherKeyboard, mouse, bluetoothKeyboard };

    std::unique_ptr<Core> makeCore(VirtualDevice* output) {
        return std::make_unique<Core>(
            output, m_memory,
            std::vector{device(1452, "Keys", false), device(2, "Keys", false),
                        device(2, "Keys", true), device(0x4C, "Air", false)},
            [this](const Error& error) { m_complaints.push_back(error.description()); });
    }

    std::optional<KeyEvent> press(engine::DeviceIndex index, std::uint32_t usage,
                                  Edge edge = Edge::down) {
        return m_core->handle({EngineTime(++m_time), index, usage, edge});
    }

    /// The chosen devices as a row of marks: seized, allowed only, neither.
    std::string devices() const {
        std::string marks;
        for (const SeenDeviceInfo& each : m_core->seenDevices())
            marks += each.isSeized ? 's' : each.isAllowed ? 'a' : '-';
        return marks;
    }

    std::string_view statusText() const { return m_core->status().text; }

    FakeMemory m_memory;
    FakeOutput m_output;
    std::vector<std::string> m_complaints;
    std::unique_ptr<Core> m_core = makeCore(&m_output);
    int m_time = 0;
};

TEST_F(CoreTest, seizesWithTheFirstConfiguration) {
    EXPECT_EQ(m_core->status(), (Status{false, true, word::driverConnectedNotGrabbing}));
    EXPECT_EQ(devices(), "----");
    EXPECT_FALSE(press(otherKeyboard, 4));
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_EQ(m_core->status(), (Status{true, true, word::running}));
    EXPECT_EQ(devices(), "ss-s");
    press(appleKeyboard, 57);
    EXPECT_EQ(m_output.taken(), "224d ");
    m_core->shutDown();
    EXPECT_EQ(m_output.taken(), "224u ");
    EXPECT_FALSE(m_core->status().isGrabbing);
    EXPECT_EQ(m_memory.order, Order::start) << "the end is no order";
}

TEST_F(CoreTest, choosesDevicesByIdentityAndKind) {
    Cfg cfg;
    cfg.excludedKeyboards = {{2, 7, "Keys"}, {1452, 8, "Keys"}, {0x4C, 7, "air"}};
    ASSERT_TRUE(m_core->updateCfg(encoded(cfg)));
    EXPECT_EQ(devices(), "s--s");
    EXPECT_FALSE(press(otherKeyboard, 4));
    EXPECT_FALSE(press(mouse, 0x1001));
    EXPECT_EQ(m_output.taken(), "");
    cfg.mouseDevices = {{2, 7, "Keys"}};
    ASSERT_TRUE(m_core->updateCfg(encoded(cfg)));
    EXPECT_EQ(devices(), "s-ss");
    EXPECT_TRUE(press(mouse, 0x1002));
    EXPECT_EQ(m_output.taken(), "4098d ");
}

TEST_F(CoreTest, reportsSeizedKeysWithTheirMaker) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_EQ(press(appleKeyboard, 57), (KeyEvent{57, true, keyRemap, 224, true}));
    EXPECT_EQ(press(otherKeyboard, 4), (KeyEvent{4, true, keyPassthrough, 4, false}));
    EXPECT_EQ(press(bluetoothKeyboard, 57, Edge::up), std::nullopt);
    EXPECT_EQ(press(bluetoothKeyboard, 5), (KeyEvent{5, true, keyPassthrough, 5, true}));
}

TEST_F(CoreTest, badConfigurationKeepsTheLastGoodOne) {
    EXPECT_FALSE(m_core->updateCfg({}));
    EXPECT_EQ(statusText(), word::driverConnectedNotGrabbing);
    const Bytes good = encoded(capsIsControl());
    ASSERT_TRUE(m_core->updateCfg(good));
    press(otherKeyboard, 57);
    const ByteView cut(good.data(), good.size() - 1);
    EXPECT_FALSE(m_core->updateCfg(cut));
    EXPECT_FALSE(m_core->updateCfg(Bytes(Core::maxCfgSize + 1)));
    EXPECT_EQ(m_output.taken(), "224d ") << "a refused configuration releases nothing";
    press(otherKeyboard, 57, Edge::up);
    EXPECT_EQ(m_output.taken(), "224u ");
    EXPECT_EQ(statusText(), word::running);
}

TEST_F(CoreTest, stopIsRememberedUntilStart) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    press(otherKeyboard, 4);
    EXPECT_TRUE(m_core->stopGrabbing());
    EXPECT_EQ(m_output.taken(), "4d 4u ");
    EXPECT_EQ(m_core->status(), (Status{false, true, word::userStopped}));
    EXPECT_EQ(devices(), "aa-a");

    m_core = makeCore(&m_output); // a restart
    EXPECT_EQ(statusText(), word::userStopped);
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_EQ(statusText(), word::userStopped);
    EXPECT_FALSE(press(otherKeyboard, 5));
    EXPECT_TRUE(m_core->startGrabbing());
    EXPECT_EQ(statusText(), word::running);
    EXPECT_EQ(m_memory.order, Order::start);
}

TEST_F(CoreTest, startWithoutAConfigurationWaitsForIt) {
    m_core->stopGrabbing();
    EXPECT_FALSE(m_core->startGrabbing());
    EXPECT_EQ(statusText(), word::driverConnectedNotGrabbing);
    ASSERT_TRUE(m_core->updateCfg(encoded({})));
    EXPECT_EQ(statusText(), word::running);
}

TEST_F(CoreTest, lockOutHoldsUntilStop) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    press(otherKeyboard, 41);
    press(appleKeyboard, 42);
    EXPECT_EQ(press(otherKeyboard, 40), (KeyEvent{40, true, keySuppress, 40, false}));
    EXPECT_EQ(m_output.taken(), "41d 42d 41u 42u ");
    EXPECT_EQ(m_core->status(), (Status{false, true, word::userStopped}));
    EXPECT_FALSE(m_core->startGrabbing());
    ASSERT_TRUE(m_core->updateCfg(encoded({})));
    EXPECT_FALSE(m_core->startGrabbing());
    EXPECT_EQ(devices(), "aa-a");
    EXPECT_TRUE(m_core->stopGrabbing());
    EXPECT_EQ(statusText(), word::userStopped);
    EXPECT_TRUE(m_core->startGrabbing());
    EXPECT_EQ(m_memory.order, Order::start);
}

TEST_F(CoreTest, withoutADriverNothingIsSeized) {
    m_core = makeCore(nullptr);
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_FALSE(m_core->startGrabbing());
    EXPECT_EQ(m_core->status(), (Status{false, false, word::driverDisconnected}));
    EXPECT_FALSE(press(otherKeyboard, 57));
    m_core->stopGrabbing();
    EXPECT_EQ(statusText(), word::userStopped);
}

TEST_F(CoreTest, tellsWhatKeepsItFromTheMachine) {
    using enum NodeAccess;
    m_core = makeCore(nullptr);
    const std::tuple<AccessReport, bool, std::string_view> cases[] = {
        {{noNode, noNode}, false, word::driverDisconnected},
        {{noAccess, ok}, false, word::driverDisconnected},
        {{notInGroupYet, ok}, false, word::driverDisconnected},
        {{noAccess, noAccess}, false, word::tccDenied},
        {{ok, notInGroupYet}, true, word::tccDenied},
        {{ok, noAccess}, true, word::tccDenied},
        {{ok, noNode}, true, word::driverConnectedNotGrabbing},
        {{ok, ok}, true, word::driverConnectedNotGrabbing},
    };
    ASSERT_TRUE(m_core->updateCfg(encoded({})));
    for (const auto& [access, isConnected, text] : cases) {
        m_core->setAccess(access);
        EXPECT_EQ(m_core->status(), (Status{false, isConnected, text}));
    }
    EXPECT_FALSE(m_core->startGrabbing()) << "without an output nothing is seized";
    m_core->stopGrabbing();
    EXPECT_EQ(m_core->status(), (Status{false, true, word::userStopped}));
}

TEST_F(CoreTest, devicesComeAndGo) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    const auto late = m_core->addDevice(device(3, "Late", false));
    EXPECT_EQ(late, 4U);
    EXPECT_EQ(devices(), "ss-ss") << "seized like the others";
    press(late, 57);
    m_core->removeDevice(late);
    EXPECT_EQ(m_output.taken(), "224d 224u ");
    EXPECT_EQ(devices(), "ss-s");
    EXPECT_FALSE(press(late, 57));
    m_core->removeDevice(late);
    m_core->removeDevice(99);

    const auto again = m_core->addDevice(device(3, "Late", false));
    const auto twin = m_core->addDevice(device(3, "Late", false));
    EXPECT_EQ(again, late + 1) << "an index is never used twice";
    EXPECT_EQ(devices(), "ss-ss") << "twins are one entry";
    m_core->removeDevice(again);
    EXPECT_EQ(devices(), "ss-ss");
    EXPECT_TRUE(press(twin, 4));
    m_core->addDevice(device(3, "Late", true));
    EXPECT_EQ(devices(), "ss-ss-") << "the other kind is another entry";
}

TEST_F(CoreTest, runsWhatCombosAsk) {
    using enum ActionType;
    FakeRunner runner;
    const Bytes cfg = encoded(combos({{{command, "c"}, {{openURL, "up:"}}},
                                      {{keyPress, "a"}, std::nullopt},
                                      {{typeText, "aB\n"}, {{typeText, "x"}}},
                                      {{typeText, "\xC3\xA9"}, std::nullopt}}));
    ASSERT_TRUE(m_core->updateCfg(cfg));
    press(otherKeyboard, 4);
    EXPECT_EQ(m_output.taken(), "!command ") << "nobody runs it";
    press(otherKeyboard, 4, Edge::up);
    m_core->setActionRunner(&runner);
    press(otherKeyboard, 4);
    press(otherKeyboard, 4, Edge::up);
    EXPECT_THAT(runner.asked, testing::ElementsAre("run c", "open up:"));
    m_output.taken();
    press(otherKeyboard, 5);
    EXPECT_EQ(m_output.taken(), "!keyPress 4d ");
    press(otherKeyboard, 6);
    EXPECT_EQ(m_output.taken(), "!typeText 4u 4d 4u 225d 5d 5u 225u 40d 40u ");
    press(otherKeyboard, 7);
    EXPECT_EQ(m_output.taken(), "!typeText ");
    EXPECT_THAT(m_complaints, testing::ElementsAre(testing::Not(testing::HasSubstr("\xC3"))));
    ASSERT_TRUE(m_core->updateCfg(cfg));
    EXPECT_EQ(m_output.taken(), "!typeText 27d 27u ") << "due, the devices still being seized";
    press(otherKeyboard, 4);
    press(otherKeyboard, 8);
    runner.asked.clear();
    m_output.taken();
    m_core->stopGrabbing();
    EXPECT_THAT(runner.asked, testing::ElementsAre("open up:"));
    EXPECT_EQ(m_output.taken(), "!openURL 8u ");
}

TEST_F(CoreTest, typesTheClipboardItAskedFor) {
    FakeRunner runner;
    m_core->setActionRunner(&runner);
    const Bytes cfg = encoded(combos({{{ActionType::pasteClipboard, ""}, std::nullopt}}));
    ASSERT_TRUE(m_core->updateCfg(cfg));
    const auto ask = [&] {
        press(otherKeyboard, 4);
        press(otherKeyboard, 4, Edge::up);
        m_output.taken();
        return std::exchange(runner.clipboard, nullptr);
    };
    ask()("a\r\nb\rc\n");
    EXPECT_EQ(m_output.taken(), "4d 4u 40d 40u 5d 5u 40d 40u 6d 6u 40d 40u ");
    ask()(std::nullopt);
    ask()("\xC3\xA9");
    ask()(std::string(Core::maxTypedClipboard + 1, 'a'));
    EXPECT_EQ(m_complaints.size(), 2U);

    auto late = ask();
    ASSERT_TRUE(m_core->updateCfg(cfg));
    late("a");
    late = ask();
    m_core->stopGrabbing();
    m_core->startGrabbing();
    late("a");
    late = ask();
    m_core->shutDown();
    late("a");
    EXPECT_EQ(m_output.taken(), "") << "what was asked for before everything was released";
}

TEST_F(CoreTest, troubleIsReportedOnceAndChangesNoAnswer) {
    m_memory.isBroken = true;
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_TRUE(m_core->stopGrabbing());
    EXPECT_EQ(statusText(), word::userStopped);
    m_memory.isBroken = false;
    EXPECT_TRUE(m_core->stopGrabbing());
    EXPECT_EQ(m_memory.order, Order::stop) << "an order that was not saved is saved again";
    EXPECT_TRUE(m_core->startGrabbing());
    m_output.isBroken = true;
    press(otherKeyboard, 4);
    press(otherKeyboard, 5);
    EXPECT_THAT(m_complaints, testing::ElementsAre("state: no room", "out: no room"));
}

} // namespace
} // namespace tamsel
