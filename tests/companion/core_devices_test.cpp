#include "companion/core_fixture.h"

namespace tamsel {
namespace {

TEST_F(CoreTest, choosesDevicesByIdentityAndKind) {
    Cfg cfg;
    cfg.excludedKeyboards = {{2, 7, "Another name"}, {1452, 8, "Keys"}};
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
    cfg.grabScope = GrabScope::selected;
    ASSERT_TRUE(m_core->updateCfg(encoded(cfg)));
    EXPECT_EQ(devices(), "s-ss") << "a selection of nothing is none";
    cfg.allowedDevices = {{0x4C, 7, ""}, {2, 7, ""}};
    ASSERT_TRUE(m_core->updateCfg(encoded(cfg)));
    EXPECT_EQ(devices(), "--ss");
}

TEST_F(CoreTest, tellsWhatKeepsItFromTheMachine) {
    using enum NodeAccess;
    const std::tuple<AccessReport, bool, std::string_view> cases[] = {
        {{noNode, noNode}, false, word::driverDisconnected},
        {{noAccess, ok}, false, word::driverDisconnected},
        {{notInGroupYet, ok}, false, word::driverDisconnected},
        {{noAccess, noAccess}, false, word::tccDenied},
        {{ok, notInGroupYet}, true, word::tccDenied},
        {{ok, noAccess}, true, word::tccDenied},
    };
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    for (const auto& [access, isConnected, text] : cases) {
        m_core->setAccess(access);
        EXPECT_EQ(m_core->status(), (Status{false, isConnected, text}));
        EXPECT_EQ(devices(), "aa-a");
        EXPECT_FALSE(press(otherKeyboard, 57));
        EXPECT_FALSE(m_core->startGrabbing());
    }
    m_core->setAccess({ok, noNode});
    EXPECT_EQ(m_core->status(), (Status{true, true, word::running}));
    m_core->setAccess({noNode, ok});
    m_core->stopGrabbing();
    EXPECT_EQ(m_core->status(), (Status{false, false, word::userStopped}));
}

TEST_F(CoreTest, tellsWhatTheDevicesTellIt) {
    m_devices.isSlow = true;
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    EXPECT_EQ(std::exchange(m_devices.wishes, ""), "+0 +1 +3 ");
    EXPECT_EQ(devices(), "aa-a") << "wanted is not seized";
    EXPECT_EQ(m_core->status(), (Status{true, true, word::running}));
    EXPECT_FALSE(press(otherKeyboard, 57));
    press(otherKeyboard, 57, Edge::up);
    m_core->seized(otherKeyboard, KeysThen::allUp);
    EXPECT_EQ(devices(), "as-a");
    press(otherKeyboard, 57);
    EXPECT_EQ(m_output.taken(), "224d ");

    for (const auto index : {appleKeyboard, bluetoothKeyboard, bluetoothKeyboard})
        m_core->refused(index, EBUSY);
    EXPECT_EQ(m_complaints.size(), 2U) << "each is told once";
    EXPECT_EQ(statusText(), word::running);
    EXPECT_TRUE(m_core->startGrabbing());
    EXPECT_EQ(std::exchange(m_devices.wishes, ""), "again ");
    m_core->seized(appleKeyboard, KeysThen::allUp);
    EXPECT_EQ(devices(), "ss-a");

    m_core->stopGrabbing();
    EXPECT_EQ(m_output.taken(), "224u ") << "before the device is free";
    EXPECT_EQ(std::exchange(m_devices.wishes, ""), "-0 -1 -3 ");
    EXPECT_EQ(devices(), "ss-a") << "not free before it says so";
    for (const auto index : {appleKeyboard, otherKeyboard, bluetoothKeyboard})
        m_core->freed(index);
    m_core->seized(appleKeyboard, KeysThen::allUp);
    EXPECT_EQ(devices(), "aa-a") << "too late";

    m_core->startGrabbing();
    for (const auto index : {appleKeyboard, otherKeyboard, bluetoothKeyboard})
        m_core->refused(index, EBUSY);
    EXPECT_EQ(m_core->status(), (Status{false, true, word::driverConnectedNotGrabbing}));
    EXPECT_FALSE(m_core->startGrabbing());
}

TEST_F(CoreTest, freesEverythingWithoutAnOutputAndAsleep) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    press(otherKeyboard, 57);
    m_core->setAsleep(true);
    EXPECT_EQ(m_output.taken(), "224d 224u ");
    EXPECT_EQ(devices(), "aa-a");
    m_core->setAsleep(false);
    EXPECT_EQ(devices(), "ss-s");
    m_core->outputFailed({"no room"});
    m_core->outputFailed({"no room"});
    EXPECT_EQ(m_complaints.size(), 1U);
    EXPECT_EQ(m_core->status(), (Status{false, false, word::driverDisconnected}));
    EXPECT_EQ(devices(), "aa-a");
    m_core->outputReady();
    EXPECT_EQ(devices(), "ss-s");
}

TEST_F(CoreTest, devicesComeAndGo) {
    ASSERT_TRUE(m_core->updateCfg(encoded(capsIsControl())));
    const auto late = plug(device(3, "Late", false));
    EXPECT_EQ(late, 4U);
    EXPECT_EQ(devices(), "ss-ss") << "seized like the others";
    press(late, 57);
    m_core->removeDevice(late);
    EXPECT_EQ(m_output.taken(), "224d 224u ");
    EXPECT_EQ(devices(), "ss-s");
    EXPECT_FALSE(press(late, 57));
    m_core->removeDevice(late);
    m_core->removeDevice(99);

    const auto again = plug(device(3, "Late", false));
    const auto twin = plug(device(3, "Late", false));
    EXPECT_EQ(again, late + 1) << "an index is never used twice";
    EXPECT_EQ(devices(), "ss-ss") << "twins are one entry";
    m_core->removeDevice(again);
    EXPECT_EQ(devices(), "ss-ss");
    EXPECT_TRUE(press(twin, 4));
    plug(device(3, "Late", true));
    EXPECT_EQ(devices(), "ss-ss-") << "the other kind is another entry";
    plug(device(4, "Lid", false), Reach::outOfReach);
    EXPECT_EQ(devices(), "ss-ss--") << "what cannot be seized is not allowed either";
    press(otherKeyboard, 4);
    m_output.taken();
    m_core->removeDevice(mouse);
    EXPECT_EQ(m_output.taken(), "") << "nobody chose it";
}

} // namespace
} // namespace tamsel
