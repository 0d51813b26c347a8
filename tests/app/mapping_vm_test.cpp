#include "../support/logic_fixture.h"

#include "coding/cfg_coding.h"
#include "config/default_config.h"
#include "editors/mapping_vm.h"

#include <QRegularExpression>

namespace tamsel {

struct MappingVMTest : LogicFixture {
    MappingVM vm{desk};

    /// What the daemon got last, and that it is what is stored, with the defaults.
    Cfg lastSent() {
        queue.runPending();
        EXPECT_FALSE(daemon.configs.empty());
        const auto sent = decodeCfg(daemon.configs.back());
        EXPECT_EQ(sent, withDefaults(storage.load()));
        return sent.value_or(Cfg{});
    }
    static QString isUuid() { return "^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"; }
};

TEST_F(MappingVMTest, ShowsUserRowsThenUncoveredBuiltIns) {
    EXPECT_TRUE(vm.userRows().isEmpty());
    ASSERT_EQ(vm.builtInRows().size(), 2);
    EXPECT_EQ(vm.builtInRows()[0],
              (MappingRow{"default_capslock_ctrl", false, 57, "caps_lock", 224, "left_control"}));
    Cfg cfg;
    cfg.mappings = {{"m", false, {57, {}}, {0, {}}}};
    storage.save(cfg);
    vm.reload();
    EXPECT_EQ(vm.userRows(), (QList<MappingRow>{{"m", false, 57, "caps_lock", 0, ""}}));
    ASSERT_EQ(vm.builtInRows().size(), 1);
    EXPECT_EQ(vm.builtInRows()[0].id, "default_rcmd_fn");
}

TEST_F(MappingVMTest, EveryEditIsStoredAndSent) {
    Cfg other;
    other.shortcuts = {{"s", true, "kept"}};
    storage.save(other);
    const QString first = vm.addMapping();
    const QString id = vm.addMapping();
    EXPECT_TRUE(QRegularExpression(isUuid()).match(id).hasMatch());
    EXPECT_NE(first, id);
    EXPECT_EQ(vm.userRows()[0], (MappingRow{id, true, 0, "", 0, ""})) << "newest on top";
    vm.setFrom(id, 57);
    vm.setTo(id, 224);
    vm.setEnabled(id, false);
    EXPECT_EQ(storage.load().mappings[0],
              (KeyMapping{id.toStdString(), false, {57, {}}, {224, {}}}));
    EXPECT_EQ(lastSent().mappings.size(), 3U);
    EXPECT_EQ(daemon.configs.size(), 5U);
    vm.deleteMapping(id);
    EXPECT_EQ(vm.userRows().size(), 1);
    EXPECT_EQ(lastSent().mappings.size(), 3U) << "the built-in row is back";
    EXPECT_EQ(storage.load().shortcuts, other.shortcuts);
}

TEST_F(MappingVMTest, TurningABuiltInOnPromotesIt) {
    const QString user = vm.addMapping();
    daemon.configs.clear();
    EXPECT_EQ(vm.setEnabled("default_capslock_ctrl", false), "default_capslock_ctrl");
    vm.deleteMapping("default_capslock_ctrl");
    vm.setEnabled("no such id", true);
    queue.runPending();
    EXPECT_TRUE(daemon.configs.empty()) << "nothing stored, nothing to change";
    vm.setEnabled("default_capslock_ctrl", true);
    const auto mappings = storage.load().mappings;
    ASSERT_EQ(mappings.size(), 2U);
    EXPECT_TRUE(
        QRegularExpression(isUuid()).match(QString::fromStdString(mappings[0].id)).hasMatch());
    EXPECT_EQ(mappings[0].from.keyCode, 57U);
    EXPECT_TRUE(mappings[0].enabled);
    EXPECT_EQ(mappings[1].id, user.toStdString());
    EXPECT_EQ(vm.builtInRows().size(), 1);
    const QString recorded = vm.setTo("default_rcmd_fn", 4);
    EXPECT_EQ(storage.load().mappings[0],
              (KeyMapping{recorded.toStdString(), true, {231, {}}, {4, {}}}))
        << "so does recording on it";
    lastSent();
}

} // namespace tamsel
