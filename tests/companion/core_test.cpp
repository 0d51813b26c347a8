#include "companion/core_fixture.h"

namespace tamsel {
namespace {

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

    m_core = makeCore(); // a restart
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
