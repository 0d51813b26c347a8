#include "platform/linux/driver/linux_machine.h"
#include "platform/linux/store/folder_bundle.h"
#include "support/files.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace tamsel {

TEST(LinuxMachineTest, LooksAtNodesAndAccounts) {
    const QTemporaryDir root;
    const auto put = [&](const QString& name, QFile::Permissions permissions) {
        writeFile(root.filePath(name), {}, permissions);
    };
    UinputPlaces places{.helper = "/helper", .root = root.path()};
    MachineReport report = inspectMachine(places);
    EXPECT_EQ(report.daemonUser, QString(::getpwuid(::geteuid())->pw_name));
    EXPECT_FALSE(report.hasUnit);
    EXPECT_FALSE(report.kernelHasDriver);
    EXPECT_EQ(report.uinput, NodeAccess::noNode);
    EXPECT_EQ(report.input, NodeAccess::noNode);
    EXPECT_EQ(report.helper, "/helper");

    const auto owner = QFile::ReadOwner | QFile::WriteOwner;
    put("dev/uinput", owner);
    put("dev/input/event0", owner | QFile::ReadGroup);
    put("dev/input/event1", owner);
    put("dev/input/mouse0", QFile::Permissions());
    report = inspectMachine(places);
    EXPECT_TRUE(report.kernelHasDriver);
    EXPECT_EQ(report.uinput, NodeAccess::ok);
    EXPECT_EQ(report.input, NodeAccess::ok) << "they are this user's own";
    const QString mine =
        QStringLiteral("%1:%2 c").arg(report.daemonUser, QString(::getgrgid(::getegid())->gr_name));
    EXPECT_EQ(report.uinputMode, mine + "rw-------");

    // Of a daemon with an account of its own: only groups and modes count.
    places.daemonGroup = "nobody";
    report = inspectMachine(places);
    EXPECT_TRUE(report.hasUnit);
    EXPECT_EQ(report.daemonUser, "nobody");
    EXPECT_EQ(report.uinput, NodeAccess::noAccess);
    EXPECT_EQ(report.input, NodeAccess::noAccess);
    EXPECT_EQ(report.inputGroup, QString(::getgrgid(::getegid())->gr_name));
    // A keyboard that the daemon can read is enough, anything else in reach is not.
    put("dev/input/event1", owner | QFile::ReadOther);
    EXPECT_EQ(inspectMachine(places).input, NodeAccess::noAccess);
    EXPECT_EQ(inspectMachine(places).inputMode, mine + "rw-r-----") << "the one in the way";
    const auto keysOf = [&](const QByteArray& keys) {
        writeFile(root.filePath("sys/class/input/event1/device/capabilities/key"), keys + '\n');
    };
    keysOf("10000 0 0 0");
    EXPECT_EQ(inspectMachine(places).input, NodeAccess::noAccess) << "a mouse";
    keysOf("1000000000007 ff9f207ac14057ff febeffdfffefffff fffffffffffffffe");
    EXPECT_EQ(inspectMachine(places).input, NodeAccess::ok);
    EXPECT_EQ(inspectMachine(places).inputMode, mine + "rw----r--");
    const auto everybody = owner | QFile::ReadOther | QFile::WriteOther;
    put("dev/input/event0", everybody);
    put("dev/input/event1", everybody);
    EXPECT_EQ(inspectMachine(places).input, NodeAccess::ok);
    places.daemonGroup = "no such account";
    EXPECT_EQ(inspectMachine(places).uinput, NodeAccess::noAccess);
}

TEST(FolderBundleTest, LocalizationsInTheUsersOrder) {
    const QStringList available{"en", "zh-Hant", "ja"};
    const std::pair<QStringList, QStringList> cases[] = {
        {{"ja-JP", "ja"}, {"ja"}},
        {{"zh-TW", "zh", "en-US"}, {"zh-Hant", "en"}},
        {{"zh-Hant-HK"}, {"zh-Hant"}},
        {{"zh-CN"}, {}},
        {{"de-DE", "de", "ja"}, {"ja"}},
        {{"C"}, {}},
        {{}, {}},
    };
    for (const auto& [languages, matching] : cases)
        EXPECT_EQ(FolderBundle::matchingLocalizations(languages, available), matching)
            << languages.join(' ').toStdString();
}

} // namespace tamsel
