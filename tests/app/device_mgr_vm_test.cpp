#include "../support/logic_fixture.h"

#include "coding/cfg_coding.h"
#include "coding/seen_devices_coding.h"
#include "config/default_config.h"
#include "devices/device_mgr_vm.h"

#include <cstring>

namespace tamsel {

struct DeviceMgrVMTest : LogicFixture {
    std::unique_ptr<DeviceMgrVM> vm = makeModel();

    std::unique_ptr<DeviceMgrVM> makeModel() {
        return std::make_unique<DeviceMgrVM>(desk, client, queue, defaults);
    }
    void report(const std::vector<SeenDeviceInfo>& devices) {
        const std::string json = encodeSeenDevices(devices);
        daemon.seenDevices = {json.begin(), json.end()};
    }
    void reload() {
        vm->reload();
        queue.runPending();
    }
    void set(const QString& key, bool on) {
        vm->setEnabled(key, on);
        queue.runPending();
    }
    void wait(int seconds) { queue.advance(std::chrono::seconds(seconds)); }
    /// The keys of the rows that are on.
    QStringList on() const {
        QStringList keys;
        for (const DeviceRow& row : vm->rows()) {
            if (row.on)
                keys << row.key;
        }
        return keys;
    }
    static std::string list(const std::vector<GrabbedDevice>& devices) {
        std::string text;
        for (const GrabbedDevice& device : devices)
            text += device.identifier() + " ";
        return text;
    }
    /// The lists as they are stored and as the daemon was told last.
    std::string stored() {
        const Cfg cfg = storage.load();
        EXPECT_EQ(decodeCfg(daemon.configs.back()), withDefaults(cfg));
        return "excluded " + list(cfg.excludedKeyboards) + "mice " + list(cfg.mouseDevices);
    }
    std::size_t saves() const { return daemon.configs.size(); }
    QByteArray& note() { return defaults.values[pendingTakeoverKey]; }
};

SeenDeviceInfo seen(std::int64_t vendor, std::int64_t product, const char* name, bool isMouse,
                    bool isSeized = false) {
    return {vendor, product, name, "Maker", "USB", isSeized, false, isMouse};
}

const std::vector<SeenDeviceInfo> onTheTable{
    seen(1, 1, "Keys", false, true), seen(2, 2, "Mouse", true), seen(3, 3, "", false),
    seen(3, 3, "Receiver", true, true), seen(4, 4, "Second", true)};

TEST_F(DeviceMgrVMTest, FoldsReportsIntoRows) {
    const auto groups =
        deviceGroups({seen(-1, 641, "beta", false, true), seen(1, 1, "Alpha", true),
                      seen(0x5ac, 0x24f, "alpha", false), seen(0x5ac, 0x24f, "other", true, true),
                      seen(7, 70000, "", false)});
    QList<QStringList> rows;
    for (const DeviceGroup& group : groups) {
        const DeviceRow row = deviceRow(group, false);
        rows << QStringList{row.key, row.name, row.type, row.identifier,
                            row.active ? "active" : ""};
    }
    EXPECT_EQ(rows,
              (QList<QStringList>{{"7:70000", "Unknown", "Keyboard", "0007:11170", ""},
                                  {"1:1", "Alpha", "Mouse", "0001:0001", ""},
                                  {"1452:591", "alpha", "Keyboard + Mouse", "05AC:024F", "active"},
                                  {"-1:641", "beta", "Keyboard", "Built-in", "active"}}));
    EXPECT_EQ(shownProduct("a\nb\x01" + std::string(1 << 20, 'x')).left(5), "a↵b·x");
    EXPECT_LT(shownProduct(std::string(1 << 20, 'x')).size(), 500);
}

TEST_F(DeviceMgrVMTest, KeyboardsAreOnAndMiceOffByDefault) {
    report(onTheTable);
    reload();
    EXPECT_EQ(on(), QStringList{"1:1"});
    EXPECT_EQ(saves(), 1U);
    EXPECT_EQ(stored(), "excluded 3:3 mice ");
    wait(1);
    reload();
    EXPECT_EQ(saves(), 1U) << "the rule has nothing left to do";
    set("1:1", false);
    EXPECT_EQ(on(), QStringList{});
    EXPECT_EQ(stored(), "excluded 3:3 1:1 mice ");
    set("1:1", true);
    EXPECT_EQ(stored(), "excluded 3:3 mice ");
    const auto before = saves();
    set("1:1", true);
    set("9:9", true);
    EXPECT_EQ(saves(), before);
}

TEST_F(DeviceMgrVMTest, AnUnconfirmedTakeoverIsTakenBack) {
    report(onTheTable);
    reload();
    set("3:3", true);
    EXPECT_EQ(stored(), "excluded mice 3:3 ");
    EXPECT_EQ(vm->confirmationText(),
              "Mouse takeover is enabled for Receiver. Confirm within 10 seconds or Tamsel will "
              "turn it off.");
    for (int left = 9; left >= 1; --left) {
        wait(1);
        EXPECT_EQ(vm->remainingSeconds(), left);
    }
    queue.advance(Milliseconds(999));
    EXPECT_TRUE(vm->isConfirmationPending());
    queue.advance(Milliseconds(1));
    EXPECT_FALSE(vm->isConfirmationPending());
    EXPECT_EQ(stored(), "excluded 3:3 mice ");
    EXPECT_EQ(on(), QStringList{"1:1"});
    EXPECT_TRUE(note().isEmpty());

    // Confirmed at the last second; nothing is saved again.
    set("2:2", true);
    wait(9);
    const auto before = saves();
    vm->confirmMouseTakeover();
    wait(20);
    EXPECT_EQ(saves(), before);
    EXPECT_EQ(stored(), "excluded 3:3 mice 2:2 ");
    vm->confirmMouseTakeover();
    vm->cancelMouseTakeover();
    EXPECT_EQ(saves(), before);
    set("2:2", true); // on already: only confirmed anew
    EXPECT_EQ(vm->remainingSeconds(), 10);
    EXPECT_EQ(saves(), before);
    vm->cancelMouseTakeover();
    EXPECT_EQ(stored(), "excluded 3:3 mice ");

    // Another takeover takes the first one back at once; switching off ends the countdown.
    set("2:2", true);
    wait(5);
    set("3:3", true);
    EXPECT_EQ(stored(), "excluded mice 3:3 ");
    EXPECT_EQ(vm->remainingSeconds(), 10);
    wait(2);
    set("3:3", false);
    EXPECT_FALSE(vm->isConfirmationPending());
    EXPECT_EQ(stored(), "excluded 3:3 mice ");
    EXPECT_TRUE(note().isEmpty());
    wait(20);
    EXPECT_EQ(queue.pendingTimers(), 0U);
}

TEST_F(DeviceMgrVMTest, KeepsWhatOtherScreensChanged) {
    report(onTheTable);
    reload();
    set("2:2", true);
    Cfg cfg = storage.load();
    cfg.mappings.push_back({"id", true, {57, {}}, {224, {}}});
    storage.save(cfg);
    wait(10);
    EXPECT_EQ(storage.load().mappings, cfg.mappings);
    EXPECT_EQ(stored(), "excluded 3:3 mice ");
}

TEST_F(DeviceMgrVMTest, MigratesTheOlderScope) {
    Cfg cfg;
    cfg.grabScope = GrabScope::selected;
    cfg.allowedDevices = {{1, 1, "Keys"}};
    storage.save(cfg);
    report({seen(1, 1, "Keys", false), seen(5, 5, "More", false)});
    reload();
    EXPECT_EQ(on(), QStringList{"1:1"});
    set("5:5", true);
    EXPECT_EQ(list(storage.load().allowedDevices), "1:1 5:5 ");
    EXPECT_EQ(storage.load().grabScope, GrabScope::selected);

    cfg.allowedDevices.clear();
    storage.save(cfg);
    reload();
    EXPECT_EQ(on(), (QStringList{"1:1", "5:5"})) << "a list of none counts as all";
    EXPECT_EQ(storage.load().grabScope, GrabScope::selected) << "until something is saved";
    set("5:5", false);
    EXPECT_EQ(storage.load().grabScope, GrabScope::all);
}

TEST_F(DeviceMgrVMTest, ATakeoverThatOutlivesTheProgramIsRevertedAtItsNextStart) {
    report(onTheTable);
    reload();
    set("2:2", true);
    wait(1);
    set("3:3", true);
    wait(3);
    vm.reset();
    wait(20);
    EXPECT_EQ(stored(), "excluded mice 3:3 ") << "nothing runs on";
    const auto sent = saves();
    revertPendingTakeover(storage, defaults);
    EXPECT_EQ(saves(), sent) << "nothing is sent";
    EXPECT_EQ(list(storage.load().mouseDevices), "");
    EXPECT_EQ(list(storage.load().excludedKeyboards), "3:3 ");
    EXPECT_TRUE(note().isEmpty());

    // Notes that say nothing are cleared, and nothing else happens; so with a configuration that
    // can't be read, and with a takeover that is not there any more.
    Cfg kept = storage.load();
    kept.mouseDevices = {{1, 1, "Kept"}};
    storage.save(kept);
    const QByteArray note1 = R"({"hasKeyboard":true,"product":"","productID":1,"vendorID":1})";
    for (const QString change : {"{=", "{=null", "true=1", "\"\"=1", "\"productID\"=\"x\"",
                                 ":1}=:1.5}", ":1,=:1e30,", ":1}=:2}"}) {
        note() = QString(note1).replace(change.section('=', 0, 0), change.section('=', 1)).toUtf8();
        revertPendingTakeover(storage, defaults);
        EXPECT_EQ(storage.load(), kept) << change.toStdString();
        EXPECT_TRUE(note().isEmpty());
    }
    LogicFixture::stored() = "damaged";
    note() = note1;
    revertPendingTakeover(storage, defaults);
    EXPECT_EQ(LogicFixture::stored(), "damaged") << "what can't be read stays";
}

/// One of several programs within a test.
struct DyingProgram final : DeviceMgrVMTest {
    void TestBody() override {}
};

TEST_F(DeviceMgrVMTest, WhereverTheProgramDiesNoTakeoverIsLeft) {
    for (int writes = 0; writes <= 7; ++writes) {
        DyingProgram run;
        run.report(onTheTable);
        run.reload();
        run.defaults.writesLeft = writes;
        run.set("2:2", true);
        run.set("3:3", true);
        run.vm.reset();
        run.defaults.writesLeft.reset();
        EXPECT_EQ(list(run.storage.load().mouseDevices).empty(),
                  writes < 2 || (writes > 2 && writes < 6))
            << writes;
        revertPendingTakeover(run.storage, run.defaults);
        EXPECT_EQ(list(run.storage.load().mouseDevices), "") << writes;
        EXPECT_EQ(list(run.storage.load().excludedKeyboards), "3:3 ") << writes;
    }
}

TEST_F(DeviceMgrVMTest, BadRepliesAreEmptyOnes) {
    report(onTheTable);
    reload();
    for (const char* reply : {"", "no JSON", "{}", "[{}]", "[{\"vendorID\": 1}]"}) {
        daemon.seenDevices = Bytes(reply, reply + std::strlen(reply));
        vm->refresh();
        queue.runPending();
        EXPECT_TRUE(vm->rows().isEmpty()) << reply;
    }
    daemon.silent = true;
    vm->refresh();
    vm.reset();
    queue.runPending();
}

TEST_F(DeviceMgrVMTest, CombinedDevicesAreExcludedAtOnceInTheOrderOfTheRows) {
    report({seen(1, 1, "B", false), seen(1, 1, "B", true), seen(2, 1, "A", false),
            seen(2, 1, "A", true)});
    reload();
    EXPECT_EQ(saves(), 1U);
    EXPECT_EQ(list(vm->excludedKeyboards()), "2:1 1:1 ");
    EXPECT_TRUE(on().isEmpty());
}

TEST_F(DeviceMgrVMTest, EverySaveIsFollowedByItsOwnLook) {
    report(onTheTable);
    reload();
    wait(1);
    daemon.takeCalls();
    set("1:1", false);
    queue.advance(Milliseconds(400));
    set("1:1", true);
    queue.advance(Milliseconds(200));
    const std::vector<std::string> first{"updateCfg", "updateCfg", "getSeenDevices"};
    EXPECT_EQ(daemon.takeCalls(), first);
    queue.advance(Milliseconds(400));
    EXPECT_EQ(daemon.takeCalls(), std::vector<std::string>{"getSeenDevices"});
    set("1:1", false);
    vm.reset();
    EXPECT_EQ(queue.pendingTimers(), 0U) << "the looks end with the model";
}

} // namespace tamsel
