#include "../support/logic_fixture.h"

#include "coding/cfg_coding.h"

namespace tamsel {

struct StorageMgrTest : LogicFixture {};

TEST_F(StorageMgrTest, SaveThenLoadAndPartialReplacement) {
    EXPECT_EQ(storage.load(), Cfg{}) << "the first run";
    EXPECT_TRUE(defaults.values.isEmpty() && takeLog().isEmpty());
    Cfg cfg;
    cfg.shortcuts = {{"s", true, "Title", {4, {"fn"}}, {ActionType::openURL, "a:b"}}};
    cfg.mouseDevices = {{1, 2, "Mouse"}};
    storage.save(cfg);
    Cfg edited = storage.load();
    EXPECT_EQ(edited, cfg);
    edited.mappings = {{"m", true, {57, {}}, {224, {}}}};
    storage.save(edited);
    EXPECT_EQ(storage.load().shortcuts, cfg.shortcuts);
    EXPECT_EQ(storage.load().mouseDevices, cfg.mouseDevices);
}

TEST_F(StorageMgrTest, ADamagedValueIsReportedEachTimeAndStays) {
    stored() = "not a property list";
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(storage.load(), Cfg{});
        const QStringList log = takeLog();
        ASSERT_EQ(log.size(), 1);
        const QString line = "[StorageMgr] 載入配置失敗（數據已損壞，重置為預設值）: ";
        EXPECT_TRUE(log[0].startsWith(line) && log[0].size() > line.size()) << log[0].toStdString();
        EXPECT_EQ(stored(), "not a property list");
    }
    storage.save({});
    EXPECT_EQ(storage.load(), Cfg{});
    EXPECT_TRUE(takeLog().isEmpty());
}

TEST_F(StorageMgrTest, AFailedSaveKeepsTheOldValue) {
    storage.save({});
    const QByteArray before = stored();
    Cfg unencodable;
    unencodable.shortcuts = {{"s", true, "\xff"}};
    storage.save(unencodable);
    EXPECT_EQ(stored(), before);
    EXPECT_TRUE(takeLog().value(0).startsWith("[StorageMgr] 保存配置失敗: shortcuts[0].title: "));

    defaults.failure = Error{"disk full", "store"};
    storage.save({});
    EXPECT_EQ(takeLog(), QStringList{"[StorageMgr] 保存配置失敗: store: disk full"});
    EXPECT_EQ(storage.load(), Cfg{});
    EXPECT_EQ(takeLog(), QStringList{"[StorageMgr] 載入配置失敗（數據已損壞，重置為預設值）: "
                                     "store: disk full"});
}

} // namespace tamsel
